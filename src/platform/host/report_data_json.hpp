#pragma once
// Report data read from JSON, for the command line and tests. Keys are the host's member names,
// nested as objects: {"User": {"Name": ...}, "Job": {"JobID": 12, "JobName": ...},
// "GlassQuery": ..., "Connection": "sqlite:/path/vendor.db"}. A missing key, a key of the wrong
// type and a key the type does not have are errors that name the key path ("Job.JobID").

#include "platform/host/report_data.hpp"

#include <string>

namespace qr::host {

/// Parse `json` as the data of the final glass reports. Every member is required:
/// User.Name, User.Phone, User.Email, Company.Name, Company.Phone, Job.JobID, Job.JobName,
/// ReportTitle, GlassQuery, ShowSupplier, Connection (a connection string, opened here);
/// Company.Fax, Company.Email and Vendor.Name may be given. Raises qr::Error (999,
/// "ReportData") naming the key path.
FinalGlassReportData finalGlassReportDataFromJson(const std::string& json);

/// Parse the heading members (User, Company, Vendor, Job), all optional, of the report-data
/// types that carry only a heading today.
ReportHeading reportHeadingFromJson(const std::string& json);

} // namespace qr::host
