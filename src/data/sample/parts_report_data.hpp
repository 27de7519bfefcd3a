#pragma once
// The report data a host hands to the parts and metal print methods for the sample jobs, built
// from their parts take-off (parts_takeoff.hpp), and the JSON data files the demo prints from:
// one a method and job, keyed by the host's member names as `quarvex-reports call` reads them.

#include "data/sample/parts_takeoff.hpp"
#include "platform/host/report_data.hpp"

#include <filesystem>
#include <string>
#include <vector>

namespace qr::data::sample {

/// The sample firm's heading for `job`: estimator, firm, vendor, job name and finish.
host::PartsReportHeading partsHeading(const JobPlan& job);

/// One line per metal part and stock length (the stock lengths to buy), per counted part and
/// per door hardware item, priced as the vendor prices them; job 2 is priced by unit quantity.
host::FinalPartsReportData finalPartsData(const JobTakeoff& takeoff);
/// The user's defaults the final parts reports read for `job` (job 2 has a title of its own).
host::UserDefaults userDefaultsFor(const JobPlan& job);
/// The gaskets, tapes and backer rod, by the lineal foot.
host::LinealReportData linealData(const JobTakeoff& takeoff);
/// Per metal part and stock length: how many to buy and the cut lengths out of them.
host::MetalRecapReportData metalRecapData(const JobTakeoff& takeoff);
/// The metal cuts of the job, one line per part and length; `byElevation`: per elevation, in
/// the job's elevation order.
host::JobPartsReportData jobPartsData(const JobTakeoff& takeoff, bool byElevation);
/// The optimiser's patterns: one line per stock piece.
host::OptimizedCutListReportData cutListData(const JobTakeoff& takeoff);

/// Writes `text` into `file`, whole or not at all (through a temporary file beside it).
void writeWhole(const std::filesystem::path& file, const std::string& text);

/// Writes <method>-job<id>.json for each parts method and sample job into `folder` (made when
/// missing), each file whole or not at all. Returns the files written, in that order.
std::vector<std::filesystem::path> writePartsReportData(const std::filesystem::path& folder);

} // namespace qr::data::sample
