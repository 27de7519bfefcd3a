#pragma once
// The classic conversions, with the classic rules the reports depend on. Each raises the
// runtime's Error (Type mismatch 13, Overflow 6, Invalid use of Null 94) where the old
// runtime did.

#include "platform/core/variant.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qr {

/// Boolean: Boolean as is; a number is False when 0; text "true"/"false" in any letter case,
/// or number text (0 is False). Anything else is Type mismatch; Null is Invalid use of Null.
bool toBoolean(const Variant& value);

/// 16-bit integer: numbers round half to even; out of range is Overflow; number text accepted.
std::int16_t toInteger(const Variant& value);
/// 32-bit integer, same rules.
std::int32_t toLong(const Variant& value);
/// Single precision, really kept as float (totals lose cents at 100,000 dollars).
float toSingle(const Variant& value);
double toDouble(const Variant& value);
/// Currency: four decimals, half to even.
Currency toCurrency(const Variant& value);
/// Text as the runtime's string conversion writes it: numbers in their shortest round-trip
/// form for their precision ("0.5", "12", "-3.25"), no leading blank, Booleans "True"/"False",
/// dates in the system short date (and time when there is one), Empty as "". Null is
/// Invalid use of Null.
std::string toText(const Variant& value);

/// Number from text as the runtime's numeric conversion reads it: optional blanks, sign, a
/// currency sign ("$"), digit grouping with ",", a decimal point, an exponent. Empty optional
/// when the text is not a number.
std::optional<double> numberFromText(std::string_view text);

/// "Decimal text" of a number: the shortest form, with a leading blank for zero and positives
/// when `leadingBlank` is set (the runtime's Str), without it otherwise.
std::string decimalText(double value, bool leadingBlank);

/// Round half to even at `digits` decimals (the runtime's Round).
double roundHalfEven(double value, int digits);

} // namespace qr
