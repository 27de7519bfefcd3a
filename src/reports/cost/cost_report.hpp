#pragma once
// What the cost reports (markup, estimate, final summary, job labor) share: they are asked for
// through a request, so they read through the request's connections and its module values;
// they show the host's figures through the classic money patterns; and one report object
// serves request after request, so every run starts again from the design's captions.

#include "platform/core/rows.hpp"
#include "platform/core/variant.hpp"
#include "platform/db/connection.hpp"
#include "platform/engine/report.hpp"
#include "reports/common/print_reports.hpp"

#include <map>
#include <string>
#include <string_view>

namespace qr::reports::cost {

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

/// Base of the cost reports.
class CostReport : public engine::Report {
  protected:
    /// `suffixes` name the export files of the report (appended to the job name).
    CostReport(engine::ReportDesign design, ExportSuffixes suffixes);

    /// The request's vendor and master connections; Error 91 naming the report and the
    /// connection when the report runs outside a request.
    db::Connection& vendorConnection() const;
    db::Connection& masterConnection() const;

    /// Puts every label back to its design caption. Called first thing in each run, so that a
    /// lookup that finds nothing shows the design text ("xx") and not the last request's.
    void restoreDesignCaptions();

    /// Binds the report to `source` on the vendor connection: static cursor, optimistic
    /// locking (the two cursor settings 3), opened at once.
    void openDataSource(const std::string& source);

    /// The report date and time of the page headings.
    void showReportDateTime();

    /// The page-number footer: "Page  n of  m" in txtPageNumber.
    void pageFooterFormat();

    /// Exports the finished pages as the request asked: the workbook, then the PDF, each named
    /// after the request's job.
    void reportEnd() override;

  private:
    ExportSuffixes m_suffixes;
    std::map<std::string, std::string> m_designCaptions;
};

} // namespace qr::reports::cost
