#include "data/sample/elevation_report_data.hpp"

#include "data/sample/elevation_glass_data.hpp"
#include "data/sample/glass_sizes.hpp"
#include "data/sample/parts_report_data.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/host/report_data_json.hpp"

#include <algorithm>
#include <cctype>
#include <functional>
#include <map>
#include <system_error>

namespace qr::data::sample {

namespace {

/// "curtain wall" as the system's name prints: "Curtain Wall".
std::string systemName(const std::string& system) {
    std::string name = system;
    bool wordStart = true;
    for (char& c : name) {
        if (wordStart)
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        wordStart = c == ' ';
    }
    return name;
}

} // namespace

host::ElevationData elevationData(const JobPlan& job, int index) {
    const ElevationPlan& plan = job.elevations.at(static_cast<std::size_t>(index));
    host::ElevationData elevation;
    elevation.Name = plan.code;
    elevation.Description = plan.name;
    elevation.RepeatCount = plan.quantity;
    elevation.Finish = job.finish.isNull() ? std::string() : toText(job.finish);
    elevation.System.Name = systemName(plan.system);
    elevation.Job = {job.jobId, job.name};
    return elevation;
}

host::ElevationPartsReportDataList elevationPartsData(const JobTakeoff& takeoff) {
    const JobPlan& job = *takeoff.job;
    const host::PartsReportHeading heading = partsHeading(job);
    host::ElevationPartsReportDataList list;
    for (int e = 0; e < static_cast<int>(job.elevations.size()); ++e) {
        host::ElevationPartsReportData data;
        data.User = heading.User;
        data.Company = heading.Company;
        data.Vendor = heading.Vendor;
        data.Elevation = elevationData(job, e);
        // The take-off cuts every occurrence of the elevation; the report lists one.
        const int occurrences = std::max(1, data.Elevation.RepeatCount);
        for (const PartNeed& need : takeoff.parts) {
            std::map<int, int, std::greater<>> counts;
            for (const MemberCut& cut : need.cuts) {
                if (cut.elevation == e)
                    ++counts[cut.sixteenths];
            }
            for (const auto& [length, count] : counts) {
                host::PartsReportListItem item;
                item.Quantity = count / occurrences;
                item.PartNumber = need.part->partNumber;
                item.Description = need.part->description;
                item.PartType = need.part->partType;
                item.Length = inchesText(length);
                data.Items.push_back(std::move(item));
            }
        }
        list.push_back(std::move(data));
    }
    return list;
}

std::string elevationPartsExampleJson() {
    const host::ElevationPartsReportDataList list =
        elevationPartsData(partsTakeoff(sampleJobs().at(1)));
    const host::ElevationPartsReportData& first = list.front();
    return host::elevationPartsCallToJson(first.User, first.Elevation, first.Items);
}

std::string multipleElevationPartsExampleJson() {
    return host::toJson(elevationPartsData(partsTakeoff(sampleJobs().at(1))));
}

std::string multipleElevationGlassExampleJson() {
    return host::toJson(elevationGlassData(sampleJobs().at(1)));
}

std::vector<std::filesystem::path> writeElevationReportData(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw Error::component("SampleElevations", "Cannot make the folder " + folder.string() +
                                                       ": " + error.message());
    std::vector<std::filesystem::path> written;
    const auto write = [&](const char* method, const JobPlan& job, const std::string& text) {
        const auto file =
            folder / (std::string(method) + "-job" + std::to_string(job.jobId) + ".json");
        writeWhole(file, text);
        written.push_back(file);
    };
    for (const JobPlan& job : sampleJobs()) {
        if (job.elevations.empty())
            continue;
        const host::ElevationPartsReportDataList parts = elevationPartsData(partsTakeoff(job));
        const host::ElevationPartsReportData& first = parts.front();
        write("PrintElevationPartsReport", job,
              host::elevationPartsCallToJson(first.User, first.Elevation, first.Items));
        write("PrintMultipleElevationPartsReports", job, host::toJson(parts));
    }
    return written;
}

} // namespace qr::data::sample
