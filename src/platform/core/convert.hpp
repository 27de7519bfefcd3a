#pragma once
// The classic conversions, with the classic rules the reports depend on. Each raises the
// runtime's Error (Type mismatch 13, Overflow 6, Invalid use of Null 94) where the old
// runtime did.

#include "platform/core/variant.hpp"

#include <concepts>
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
/// Currency: four decimals, half to even; text is read exactly, not through a double.
Currency toCurrency(const Variant& value);
/// Text as the runtime's string conversion writes it: numbers with at most 15 significant
/// digits for Double and 7 for Single, trailing zeros dropped ("0.5", "12", "-3.25"; 0.1 + 0.2
/// gives "0.3", a Single 100000.07 gives "100000.1"), exponent form below 1E-04 and from
/// 1E+15 up (1E+07 for Single: "1E-05", "1.5E+15"), no leading blank; Currency with up to four
/// decimals; Booleans "True"/"False"; dates in the system short date, with the time (to the second)
/// when there is one, the time alone on day zero; Empty as "". Null is Invalid use of Null.
std::string toText(const Variant& value);

/// Number from text as the runtime's numeric conversion reads it: optional blanks, sign, a
/// currency sign ("$", before or after the sign), digit grouping with "," in the integer
/// part, a decimal point, an exponent (E or D), parentheses for a negative amount. Empty
/// optional when the text is not a number; Overflow beyond the range of a Double.
std::optional<double> numberFromText(std::string_view text);

/// "Decimal text" of a number as the runtime's Str writes it: up to 15 significant digits,
/// no digit before the point below 1 (" .5", "-.25"), a leading blank for zero and positives
/// when `leadingBlank` is set (" 12"), none otherwise (".5"). A float argument takes the
/// Single form below.
std::string decimalText(double value, bool leadingBlank);
/// The same for a Single: up to 7 significant digits, so a running Single total of
/// 100000.07 reads " 100000.1" and formats as "$100,000.10".
std::string decimalTextSingle(float value, bool leadingBlank);
/// decimalText of a float is that of a Single (an exact match wins over the double form;
/// integers still take the double form).
template <std::same_as<float> F> std::string decimalText(F value, bool leadingBlank) {
    return decimalTextSingle(value, leadingBlank);
}

/// Round half to even at `digits` decimals (the runtime's Round): the binary value is
/// scaled by 10^digits and rounded to the even neighbour, so 2.125 gives 2.12 and 2.375
/// gives 2.38, while 1.005 (1.00499.. in binary) gives 1. `digits` outside 0..22 is
/// Invalid procedure call.
double roundHalfEven(double value, int digits);

} // namespace qr
