#include "service/bid_package.hpp"

#include "data/schema.hpp"
#include "data/statements.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/db/connection.hpp"
#include "platform/db/recordset.hpp"
#include "platform/host/module_state.hpp"
#include "platform/output/pdf_writer.hpp"
#include "reports/glass/final_glass_report.hpp"
#include "service/component.hpp"
#include "service/report_objects.hpp"
#include "service/report_registry.hpp"
#include "service/run_sequence.hpp"

#include <cmath>
#include <cstdio>
#include <optional>

namespace qr::service {

namespace {

constexpr const char* kSource = "BidPackage";

/// How a package report gets its data: the request route over one of the job's report tables,
/// or a final glass report with the job's glass rows as the host would hand them over.
enum class Route { Request, FinalGlass };

struct PackageEntry {
    BidPackageReport report;
    Route route;
    const char* className;
    data::ReportTableKind table = data::ReportTableKind::Markup; // the request route's table
    bool needsJobSize = false;    // the final summary shows the job size from the request tail
    const char* method = nullptr; // the final glass report's typed method, for its errors
};

const std::vector<PackageEntry>& entries() {
    using K = data::ReportTableKind;
    static const std::vector<PackageEntry> table{
        {{"armarkup2", "Estimate", "the markup report without cost: the customer's price"},
         Route::Request,
         "ARMarkup2",
         K::Markup},
        {{"armarkup", "Estimate at Cost", "the markup report with cost pricing"},
         Route::Request,
         "ARMarkup",
         K::Markup},
        {{"finalsummaryar", "Final Summary", "the final summary at cost, with its notices"},
         Route::Request,
         "FinalSummaryAR",
         K::FramingSystems,
         true},
        {{"finalsummaryar2", "Final Summary", "the final summary at cost, page numbers only"},
         Route::Request,
         "FinalSummaryAR2",
         K::FramingSystems,
         true},
        {{"finalglassar", "Glass List", "the final glass report, portrait, priced"},
         Route::FinalGlass,
         "FinalGlassAR",
         K::Markup,
         false,
         "PrintFinalGlassPortraitReport"},
        {{"finalglassar2", "Glass List", "the final glass report, landscape, priced"},
         Route::FinalGlass,
         "FinalGlassAR2",
         K::Markup,
         false,
         "PrintFinalGlassLandscapeReport"},
        {{"finalglassarnp", "Glass List", "the final glass report, portrait, without prices"},
         Route::FinalGlass,
         "FinalGlassARNP",
         K::Markup,
         false,
         "PrintFinalGlassReportWithoutPrices"},
        {{"finalglassarnp2", "Glass List", "the final glass report, landscape, without prices"},
         Route::FinalGlass,
         "FinalGlassARNP2",
         K::Markup,
         false,
         "PrintFinalGlassLandscapeReportWithoutPrices"},
        {{"finallaborar", "Labor Report", "the job labor report"},
         Route::Request,
         "FinalLaborAR",
         K::Labor},
        {{"jobglasstoorder", "Glass to Order", "the glass to order, by glass and part type"},
         Route::Request,
         "JobGlassToOrder",
         K::GlassToOrder},
        {{"jobglasstoorder2", "Glass to Order", "the glass to order without right heights"},
         Route::Request,
         "JobGlassToOrder2",
         K::GlassToOrder},
    };
    return table;
}

const PackageEntry* entryNamed(std::string_view name) {
    for (const auto& entry : entries()) {
        if (name == entry.report.name)
            return &entry;
    }
    return nullptr;
}

std::string acceptedNames() {
    std::string names;
    for (const auto& entry : entries())
        names += (names.empty() ? "" : ", ") + std::string(entry.report.name);
    return names;
}

/// "310.5": up to two decimals, no trailing zeros, as an estimator writes an area.
std::string plainNumber(double value) {
    char text[48];
    std::snprintf(text, sizeof text, "%.2f", std::round(value * 100) / 100);
    std::string s = text;
    while (!s.empty() && s.back() == '0')
        s.pop_back();
    if (!s.empty() && s.back() == '.')
        s.pop_back();
    return s;
}

double numberOrZero(const Variant& value) {
    return value.isNull() ? 0.0 : toDouble(value);
}

/// The job size the final summary shows, "lites-panels-doors-glass area-elevations", from the
/// job's glass-to-order table and its elevations: panels and doors are the lites of those part
/// types, the glass lites and glass area are every other lite, each lite counted once per
/// occurrence of its elevation.
std::string jobSizeText(db::Connection& vendor, std::int32_t jobId) {
    const std::string table = data::reportTableName(data::ReportTableKind::GlassToOrder, jobId);
    double lites = 0, panels = 0, doors = 0, area = 0;
    auto rows = vendor.openRecordset(data::sql::litesByPartType(table, vendor.dialect()),
                                     CursorType::Static, LockType::ReadOnly);
    for (; !rows->eof(); rows->moveNext()) {
        const Variant partType = rows->value("sPartType");
        const std::string type = partType.isNull() ? std::string() : toText(partType);
        const double count = numberOrZero(rows->value("iLites"));
        if (type == "Panel") {
            panels += count;
        } else {
            lites += count;
            area += numberOrZero(rows->value("pArea"));
            if (type == "Door")
                doors += count;
        }
    }
    rows->close();
    auto elevations = vendor.openRecordset(data::sql::elevationCount(jobId), CursorType::Static,
                                           LockType::ReadOnly);
    const double elevationCount =
        elevations->eof() ? 0 : numberOrZero(elevations->value("iElevations"));
    elevations->close();
    return plainNumber(lites) + "-" + plainNumber(panels) + "-" + plainNumber(doors) + "-" +
           plainNumber(area) + "-" + plainNumber(elevationCount);
}

/// The headings every report of the package shows, looked up once as the dispatcher looks
/// them up for a request; here a lookup that fails fails the package.
struct PackageHeadings {
    host::User user;
    host::Company company;
    host::Vendor vendor;
    std::string jobName;
};

PackageHeadings lookUpHeadings(const host::ConnectionRef& vendor, const host::ConnectionRef& master,
                               const BidPackageRequest& request) {
    PackageHeadings headings;
    auto users = host::hostClasses().createUserService();
    users->setConnection(master);
    headings.user = users->getUser(request.userId);
    auto companies = host::hostClasses().createCompanyService();
    companies->setConnection(master);
    headings.company = companies->getCompany();
    auto vendors = host::hostClasses().createVendorService();
    vendors->setConnection(vendor);
    headings.vendor = vendors->getVendor();

    auto job = vendor->openRecordset(data::sql::jobLookup(std::to_string(request.jobId)),
                                     CursorType::Static, LockType::ReadOnly);
    if (job->recordCount() == 0) {
        throw Error(errc::kComponent, kSource,
                    "Job " + std::to_string(request.jobId) +
                        " is not in the JobSummary table of the vendor database.");
    }
    headings.jobName = toText(job->value("sJobName"));
    job->close();
    return headings;
}

/// The module state a request for the job would leave, without any export asked for.
void setRequestState(const PackageHeadings& headings, const BidPackageRequest& request) {
    auto& state = host::moduleState();
    state.requestUserId = std::to_string(request.userId);
    state.requestJobId = std::to_string(request.jobId);
    state.requestExcel = false;
    state.requestPdf = false;
    state.requestSpareFlag = false;
    state.requestSpareText.clear();
    state.firmPhone = headings.user.phone.empty() ? headings.company.phone : headings.user.phone;
    state.userEmail = headings.user.email.empty() ? headings.company.email : headings.user.email;
    state.userName = headings.user.name;
    state.firmName = headings.company.name;
    state.firmFax = headings.company.fax;
    state.vendorName = headings.vendor.name;
    state.currentJobName = headings.jobName;
}

/// Runs one report of the package headless and returns a copy of its pages. A report object of
/// the request route stays, as after a request; a final glass report is released, as after a
/// typed method, since its data lives here.
page::Pages runRequestReport(const PackageEntry& entry, const BidPackageRequest& request,
                             db::Connection& vendor) {
    auto& state = host::moduleState();
    state.requestTable = data::reportTableName(entry.table, request.jobId);
    state.requestTail = entry.needsJobSize ? jobSizeText(vendor, request.jobId) : std::string();
    engine::Report& report = reportObject(entry.className);
    report.run();
    page::Pages pages = report.pages();
    report.releasePages();
    return pages;
}

template <class R>
page::Pages runFinalGlass(const PackageEntry& entry, const PackageHeadings& headings,
                          const BidPackageRequest& request, const host::ConnectionRef& vendor) {
    host::FinalGlassReportData data;
    data.User = headings.user;
    data.Company = headings.company;
    data.Vendor = headings.vendor;
    data.Job = {request.jobId, headings.jobName};
    data.GlassQuery = data::sql::finalGlassQuery(request.jobId);
    data.ShowSupplier = false; // the contractor is not told where the glass comes from
    data.Connection = vendor;
    struct Release {
        const char* className;
        ~Release() { releaseReportObject(className); }
    } release{entry.className};
    R& report = reportObjectAs<R>(entry.className);
    report.ReportData = &data;
    report.ShouldExportToExcel = false;
    report.ShouldExportToPdf = false;
    report.run();
    return report.pages();
}

page::Pages runFinalGlassEntry(const PackageEntry& entry, const PackageHeadings& headings,
                               const BidPackageRequest& request,
                               const host::ConnectionRef& vendor) {
    const std::string_view name = entry.className;
    if (name == "FinalGlassAR2")
        return runFinalGlass<reports::FinalGlassAR2>(entry, headings, request, vendor);
    if (name == "FinalGlassARNP")
        return runFinalGlass<reports::FinalGlassARNP>(entry, headings, request, vendor);
    if (name == "FinalGlassARNP2")
        return runFinalGlass<reports::FinalGlassARNP2>(entry, headings, request, vendor);
    return runFinalGlass<reports::FinalGlassAR>(entry, headings, request, vendor);
}

/// Shows a report's failure in flight as that report's route shows it: the dispatcher's
/// "Error Encountered" box for a request, the typed method's error dialog for a final glass
/// report.
void showReportFailure(const PackageEntry& entry) {
    if (entry.route == Route::FinalGlass) {
        reportTypedMethodFailure(entry.method);
    } else {
        host::messageBox().show(host::currentErrorDescription(), host::MessageIcon::Information,
                                "Error Encountered");
    }
}

/// The package's reports, checked: every name known, at least one.
std::vector<const PackageEntry*> packageEntries(const BidPackageRequest& request) {
    const std::vector<std::string>& names =
        request.reports.empty() ? defaultBidPackage() : request.reports;
    std::vector<const PackageEntry*> found;
    for (const std::string& name : names) {
        const PackageEntry* entry = entryNamed(name);
        if (!entry) {
            throw Error(errc::kInvalidCall, kSource,
                        "Unknown report '" + name + "' for a bid package; the accepted names are " +
                            acceptedNames() + ".");
        }
        found.push_back(entry);
    }
    return found;
}

} // namespace

const std::vector<BidPackageReport>& bidPackageReports() {
    static const std::vector<BidPackageReport> reports = [] {
        std::vector<BidPackageReport> list;
        for (const auto& entry : entries())
            list.push_back(entry.report);
        return list;
    }();
    return reports;
}

const std::vector<std::string>& defaultBidPackage() {
    static const std::vector<std::string> names{"armarkup2", "finalsummaryar", "finalglassar",
                                                "finallaborar"};
    return names;
}

const BidPackageReport* bidPackageReport(std::string_view name) {
    const PackageEntry* entry = entryNamed(name);
    return entry ? &entry->report : nullptr;
}

void printBidPackage(PrintService& service, const BidPackageRequest& request) {
    const std::vector<const PackageEntry*> reports = packageEntries(request);
    if (request.output.empty())
        throw Error(errc::kInvalidCall, kSource, "No file was given for the bid package.");
    const host::ConnectionRef vendor = service.VendorConnection();
    const host::ConnectionRef master = service.MasterConnection();
    if (!vendor || !master) {
        throw Error::component(kSource, "Cannot print a bid package without setting the "
                                        "VendorConnection and MasterConnection properties first");
    }
    initializeComponent();

    // The request reports read the request connections; they are the host's only for this call.
    const host::RequestConnectionsScope requestConnections(vendor, master);

    const PackageHeadings headings = lookUpHeadings(vendor, master, request);
    setRequestState(headings, request);

    std::vector<page::Pages> printed;
    printed.reserve(reports.size());
    for (const PackageEntry* entry : reports) {
        try {
            printed.push_back(entry->route == Route::FinalGlass
                                  ? runFinalGlassEntry(*entry, headings, request, vendor)
                                  : runRequestReport(*entry, request, *vendor));
        } catch (...) {
            const std::string description = host::currentErrorDescription();
            showReportFailure(*entry);
            throw Error(errc::kComponent, kSource,
                        "The bid package of job " + std::to_string(request.jobId) +
                            " was not written: the report '" + entry->report.name + "' (" +
                            entry->report.title + ") failed: " + description);
        }
    }

    std::vector<output::PdfSection> sections;
    for (std::size_t i = 0; i < reports.size(); ++i)
        sections.push_back({reports[i]->report.title, &printed[i]});
    const output::PdfMetadata metadata{"Bid Package - " + headings.jobName, headings.company.name,
                                       headings.jobName};
    output::writePdf(sections, request.output, metadata);
}

} // namespace qr::service
