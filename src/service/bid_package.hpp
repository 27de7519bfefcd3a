#pragma once
// The bid package: several reports of one job printed into one PDF that the estimator sends to
// the general contractor, one bookmark per report, each report's pages as it prints them (its
// own "Page n of m"), and the job and the firm in the document's metadata. Each report runs
// headless through the same report objects as PrintReport and the typed methods: no preview,
// no printer, no exports.

#include "service/print_service.hpp"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace qr::service {

/// What a bid package holds and where it goes.
struct BidPackageRequest {
    std::int32_t jobId = 0;
    /// The estimator whose name, phone and e-mail the report headings show (the request
    /// route's user id).
    std::int32_t userId = 1;
    /// The PDF file written; replaced only when the whole package succeeds.
    std::filesystem::path output;
    /// Report names (bidPackageReports()), in print order; empty: defaultBidPackage().
    std::vector<std::string> reports;
};

/// A report a bid package can hold: its name in a package request (the request name, or the
/// report class in lower case for the final glass reports) and its bookmark.
struct BidPackageReport {
    const char* name;
    const char* title;
    const char* description = ""; ///< what it is, for a list of the names
};

/// Every report a package accepts, in the order the help lists them.
const std::vector<BidPackageReport>& bidPackageReports();
/// The reports of a package that names none: the estimate (markup without cost), the final
/// summary, the glass list and the labor report.
const std::vector<std::string>& defaultBidPackage();
/// The accepted report of that name (exact, lower case); nullptr when there is none.
const BidPackageReport* bidPackageReport(std::string_view name);

/// Runs the request's reports of the job on the service's two connections and writes them into
/// one PDF at request.output, whole or not at all. The report tables read are the job's
/// MarkupReport<job>, FramingReport<job>, LaborReport<job> and so on, as the host fills them;
/// the final glass reports read the job's JobGlass rows.
///
/// Raises qr::Error: 5 (invalid call) for an unknown report name (naming it) or a missing
/// output path; 999 when a connection is not set, or when a report fails (its error is shown
/// first as that report shows its errors; the description names the report); the PDF writer's
/// error when the file cannot be written. On any error the file at request.output is left as
/// it was.
void printBidPackage(PrintService& service, const BidPackageRequest& request);

} // namespace qr::service
