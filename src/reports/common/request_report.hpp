#pragma once
// What every report asked for through a request string shares: it reads through the request's
// connections and its module values (the table the host filled, the job, the export flags), it
// binds its data control to a statement on the request's table, and one report object serves
// request after request, so each run starts again from the design's captions.

#include "platform/db/connection.hpp"
#include "platform/engine/report.hpp"
#include "reports/common/print_reports.hpp"

#include <map>
#include <string>
#include <string_view>

namespace qr::reports {

class RequestReport : public engine::Report {
  protected:
    /// `suffixes` name the export files of the report (appended to the job name); both nullptr
    /// for a report that exports nothing.
    RequestReport(engine::ReportDesign design, ExportSuffixes suffixes);

    /// The request's vendor and master connections; Error 91 naming the report and the
    /// connection when the report runs outside a request.
    db::Connection& vendorConnection() const;
    db::Connection& masterConnection() const;

    /// Puts every label back to its design caption. Called first thing in a run, so that a
    /// lookup that finds nothing shows the design text ("xx") and not the last request's.
    void restoreDesignCaptions();

    /// Binds the report to `source` on the vendor connection: static cursor, optimistic
    /// locking (the two cursor settings 3), opened at once.
    void openDataSource(const std::string& source);

    /// The page-number footer: "Page  n of  m" in txtPageNumber.
    void pageFooterFormat();

    /// Exports the finished pages as the request asked: the workbook, then the PDF, each named
    /// after the request's job. Nothing for a report without export suffixes.
    void exportRequestedFiles();

    /// exportRequestedFiles.
    void reportEnd() override;

    /// The current row's `column` as a number. Null raises Error 94 (Invalid use of Null) and
    /// text that is no number Error 13, each naming the column and the request's table.
    double rowNumber(std::string_view column);
    /// The current row's `column` as text; Null raises Error 94 naming the column and table.
    std::string rowText(std::string_view column);
    /// The number a text box printed for the current row (its text read back as a number);
    /// Error 13 naming the box and the `column` it shows when the text is no number (an
    /// empty box: the column is Null).
    double printedNumber(std::string_view box, std::string_view column);

  private:
    [[noreturn]] void refuseValue(int number, std::string_view column,
                                  const std::string& problem) const;

    ExportSuffixes m_suffixes;
    std::map<std::string, std::string> m_designCaptions;
};

} // namespace qr::reports
