#pragma once
// The report-data objects the host hands to the typed print methods. The host fills them; the
// reports only read them. Member names follow the host's (`User.Name`, `Job.JobID`, ...) so the
// JSON form the command line reads uses the same key paths.

#include "platform/host/services.hpp"

#include <cstdint>
#include <string>

namespace qr::host {

struct Job {
    std::int32_t JobID = 0;
    std::string JobName;
};

/// Heading members shared by the report-data types.
struct ReportHeading {
    ::qr::host::User User;
    ::qr::host::Company Company;
    ::qr::host::Vendor Vendor;
    ::qr::host::Job Job;
};

/// Data of the four final glass reports: the heading, the host's glass query and the
/// connection it runs on.
struct FinalGlassReportData : ReportHeading {
    std::string ReportTitle;
    std::string GlassQuery;
    bool ShowSupplier = false;
    ConnectionRef Connection;
};

// The report-data types of the parts, recap, cut-list, label and elevation reports. They carry
// the heading today; their rows are added together with the reports that read them.
struct FinalPartsReportData : ReportHeading {};
struct LinealReportData : ReportHeading {};
struct MetalRecapReportData : ReportHeading {};
struct OptimizedCutListReportData : ReportHeading {};
struct JobPartsReportData : ReportHeading {};
struct CutLabelsReportData : ReportHeading {};
struct ElevationData {
    std::string ElevationName;
};
struct PartsReportListItems {};
struct ElevationPartsReportDataList {};
struct ElevationGlassReportDataList {};
struct UserDefaults {
    std::string FinalPartsReportTitle;
};

/// What PrintElevationPartsReport builds from host services for its report.
struct ElevationPartsReportData {
    ::qr::host::Company Company;
    ::qr::host::ElevationData Elevation;
    ::qr::host::User User;
    ::qr::host::Vendor Vendor;
    PartsReportListItems PartsRows;
};

} // namespace qr::host
