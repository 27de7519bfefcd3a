// The two elevation glass reports over elevations made by hand, figures worked out by hand and
// read off their pages (and, for the block-size report, out of its PDF through poppler); one
// object runs elevation after elevation as the multi-elevation report runs it. A request by
// name hands them no data and fails through the error path.
#include "data/sample/elevation_glass_data.hpp"
#include "platform/core/convert.hpp"
#include "platform/host/report_data_json.hpp"
#include "platform/output/pdf_writer.hpp"
#include "platform/output/workbook.hpp"
#include "reports/glass/elev_glass_report.hpp"
#include "reports/support/parts_fixture.hpp"
#include "service/print_service.hpp"
#include "support/readers/file_readers.hpp"

#include <fstream>
#include <functional>
#include <memory>
#include <sstream>

namespace qr::test {
namespace {

using Texts = std::vector<std::string>;

/// A lite of 36 x 48 inches; the block figures only where the block-size report needs them.
host::ElevationGlassItem lite(std::int32_t quantity, const char* description, double thickness,
                              const char* glassType, const char* typeLabel, const char* price,
                              double area, std::int32_t blockWidth = 0,
                              std::int32_t blockHeight = 0, double blockArea = 0,
                              const char* blockPrice = "0") {
    return {quantity,   description,
            thickness,  glassType,
            typeLabel,  *Currency::parseDecimal(price),
            36,         48,
            48,         area,
            blockWidth, blockHeight,
            blockArea,  *Currency::parseDecimal(blockPrice)};
}

host::ElevationGlassReportData elevation(const char* name, const char* title, int repetitions,
                                         std::vector<host::ElevationGlassItem> items) {
    host::ElevationGlassReportData data;
    data.User = {1, "Dana Whitfield", "(360) 555-0148", "dana@cascadeglazing.example"};
    data.Company = {"Cascade Glass & Glazing, Inc.", "(360) 555-0100", "(360) 555-0101", ""};
    data.Elevation = {name, title, repetitions, {1, "Riverside Medical Office Building"}};
    data.GlassItems = std::move(items);
    return data;
}

struct ElevReport {
    const char* name;
    std::function<std::unique_ptr<reports::ElevGlassReport>()> make;
    const char* titleControl;
    const char* title;
};

const ElevReport kReports[] = {
    {"ElevGlassAR", [] { return std::make_unique<reports::ElevGlassAR>(); }, "Label1",
     "Glass Report By Elevation"},
    {"ElevGlassAR2", [] { return std::make_unique<reports::ElevGlassAR2>(); }, "TitleLabel",
     "Glass Report for Elevation"},
};

class ElevGlassTest : public PartsReportTest {
  protected:
    const page::Pages& run(reports::ElevGlassReport& report,
                           const host::ElevationGlassReportData& data) {
        report.ReportData = &data;
        report.run();
        EXPECT_TRUE(shown().empty()) << shown().front();
        for (const page::CutText& cut : report.pages().cutTexts)
            ADD_FAILURE() << cut.control << " \"" << cut.text << "\" printed as \"" << cut.printed
                          << "\"";
        return report.pages();
    }
};

TEST_F(ElevGlassTest, HeadingOfEachElevationOnOneObjectRunAfterAnother) {
    struct Case {
        const char* name;
        const char* title;
        int repetitions;
        const char* userPhone;
        Texts heading, repeated;
        const char* phone;
    };
    const char* user = "(360) 555-0148";
    const char* firm = "(360) 555-0100"; // the user has no phone of their own
    const Case cases[] = {
        {"E1", "Entry", 3, user, {"E1 - Entry"}, {"Elevation was repeated 3 times."}, user},
        {"E2", "E2", 1, "", {"E2"}, {}, firm},
        {"E3", "", 2, "", {"E3 - "}, {"Elevation was repeated 2 times."}, firm},
        {"E4", "North", 0, user, {"E4 - North"}, {}, user},
    };
    for (const ElevReport& r : kReports) {
        auto report = r.make();
        for (const Case& c : cases) {
            SCOPED_TRACE(std::string(r.name) + " " + c.name);
            auto data = elevation(c.name, c.title, c.repetitions,
                                  {lite(1, "Clear", 0.25, "Annealed", "GL-1", "5", 12)});
            data.User.phone = c.userPhone;
            const page::Pages& pages = run(*report, data);
            EXPECT_EQ(costTexts(pages, "ElevationNameLabel"), c.heading);
            EXPECT_EQ(costTexts(pages, "lRepeated"), c.repeated);
            EXPECT_EQ(costText(pages, r.titleControl), r.title);
            EXPECT_EQ(costText(pages, "lGlassfirm"), "Cascade Glass & Glazing, Inc.");
            EXPECT_EQ(costText(pages, "lPhone"), c.phone);
            EXPECT_EQ(costText(pages, "lFax"), "(360) 555-0101");
            EXPECT_EQ(costText(pages, "Label8"), "Job  Name:");
            EXPECT_EQ(costText(pages, "lJobName"), "Riverside Medical Office Building");
        }
    }
}

TEST_F(ElevGlassTest, PortraitLineTotalsElevationTotalAndTheNoPriceWarning) {
    // 2 lites of 10 sq ft at $12.50 make $250.00; the second line has no price.
    auto priced = lite(2, "1\" Insulated Clear", 1, "Annealed", "GL-1", "12.50", 10);
    priced.Width = 48.25;
    priced.LeftHeight = 96;
    priced.RightHeight = 95 + 33.0 / 64;
    const auto unpriced = lite(3, "1/4\" Spandrel", 0.25, "Spandrel", "SP-1", "0", 5.5);
    const std::string warning = "Warning: There were some items on this report with no price!";
    struct Case {
        std::vector<host::ElevationGlassItem> items;
        Texts each, totals;
        const char* grandTotal;
        bool warned;
    };
    // One object, run in this order: neither the warning nor the total stays for the next run.
    const Case cases[] = {
        {{priced, unpriced}, {"10.00", "5.50"}, {"$250.00", "$0.00"}, "$250.00", true},
        {{priced}, {"10.00"}, {"$250.00"}, "$250.00", false},
        {{unpriced, priced, priced},
         {"5.50", "10.00", "10.00"},
         {"$0.00", "$250.00", "$250.00"},
         "$500.00",
         true},
        {{}, {}, {}, "$0.00", false},
    };
    reports::ElevGlassAR report;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.items.size());
        const auto data = elevation("E1", "Entrance", 1, c.items);
        const page::Pages& pages = run(report, data);
        EXPECT_EQ(costTexts(pages, "lSquareFt"), c.each);
        EXPECT_EQ(costTexts(pages, "lTotal"), c.totals);
        EXPECT_EQ(costText(pages, "lGrandTotal"), c.grandTotal);
        EXPECT_EQ(costTexts(pages, "lWarning"), c.warned ? Texts{warning} : Texts{});
        EXPECT_EQ(costText(pages, "Label51"), "Total for Elevation -");
        EXPECT_EQ(costText(pages, "Label53"),
                  "The pricing on this report is based on actual size.");
    }
    const auto data = elevation("E1", "Entrance", 1, {priced});
    const page::Pages& pages = run(report, data);
    EXPECT_EQ(costTexts(pages, "WidthField"), Texts{"48 1/4"});
    EXPECT_EQ(costTexts(pages, "LeftHeightField"), Texts{"96"});
    EXPECT_EQ(costTexts(pages, "RightHeightField"), Texts{"95 33/64"});
    EXPECT_EQ(costTexts(pages, "PricePerSqFtField"), Texts{"$12.50"});
}

TEST_F(ElevGlassTest, BlockReportLabelsBlockSizesTypeSubtotalsAndTotalsThenAnEmptyElevation) {
    // Two tempered lines without a type label (labelled T), then an annealed one.
    const auto data = elevation(
        "E1", "Entrance", 2,
        {lite(2, "1\" Insulated Clear", 1, "Tempered", "", "10", 8, 48, 96, 32, "320"),
         lite(1, "1\" Insulated Clear", 1, "Tempered", "", "10", 4.5, 30, 24, 5, "50.25"),
         lite(4, "1\" Insulated Clear", 0.25, "Annealed", "GL-1", "6.25", 2.25, 24, 24, 4, "25")});
    reports::ElevGlassAR2 report;
    const page::Pages& pages = run(report, data);
    EXPECT_EQ(pages.orientation, page::Orientation::Landscape);

    EXPECT_EQ(costTexts(pages, "Type"), (Texts{"T", "GL-1"}));
    EXPECT_EQ(costTexts(pages, "ThicknessField"), (Texts{"1\"", "0.25\""}));
    EXPECT_EQ(costTexts(pages, "BlockSizeField"), (Texts{"48 x 96", "30 x 24", "24 x 24"}));
    EXPECT_EQ(costTexts(pages, "AreaTotalPriceField"), (Texts{"$160.00", "$45.00", "$56.25"}));
    EXPECT_EQ(costTexts(pages, "BlockTotalPriceField"), (Texts{"$640.00", "$50.25", "$100.00"}));

    const std::pair<const char*, Texts> subtotals[] = {
        {"GlassTypeQuantitySumField", {"3", "4"}},
        {"TotalAreaSumField", {"20.50 ft²", "9.00 ft²"}},
        {"Field1", {"$205.00", "$56.25"}},
        {"BlockAreaSubTotalField", {"69.00 ft²", "16.00 ft²"}},
        {"BlockTotalPriceSumField", {"$690.25", "$100.00"}},
        {"TotalLitesSumField", {"7"}},
        {"AreaGrandTotalField", {"29.50 ft²"}},
        {"Field2", {"$261.25"}},
        {"BlockAreaGrandTotalField", {"85.00 ft²"}},
        {"Field3", {"$790.25"}},
    };
    for (const auto& [control, texts] : subtotals)
        EXPECT_EQ(costTexts(pages, control), texts) << control;

    // What the paper shows, read back from the PDF.
    const auto pdf = m_dir.path() / "elevation.pdf";
    output::writePdf(pages, pdf);
    const std::string text = pdfText(pdf);
    for (const char* shown :
         {"Glass Report for Elevation", "E1 - Entrance", "Elevation was repeated 2 times.",
          "48 x 96", "- Type Totals -", "20.50 ft²", "$790.25", "Thickness:"})
        EXPECT_NE(text.find(shown), std::string::npos) << shown << " not in\n" << text;

    // The workbook holds the figures as numbers, the square-feet totals included.
    const auto xls = m_dir.path() / "elevation.xls";
    output::writeWorkbook(pages, xls);
    const Texts cells = costWorkbookCells(xls);
    for (const char* number : {"=20.5", "=69", "=29.5", "=85", "=790.25", "=7", "=640"})
        EXPECT_NE(std::find(cells.begin(), cells.end(), number), cells.end()) << number;

    // The same object over an elevation without glass: its heading, no lines, zero totals.
    const auto empty = elevation("E9", "Canopy", 1, {});
    const page::Pages& none = run(report, empty);
    EXPECT_EQ(costText(none, "TitleLabel"), "Glass Report for Elevation");
    EXPECT_TRUE(costTexts(none, "QuantityField").empty());
    EXPECT_TRUE(costTexts(none, "GlassTypeQuantitySumField").empty());
    EXPECT_EQ(costText(none, "TotalLitesSumField"), "0");
    EXPECT_EQ(costText(none, "AreaGrandTotalField"), "0.00 ft²");
    EXPECT_EQ(costText(none, "Field3"), "$0.00");
}

TEST_F(ElevGlassTest, TheSampleJobsElevationsPrintWholeOneObjectEach) {
    // The data file make-sample writes, read back as the multi-elevation report's data.
    std::ifstream in(data::sample::writeElevationGlassReportData(m_dir.path() / "data"));
    std::ostringstream json;
    json << in.rdbuf();
    const auto elevations = host::elevationGlassReportDataListFromJson(json.str(), true);
    ASSERT_EQ(elevations.size(), data::sample::sampleJobs().front().elevations.size());

    const auto sum = [](const page::Pages& pages, const char* control) {
        double total = 0;
        for (const std::string& text : costTexts(pages, control))
            total += toDouble(Variant(text.substr(0, text.find(" ft"))));
        return total;
    };
    reports::ElevGlassAR portrait;
    reports::ElevGlassAR2 wide;
    for (const auto& elevation : elevations) {
        SCOPED_TRACE(elevation.Elevation.Name);
        const std::size_t lines = elevation.GlassItems.size();
        EXPECT_EQ(costTexts(run(portrait, elevation), "lTotal").size(), lines);
        const page::Pages& pages = run(wide, elevation);
        EXPECT_EQ(costTexts(pages, "BlockSizeField").size(), lines);
        // Each line counts in one type subtotal: they add up to the elevation's totals (each
        // printed rounded to the cent).
        const std::pair<const char*, const char*> totals[] = {
            {"GlassTypeQuantitySumField", "TotalLitesSumField"},
            {"TotalAreaSumField", "AreaGrandTotalField"},
            {"Field1", "Field2"},
            {"BlockAreaSubTotalField", "BlockAreaGrandTotalField"},
            {"BlockTotalPriceSumField", "Field3"},
        };
        for (const auto& [subtotal, total] : totals) {
            const double rounding = 0.005 * static_cast<double>(costTexts(pages, subtotal).size());
            EXPECT_NEAR(sum(pages, subtotal), sum(pages, total), rounding + 1e-9) << subtotal;
        }
    }
}

// ---- By request: no data ----------------------------------------------------------------

constexpr const char* kNotSet = "Object variable or With block variable not set";

class ElevGlassRequestTest : public CostSampleTest {};

TEST_P(ElevGlassRequestTest, ARequestByNameFailsInItsStartHandlerAndTheNextRequestRuns) {
    for (const char* className : {"ElevGlassAR", "ElevGlassAR2"}) {
        SCOPED_TRACE(className);
        std::string name = className;
        std::transform(name.begin(), name.end(), name.begin(), ::tolower);
        m_host->messages->shown.clear();
        const auto printed = printRequest(name + " MarkupReport1 false 1 1 false true false |x |");
        const auto messages = shownMessages();
        ASSERT_GE(messages.size(), 2u);
        EXPECT_EQ(messages[0], std::string("Quarvex Error: Description: ") + kNotSet +
                                   "\r\nModule: " + className +
                                   "\r\nFunction: ActiveReport_ReportStart");
        EXPECT_EQ(messages[1], std::string("Error Encountered: ") + kNotSet);
        EXPECT_FALSE(std::filesystem::exists(printed));
        EXPECT_EQ(m_host->host->usageEntries().back().label, "PrintReport-" + name);
    }
    m_host->messages->shown.clear();
    const auto printed = printRequest("armarkup MarkupReport1 false 1 1 false false false |x |");
    EXPECT_TRUE(m_host->messages->shown.empty());
    EXPECT_TRUE(std::filesystem::exists(printed));
}

INSTANTIATE_TEST_SUITE_P(Backends, ElevGlassRequestTest,
                         ::testing::Values(CostBackend::SQLite, CostBackend::PostgreSQL),
                         costBackendName);

} // namespace
} // namespace qr::test
