// The sample jobs' parts data: a take-off that a saw operator could cut (no stock piece over
// its length or over eight cuts), report data built from it, and JSON files that read back as
// the data they were written from.
#include "data/sample/parts_report_data.hpp"
#include "platform/host/report_data_json.hpp"
#include "support/temp_dir.hpp"

#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

namespace qr::data::sample {
namespace {

const JobPlan& job(int id) {
    return sampleJobs().at(static_cast<std::size_t>(id - 1));
}

TEST(PartsSample, EveryStockPieceHoldsItsCutsWithTheSawKerf) {
    for (int id : {1, 2}) {
        SCOPED_TRACE(id);
        const JobTakeoff takeoff = partsTakeoff(job(id));
        std::set<int> stockLengths;
        for (const PartNeed& need : takeoff.parts) {
            if (need.part->kind != PartKind::Metal)
                continue;
            std::size_t laid = 0;
            for (const StockPiece& piece : need.stock) {
                stockLengths.insert(piece.stockInches);
                ASSERT_FALSE(piece.cuts.empty());
                EXPECT_LE(static_cast<int>(piece.cuts.size()), kMaxCutsPerStock);
                const int kerf = 2 * static_cast<int>(piece.cuts.size());
                EXPECT_LE(piece.usedSixteenths() + kerf, piece.stockInches * 16)
                    << need.part->partNumber;
                laid += piece.cuts.size();
            }
            EXPECT_EQ(laid, need.cuts.size()) << need.part->partNumber << ": every cut laid once";
        }
        EXPECT_GE(*stockLengths.begin(), 144);
        EXPECT_LE(*stockLengths.rbegin(), 288);
    }
    EXPECT_TRUE(partsTakeoff(job(3)).parts.empty()) << "job 3 has no elevations";
}

TEST(PartsSample, TheStorefrontAndCurtainWallJobHasDozensOfPartsInSeveralFinishes) {
    const JobTakeoff takeoff = partsTakeoff(job(1));
    const auto finalParts = finalPartsData(takeoff);
    EXPECT_GE(finalParts.Items.size(), 24u);
    std::set<std::string> finishes;
    for (const auto& item : finalParts.Items)
        finishes.insert(item.Part.Description.substr(item.Part.Description.find(" | ") + 3));
    EXPECT_GE(finishes.size(), 5u);
    EXPECT_TRUE(finishes.count("Class I Clear Anodized"));
    for (const auto& item : finalParts.Items) {
        // The host's figures hang together: packages cover the units, totals are priced.
        if (item.Part.PackageQuantity > 0) {
            EXPECT_GE(item.PackagesToOrder * item.Part.PackageQuantity, item.Quantity);
        }
        EXPECT_NEAR(item.Total, item.PackagesToOrder * item.PackagePrice * item.Part.Multiplier,
                    0.005);
    }
    // The cut list's lines add up to the lengths the job parts list asks for.
    double cutFeet = 0;
    for (const auto& row : cutListData(takeoff).Items)
        cutFeet += row.LengthOfCuts;
    double listedFeet = 0;
    for (const auto& line : jobPartsData(takeoff, true).Items) {
        int sixteenths = 0;
        std::istringstream text(line.Length);
        int whole = 0, numerator = 0, denominator = 1;
        char slash = 0;
        text >> whole;
        if (text >> numerator >> slash >> denominator)
            sixteenths = numerator * 16 / denominator;
        listedFeet += line.Quantity * (whole * 16 + sixteenths) / 16.0 / 12.0;
    }
    EXPECT_NEAR(cutFeet, listedFeet, 0.01);
    // The metal cut listing and labels carry the same cuts, each marked once, on pieces
    // numbered within their part.
    double labelledFeet = 0;
    std::set<std::string> marks;
    for (const auto& piece : metalCutData(takeoff).StockPieces) {
        EXPECT_GE(piece.StockNumber, 1);
        EXPECT_LE(piece.StockNumber, piece.StockCount);
        for (const auto& cut : piece.Cuts) {
            labelledFeet += cut.CutLength / 12.0;
            EXPECT_TRUE(marks.insert(cut.CutLabel).second) << cut.CutLabel;
        }
    }
    EXPECT_NEAR(labelledFeet, cutFeet, 0.01);
}

TEST(PartsSample, TheDataFilesReadBackAsTheDataTheyWereWrittenFrom) {
    test::TempDir dir;
    const auto files = writePartsReportData(dir / "data");
    ASSERT_EQ(files.size(), 3u * 13u);
    // Written, read and written again: the same text, so no member is lost either way.
    for (const auto& file : files) {
        SCOPED_TRACE(file.filename().string());
        const std::string text = test::fileBytes(file);
        const std::string method =
            file.filename().string().substr(0, file.filename().string().find('-'));
        std::string again;
        if (method.rfind("PrintFinalParts", 0) == 0) {
            const auto call = host::finalPartsCallFromJson(text, true);
            again = host::finalPartsCallToJson(call.oReportData, call.oUserDefaults);
        } else if (method == "PrintLinealReport") {
            again = host::toJson(host::linealReportDataFromJson(text));
        } else if (method == "PrintMetalRecapReport") {
            again = host::toJson(host::metalRecapReportDataFromJson(text));
        } else if (method.rfind("PrintCutLabels", 0) == 0 || method == "PrintMetalCutListing") {
            again = host::toJson(
                host::cutLabelsReportDataFromJson(text, host::CutReportReads::Listing));
        } else if (method.rfind("PrintJobParts", 0) == 0) {
            again = host::toJson(host::jobPartsReportDataFromJson(text, true));
        } else {
            again = host::toJson(host::optimizedCutListReportDataFromJson(text));
        }
        EXPECT_EQ(again, text);
    }
}

} // namespace
} // namespace qr::data::sample
