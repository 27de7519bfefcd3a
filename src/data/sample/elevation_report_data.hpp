#pragma once
// The report data a host hands to the elevation print methods for the sample jobs: each
// elevation of a job as the elevation parts report reads it, with the metal cuts of one
// occurrence of it from the job's parts take-off, and the data files the demo prints from.

#include "data/sample/parts_takeoff.hpp"
#include "platform/host/report_data.hpp"

#include <filesystem>
#include <string>
#include <vector>

namespace qr::data::sample {

/// Elevation `index` of `job` as the host describes it: its code as the name, its name as the
/// description, how many times it occurs, the job's finish and the elevation's framing system.
host::ElevationData elevationData(const JobPlan& job, int index);

/// One entry per elevation of the take-off's job, in the job's order: the sample firm's
/// heading, the elevation, and the metal cuts of one occurrence of the elevation (one line per
/// part and length, longest first).
host::ElevationPartsReportDataList elevationPartsData(const JobTakeoff& takeoff);

/// Small, valid data of the elevation methods (the small storefront job), what
/// `quarvex-reports call METHOD --example` prints.
std::string elevationPartsExampleJson();
std::string multipleElevationPartsExampleJson();
/// The same for the multi-elevation glass report.
std::string multipleElevationGlassExampleJson();

/// Writes, for each sample job with elevations, PrintElevationPartsReport-job<id>.json (its
/// first elevation) and PrintMultipleElevationPartsReports-job<id>.json (all of them) into
/// `folder` (made when missing), each file whole or not at all. Returns the files written.
std::vector<std::filesystem::path> writeElevationReportData(const std::filesystem::path& folder);

} // namespace qr::data::sample
