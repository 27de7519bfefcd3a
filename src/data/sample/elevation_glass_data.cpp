#include "data/sample/elevation_glass_data.hpp"

#include "data/sample/glass_sizes.hpp"
#include "data/sample/parts_report_data.hpp"
#include "data/sample/sample_rows.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/host/report_data_json.hpp"

#include <algorithm>
#include <system_error>
#include <tuple>

namespace qr::data::sample {

namespace {

double inches(const std::string& size) {
    return sixteenthsOf(size) / 16.0;
}

host::ElevationGlassItem glassItem(const GlassLine& line) {
    const GlassProduct& product = *line.product;
    host::ElevationGlassItem item;
    item.Quantity = line.lite->perElevation;
    item.Description = product.description;
    item.Thickness = product.thickness;
    item.GlassType = product.glassType;
    item.TypeLabel = product.typeLabel;
    item.PricePerSqFt = Currency::fromDouble(product.pricePerSqFt);
    item.Width = inches(line.width);
    item.LeftHeight = inches(line.leftHeight);
    item.RightHeight = inches(line.rightHeight);
    item.Area = line.area;
    item.BlockWidth = line.blockWidth;
    item.BlockHeight = line.blockHeight;
    item.BlockArea = line.blockArea;
    // One lite as billed: at its block area, or the supplier's minimum when that is more.
    item.BlockPrice = Currency::fromDouble(
        roundHalfEven(std::max(line.blockArea, product.minBlockArea) * product.pricePerSqFt, 2));
    return item;
}

} // namespace

host::ElevationGlassReportDataList elevationGlassData(const JobPlan& job) {
    const host::PartsReportHeading heading = partsHeading(job);
    const std::vector<GlassLine> lines = glassLines(job);
    host::ElevationGlassReportDataList list;
    for (const ElevationPlan& plan : job.elevations) {
        host::ElevationGlassReportData data;
        data.User = heading.User;
        data.Company = heading.Company;
        data.Elevation = {plan.code, plan.name, plan.quantity, {job.jobId, job.name}};
        for (const GlassLine& line : lines) {
            if (line.elevation == &plan)
                data.GlassItems.push_back(glassItem(line));
        }
        std::stable_sort(data.GlassItems.begin(), data.GlassItems.end(),
                         [](const host::ElevationGlassItem& a, const host::ElevationGlassItem& b) {
                             return std::tie(a.Description, a.GlassType, a.TypeLabel, a.Thickness) <
                                    std::tie(b.Description, b.GlassType, b.TypeLabel, b.Thickness);
                         });
        list.push_back(std::move(data));
    }
    return list;
}

std::filesystem::path writeElevationGlassReportData(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw Error::component("SampleGlass", "Cannot make the folder " + folder.string() + ": " +
                                                  error.message());
    const auto& jobs = sampleJobs();
    const auto job1 =
        std::find_if(jobs.begin(), jobs.end(), [](const JobPlan& job) { return job.jobId == 1; });
    if (job1 == jobs.end())
        throw Error::component("SampleGlass", "There is no sample job 1.");
    const JobPlan& job = *job1;
    const auto file =
        folder / ("PrintMultipleElevationGlassReports-job" + std::to_string(job.jobId) + ".json");
    writeWhole(file, host::toJson(elevationGlassData(job)));
    return file;
}

} // namespace qr::data::sample
