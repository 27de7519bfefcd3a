#pragma once
// The report data a host hands to the multi-elevation glass report for a sample job: one
// elevation glass report's data per elevation, built from the job's glass lines
// (sample_rows.hpp), and the JSON data file the demo prints it from.

#include "data/sample/sample_jobs.hpp"
#include "platform/host/report_data.hpp"

#include <filesystem>

namespace qr::data::sample {

/// Every elevation of `job` in the job's order: its code as the name, its name as the title,
/// how often it occurs as the repetitions, and its lites per occurrence, ordered by
/// description, glass type, type label and thickness (the groups of the block-size report),
/// each priced per lite at block size as the supplier bills it.
host::ElevationGlassReportDataList elevationGlassData(const JobPlan& job);

/// The data file of PrintMultipleElevationGlassReports: the elevations of sample job 1 as
/// <folder>/PrintMultipleElevationGlassReports-job1.json (the folder made when missing),
/// written whole or not at all. The report format is not in the file: `call` takes it with
/// --report-format ("basic" for the portrait report, anything else for the block-size one).
/// Returns the file.
std::filesystem::path writeElevationGlassReportData(const std::filesystem::path& folder);

} // namespace qr::data::sample
