#pragma once
// The runtime's number format patterns ("##,###.00", "$###,###.00", "#,##0.00##", "0%",
// `0.#####"`, a quoted literal before "#", ...), parsed once and applied many times.
//
// Rules the reports rely on: no digit before the point below 1 where the pattern has no 0
// there (".50"); zero prints as "$.00" under "$###,###.00"; an integer part longer than the
// pattern is printed in full with grouping; the minus sign stands before the dollar sign;
// quoted text and backslash-escaped characters print literally; "%" multiplies by 100.

#include "platform/core/variant.hpp"

#include <memory>
#include <string>
#include <string_view>

namespace qr {

class NumberFormat {
  public:
    /// Parse a pattern; raises Error (999, "NumberFormat") naming the pattern when it has no
    /// digit placeholder and no literal (an empty pattern is valid and means "general").
    static NumberFormat parse(std::string_view pattern);

    const std::string& pattern() const { return m_pattern; }
    std::string format(double value) const;
    /// Variants: numbers (and number text) are formatted; other text passes unchanged; Null
    /// and Empty give "".
    std::string format(const Variant& value) const;

    /// The pattern in Excel's number-format syntax, for the workbook writer.
    std::string excelPattern() const;

  private:
    struct Parsed;
    std::string m_pattern;
    std::shared_ptr<const Parsed> m_parsed; // immutable, shared by copies of one format
};

/// One-off formatting; patterns are cached so repeated calls do not re-parse.
std::string formatNumber(double value, std::string_view pattern);
std::string formatValue(const Variant& value, std::string_view pattern);

} // namespace qr
