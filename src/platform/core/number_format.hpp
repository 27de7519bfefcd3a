#pragma once
// The runtime's number format patterns ("##,###.00", "$###,###.00", "#,##0.00##", "0%",
// `0.#####"`, a quoted literal before "#", ...), parsed once and applied many times.
//
// Rules the reports rely on: no digit before the point below 1 where the pattern has no 0
// there (".50"); zero prints as "$.00" under "$###,###.00"; an integer part longer than the
// pattern is printed in full with grouping; the minus sign stands before the dollar sign
// ("-$3.00", and "-$.00" for a negative that rounds to zero, as the runtime printed it);
// quoted text and backslash-escaped characters print literally, and so does a double quote
// with no closing partner (`0.#####"` gives `0.25"` and `1."`); "%" multiplies by 100.
//
// Rounding: the value is first written at 15 significant digits (7 for a Single, exact for
// Currency, integers and number text), as the runtime's own number text, and that decimal
// value is rounded half away from zero at the shown decimals. So 0.125 shows as ".13" and
// 2.675, which is 2.67499.. in binary but 2.675 at 15 digits, as "2.68" - unlike
// roundHalfEven, which takes halves to the even neighbour. A Single keeps its 7 digits: a
// Single total of 100000.07 is 100000.1 and shows as "$100,000.10".
//
// Also understood: sections "positive;negative;zero;null" (an empty section uses the first
// one), "0" and "#" anywhere, "," between integer placeholders for grouping and right before
// the point to divide by 1000, "E+0"/"E-0" exponents, and the named formats "General
// Number", "Currency" (the system currency), "Fixed", "Standard", "Percent", "Scientific",
// "Yes/No", "True/False", "On/Off". Separators are always "." and ",": the patterns are the
// host's US ones and their output must not change with the machine's locale.

#include "platform/core/variant.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qr {

class NumberFormat {
  public:
    /// The general format, as parse("") gives it.
    NumberFormat();
    /// Parse a pattern; raises Error (999, "NumberFormat") naming the pattern when it has no
    /// digit placeholder and no literal, ends in a lone backslash, has an exponent without
    /// digits, an empty first section or more than four sections. An empty pattern is valid
    /// and means "general" (the number's own text).
    static NumberFormat parse(std::string_view pattern);

    const std::string& pattern() const { return m_pattern; }
    /// A Double; infinities and NaN raise Overflow. Allocates nothing beyond the result.
    std::string format(double value) const;
    /// Variants: numbers (and number text, read exactly) are formatted at their own
    /// precision; Booleans as -1 and 0; Dates as their serial number; other text passes
    /// unchanged; Empty gives "" and Null gives "" (or the fourth section's text).
    std::string format(const Variant& value) const;

    /// The pattern in Excel's number-format syntax, for the workbook writer: the same
    /// placeholders, literal letters and digits escaped with a backslash, a lone quote as
    /// \", empty sections spelled out, no Null section; "General" for the general format and
    /// the system's currency format for "Currency".
    std::string excelPattern() const;

  private:
    struct Parsed;
    std::string m_pattern;
    std::shared_ptr<const Parsed> m_parsed; // immutable, shared by copies of one format
};

/// The number a format shows for `value`: the decimal value it rounds, as a double. A Double
/// counts at 15 significant digits and a Single at 7 (so 0.1 + 0.2 gives 0.3, and a Single of
/// 100000.07 gives 100000.1, as printed); Currency, whole numbers and number text exactly.
/// Empty for Null, Empty, Booleans, Dates and text that is no number. Infinities and NaN
/// raise Overflow.
std::optional<double> shownNumber(const Variant& value);

/// One-off formatting; patterns are cached per thread so repeated calls do not re-parse.
std::string formatNumber(double value, std::string_view pattern);
std::string formatValue(const Variant& value, std::string_view pattern);

} // namespace qr
