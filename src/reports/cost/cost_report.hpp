#pragma once
// What the cost reports (markup, estimate, final summary, job labor) share: they are asked for
// through a request, so they read through the request's connections and its module values;
// they show the host's figures through the classic money patterns; and one report object
// serves request after request, so every run starts again from the design's captions.

#include "platform/core/rows.hpp"
#include "platform/core/variant.hpp"
#include "platform/db/connection.hpp"
#include "platform/engine/report.hpp"
#include "reports/common/heading.hpp"
#include "reports/common/page_footer.hpp"
#include "reports/common/print_reports.hpp"
#include "reports/common/request_report.hpp"

#include <string>
#include <string_view>

namespace qr::reports::cost {

/// The heading of the summary and labor reports: the firm, its phone and fax, the job.
inline constexpr HeadingControls kFirmHeading{.firm = "lGlassfirm",
                                              .user = nullptr,
                                              .phone = "lPhone",
                                              .email = nullptr,
                                              .fax = "lFax",
                                              .job = "lJobName"};

/// The money pattern of the markup figures and the labor totals ($.00 for zero).
inline constexpr std::string_view kMoneyFormat = "$###,###,###.00";
/// The shorter money pattern of the per-square-foot prices and the labor footer.
inline constexpr std::string_view kShortMoneyFormat = "$###,###.00";
/// The stored format of bound money boxes.
inline constexpr std::string_view kBoundMoneyFormat = "$#,##0.00";
/// The system's currency format (the category totals).
inline constexpr std::string_view kSystemCurrency = "Currency";

// Figures are shown through the engine's setNumber, which formats a double at its fifteen
// significant digits (dropping the binary noise of host arithmetic: 0.1 + 0.2 shows as $.30)
// and a single-precision figure at seven (a running total of 100,000.07 shows as
// $100,000.10), and keeps the number for the workbook.

/// A price per square foot: `amount` / `area`, rounded to cents with halves to the even
/// neighbour, and kept in single precision.
float pricePerSquareFoot(double amount, double area);

/// The value of `column` of the current row when it is not Null. A Null raises Error 94
/// (Invalid use of Null) whose description names the column and `where` it was read
/// ("the markup table MarkupReport7"), raised from `source`.
Variant requiredValue(const RowCursor& row, std::string_view column, std::string_view where,
                      const std::string& source);
/// requiredValue as a double (Type mismatch for text that is no number).
double requiredNumber(const RowCursor& row, std::string_view column, std::string_view where,
                      const std::string& source);
/// requiredValue as text.
std::string requiredText(const RowCursor& row, std::string_view column, std::string_view where,
                         const std::string& source);
/// The text of `column`, or "" when it is Null.
std::string textOrEmpty(const RowCursor& row, std::string_view column);

/// Base of the cost reports: the request route of every report asked for by a request string.
class CostReport : public RequestReport {
  protected:
    using RequestReport::RequestReport;
};

} // namespace qr::reports::cost
