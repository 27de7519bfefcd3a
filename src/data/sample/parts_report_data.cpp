#include "data/sample/parts_report_data.hpp"

#include "data/sample/glass_sizes.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/host/report_data_json.hpp"

#include <cmath>
#include <fstream>
#include <functional>
#include <map>
#include <system_error>

namespace qr::data::sample {

namespace {

constexpr int kInch = 16;

double cents(double amount) {
    return roundHalfEven(amount, 2);
}

std::string described(const CatalogueEntry& part, const JobPlan& job) {
    const std::string finish = finishOf(part, job);
    return finish.empty() ? part.description : part.description + " | " + finish;
}

/// Stock pieces of a metal part by stock length, shortest first.
std::map<int, std::vector<const StockPiece*>> piecesByLength(const PartNeed& need) {
    std::map<int, std::vector<const StockPiece*>> byLength;
    for (const StockPiece& piece : need.stock)
        byLength[piece.stockInches].push_back(&piece);
    return byLength;
}

/// How many cuts of each length, longest first.
std::map<int, int, std::greater<>> countByLength(const std::vector<MemberCut>& cuts) {
    std::map<int, int, std::greater<>> counts;
    for (const MemberCut& cut : cuts)
        ++counts[cut.sixteenths];
    return counts;
}

host::FinalPartsItem finalPartsLine(const PartNeed& need, const JobPlan& job, double quantity) {
    const CatalogueEntry& part = *need.part;
    host::FinalPartsItem item;
    item.Quantity = quantity;
    item.PartNumber = part.partNumber;
    item.Part = {part.partType, described(part, job), static_cast<double>(part.packageQuantity),
                 part.multiplier};
    item.PackageQuantity = part.packageQuantity;
    item.UnitPrice = part.unitPrice;
    item.PackagePrice = cents(part.unitPrice * std::max(1, part.packageQuantity));
    item.PackagesToOrder =
        part.packageQuantity > 0 ? std::ceil(quantity / part.packageQuantity) : quantity;
    item.Total = cents(item.PackagesToOrder * item.PackagePrice * part.multiplier);
    return item;
}

std::string elevationName(const JobPlan& job, int index) {
    const ElevationPlan& elevation = job.elevations[static_cast<std::size_t>(index)];
    return elevation.code + " - " + elevation.name;
}

} // namespace

void writeWhole(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::path temporary = file;
    temporary += ".tmp";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out << text;
        out.close();
        if (!out) {
            std::error_code ignored;
            std::filesystem::remove(temporary, ignored);
            throw Error::component("SampleParts", "Cannot write " + file.string());
        }
    }
    std::error_code error;
    std::filesystem::rename(temporary, file, error);
    if (error) {
        std::filesystem::remove(temporary, error);
        throw Error::component("SampleParts", "Cannot write " + file.string());
    }
}

host::PartsReportHeading partsHeading(const JobPlan& job) {
    host::PartsReportHeading heading;
    heading.User = {1, "Dana Whitfield", "(360) 555-0148", "dana.whitfield@cascadeglazing.example"};
    heading.Company = {"Cascade Glass & Glazing, Inc.", "(360) 555-0100", "(360) 555-0101",
                       "bids@cascadeglazing.example"};
    heading.Vendor = {"Pacific Architectural Aluminum"};
    heading.JobName = job.name;
    heading.FinishColor = job.finish.isNull() ? std::string() : toText(job.finish);
    return heading;
}

host::FinalPartsReportData finalPartsData(const JobTakeoff& takeoff) {
    const JobPlan& job = *takeoff.job;
    host::FinalPartsReportData data;
    static_cast<host::PartsReportHeading&>(data) = partsHeading(job);
    data.PriceByUnit = job.jobId == 2;
    for (const PartNeed& need : takeoff.parts) {
        switch (need.part->kind) {
        case PartKind::Metal:
            // A stock length is the unit: priced by its feet of stock.
            for (const auto& [inches, pieces] : piecesByLength(need)) {
                host::FinalPartsItem item =
                    finalPartsLine(need, job, static_cast<double>(pieces.size()));
                item.StockLength = inches;
                item.UnitPrice = item.PackagePrice = cents(need.part->unitPrice * inches / 12.0);
                item.Total =
                    cents(item.PackagesToOrder * item.PackagePrice * need.part->multiplier);
                data.Items.push_back(item);
            }
            break;
        case PartKind::Packaged:
        case PartKind::Each:
            data.Items.push_back(finalPartsLine(need, job, need.units));
            break;
        case PartKind::Lineal:
            break; // on the lineal report
        }
    }
    return data;
}

host::UserDefaults userDefaultsFor(const JobPlan& job) {
    host::UserDefaults defaults;
    if (job.jobId == 2)
        defaults.FinalPartsReportTitle = "Storefront Parts Order";
    else if (job.jobId == 3)
        defaults.FinalPartsReportTitle = "   "; // blanks keep the stored title
    return defaults;
}

host::LinealReportData linealData(const JobTakeoff& takeoff) {
    host::LinealReportData data;
    static_cast<host::PartsReportHeading&>(data) = partsHeading(*takeoff.job);
    for (const PartNeed& need : takeoff.parts) {
        if (need.part->kind != PartKind::Lineal)
            continue;
        data.Items.push_back({Variant(need.units), need.part->partNumber,
                              described(*need.part, *takeoff.job), need.part->partType,
                              Variant(need.part->unitPrice), Variant(need.part->multiplier)});
    }
    return data;
}

host::MetalRecapReportData metalRecapData(const JobTakeoff& takeoff) {
    host::MetalRecapReportData data;
    static_cast<host::PartsReportHeading&>(data) = partsHeading(*takeoff.job);
    for (const PartNeed& need : takeoff.parts) {
        for (const auto& [inches, pieces] : piecesByLength(need)) {
            std::vector<MemberCut> cuts;
            for (const StockPiece* piece : pieces)
                cuts.insert(cuts.end(), piece->cuts.begin(), piece->cuts.end());
            for (const auto& [length, count] : countByLength(cuts)) {
                data.Items.push_back(
                    {count, need.part->partNumber, described(*need.part, *takeoff.job),
                     static_cast<float>(inches), static_cast<std::int32_t>(pieces.size()),
                     inchesText(length)});
            }
        }
    }
    return data;
}

host::JobPartsReportData jobPartsData(const JobTakeoff& takeoff, bool byElevation) {
    const JobPlan& job = *takeoff.job;
    host::JobPartsReportData data;
    static_cast<host::PartsReportHeading&>(data) = partsHeading(job);
    const int elevations = byElevation ? static_cast<int>(job.elevations.size()) : 1;
    for (int e = 0; e < elevations; ++e) {
        for (const PartNeed& need : takeoff.parts) {
            std::vector<MemberCut> cuts;
            for (const MemberCut& cut : need.cuts) {
                if (!byElevation || cut.elevation == e)
                    cuts.push_back(cut);
            }
            for (const auto& [length, count] : countByLength(cuts)) {
                data.Items.push_back({count, need.part->partNumber, described(*need.part, job),
                                      need.part->partType, inchesText(length),
                                      byElevation ? elevationName(job, e) : std::string(),
                                      byElevation ? e + 1 : 0});
            }
        }
    }
    return data;
}

host::OptimizedCutListReportData cutListData(const JobTakeoff& takeoff) {
    const JobPlan& job = *takeoff.job;
    host::OptimizedCutListReportData data;
    static_cast<host::PartsReportHeading&>(data) = partsHeading(job);
    for (const PartNeed& need : takeoff.parts) {
        std::int32_t stockNumber = 0;
        for (const StockPiece& piece : need.stock) {
            host::CutListRow row;
            row.PartNumber = need.part->partNumber;
            row.Description = described(*need.part, job);
            row.StockLength = piece.stockInches;
            row.StockNumber = ++stockNumber;
            row.StocksRequired = static_cast<std::int32_t>(need.stock.size());
            for (std::size_t i = 0; i < piece.cuts.size() && i < row.Cuts.size(); ++i) {
                const MemberCut& cut = piece.cuts[i];
                row.Cuts[i] = host::PatternCut{
                    inchesText(cut.sixteenths) + " (" +
                    job.elevations[static_cast<std::size_t>(cut.elevation)].code + ")"};
            }
            const double used = piece.usedSixteenths();
            row.LengthOfCuts = used / kInch / 12.0;
            row.Yield = used / (piece.stockInches * kInch);
            data.Items.push_back(std::move(row));
        }
    }
    return data;
}

std::vector<std::filesystem::path> writePartsReportData(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw Error::component("SampleParts", "Cannot make the folder " + folder.string() + ": " +
                                                  error.message());
    std::vector<std::filesystem::path> written;
    for (const JobPlan& job : sampleJobs()) {
        const JobTakeoff takeoff = partsTakeoff(job);
        const std::string finalParts =
            host::finalPartsCallToJson(finalPartsData(takeoff), userDefaultsFor(job));
        const std::pair<const char*, std::string> files[] = {
            {"PrintFinalPartsReportLandscape", finalParts},
            {"PrintFinalPartsReportPortrait", finalParts},
            {"PrintFinalPartsReportWithNoPrices", finalParts},
            {"PrintLinealReport", host::toJson(linealData(takeoff))},
            {"PrintMetalRecapReport", host::toJson(metalRecapData(takeoff))},
            {"PrintJobPartsReport", host::toJson(jobPartsData(takeoff, false))},
            {"PrintJobPartsReportByElevation", host::toJson(jobPartsData(takeoff, true))},
            {"PrintOptimizedCutListReport", host::toJson(cutListData(takeoff))},
        };
        for (const auto& [method, text] : files) {
            const auto file =
                folder / (std::string(method) + "-job" + std::to_string(job.jobId) + ".json");
            writeWhole(file, text);
            written.push_back(file);
        }
    }
    return written;
}

} // namespace qr::data::sample
