#pragma once
// Exports of finished pages into the job's folder, and the usage event after each request.
// The folder of a job J under the vendor folder V is V, "Jobs", J, "Reports" joined by the
// platform's separator (with a separator at the end); V is not normalised, so a V that ends
// in a separator gives a doubled one. J is typed by estimators ("Smith/Jones Remodel"), so in
// the folder and the file name it is made safe first: nothing is ever written outside
// V/Jobs/<job folder>/Reports/.

#include "platform/engine/page/page.hpp"

#include <string>
#include <string_view>

namespace qr::reports {

#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
#else
inline constexpr char kPathSeparator = '/';
#endif

/// `name` as one file or folder name: each character that cannot stand in a file name on
/// Windows or Linux (/ \ : * ? " < > | and control characters) becomes "-", and "." or ".."
/// become "-" or "--". Everything else, spaces included, stays.
std::string safeFileName(std::string_view name);

/// V + sep + "Jobs" + sep + safeFileName(J) + sep + "Reports" + sep. Raises error 999 when the
/// job's folder name would be nothing but blanks, dots and dashes.
std::string exportFolder(const std::string& vendorPath, const std::string& jobName);

/// Writes the pages as a workbook to the job's folder. Traps every error: it shows
/// "Issue exporting report to excel: <description>" through the error dialog (module
/// "PrintReports", procedure "ExportToExcel") and returns normally. `jobName` empty means the
/// current request's job name.
void exportToExcel(const page::Pages& pages, const std::string& fileName,
                   const std::string& jobName);

/// Writes the pages as a PDF to the job's folder. Traps nothing: error 999 for a missing job
/// name or vendor folder, and any failure of the folder or the filter, reach the caller.
void exportToPdf(const page::Pages& pages, const std::string& fileName, const std::string& jobName);

/// A report's two export file suffixes, e.g. "-FinalGlass.xls" and "-FinalGlass.pdf".
struct ExportSuffixes {
    const char* spreadsheet;
    const char* pdf;
};

/// What a report's end handler does: the spreadsheet when asked, then the PDF when asked, each
/// named the job name followed by the suffix.
void exportAtReportEnd(const page::Pages& pages, const std::string& jobName, bool spreadsheet,
                       bool pdf, ExportSuffixes suffixes);

/// Records the usage event of a request: "Previewed" or "Printed (No Preview)", category
/// "Report", label "PrintReport-" followed by the report name.
void logReportOutcome(const std::string& reportName, bool preview);

} // namespace qr::reports
