// The cost reports asked for the way the host asks: PrintReport with a request string, on the
// sample jobs, printed without a preview and exported to the job's Reports folder; on SQLite
// and PostgreSQL.
#include "platform/host/module_state.hpp"
#include "reports/support/cost_fixture.hpp"
#include "service/report_objects.hpp"

#include <algorithm>

namespace qr::test {
namespace {

constexpr const char* kSampleJob = "Riverside Medical Office Building";

class CostRequestTest : public CostSampleTest {};

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST_P(CostRequestTest, EachReportPrintsAndExportsBothFilesForTheSampleJob) {
    using Figures = std::vector<std::pair<const char*, const char*>>;
    struct Case {
        std::string request;
        const char* className;
        const char* suffix;
        std::vector<const char*> printed; // texts the exported and the printed PDF both show
        Figures figures;                  // control, text on the report's page
    };
    // The sample job's figures, checked by hand against its tables: the markup figures are
    // the host's, the per-square-foot prices divide by its 3,187.45 square feet, and the
    // labor report's job grand total comes back to the job's labor total at cost.
    const Case cases[] = {
        {"armarkup " + sampleTable("MarkupReport") + " false 1 1 true true false |x |",
         "ARMarkup",
         "-Markup",
         {"Markup Report", "License #", "$253,888.43"},
         {{"StockBaseCostField", "$78,415.60"},
          {"DoorBaseCostField", "$15,250.00"},
          {"lTotalMaterial", "$158,593.19"},
          {"lGrandTotal", "$253,888.43"},
          {"lCostPerFt", "$64.12"},
          {"lSellPerFt", "$79.65"}}},
        {"armarkup2 " + sampleTable("MarkupReport") + " false 1 1 true true false |x |",
         "ARMarkup2",
         "-MarkupNoCost",
         {"Job Estimate", "Price / Square Ft:", "$185,636.29"},
         {{"lTotalMaterial", "$185,636.29"},
          {"lTotalLabor", "$46,295.32"},
          {"lTaxPcnt", " 8.4"},
          {"lGrandTotal", "$253,888.43"},
          {"lSellPerFt", "$79.65"}}},
        {"finalsummaryar " + sampleTable("FramingReport") +
             " false 1 1 true true false |x |212-48-6-3180.25-9",
         "FinalSummaryAR",
         "-FinalSummary",
         {"Final Summary", "No wind load calculations", "$188,596.68"},
         {{"lLiteCount", "212"}, {"lElevationCount", "9"}, {"lGrandTotal", "$188,596.68"}}},
        {"finalsummaryar2 " + sampleTable("FramingReport") +
             " false 1 1 true true false |x |212-48-6-3180.25-9",
         "FinalSummaryAR2",
         "-FinalSummaryNN",
         {"Final Summary", "All Totals are at Cost"},
         {{"lLaborTotal", "$36,746.98"}, {"lGrandTotal", "$188,596.68"}}},
        {"finallaborar " + sampleTable("LaborReport") + " false 1 1 true true false |x |",
         "FinalLaborAR",
         "-FinalLabor",
         {"Final Labor Report", "Added Job Labor Details", "$36,746.98"},
         {{"Field14", "$34,906.98"}, {"Field21", "$1,840.00"}, {"Field22", "$36,746.98"}}},
    };

    for (const Case& c : cases) {
        SCOPED_TRACE(c.request);
        const auto printed = printRequest(c.request);
        EXPECT_TRUE(shownMessages().empty()) << shownMessages().front();
        const page::Pages& pages = service::reportObject(c.className).pages();
        for (const auto& [control, text] : c.figures)
            EXPECT_EQ(costText(pages, control), text) << control;
        writeCostPngs(pages, std::string("sample-") + c.className);

        const auto folder = reportsFolder(kSampleJob);
        const auto pdf = folder / (std::string(kSampleJob) + c.suffix + ".pdf");
        const auto xls = folder / (std::string(kSampleJob) + c.suffix + ".xls");
        ASSERT_TRUE(std::filesystem::exists(pdf));
        ASSERT_TRUE(std::filesystem::exists(xls));
        const std::string pdfText = costPdfText(pdf);
        const std::string printedText = costPdfText(printed);
        for (const char* text : c.printed) {
            EXPECT_TRUE(contains(pdfText, text)) << text;
            EXPECT_TRUE(contains(printedText, text)) << text;
        }
        std::string cells = "\n";
        for (const std::string& cell : costWorkbookCells(xls))
            cells += cell + "\n";
        EXPECT_TRUE(contains(cells, kSampleJob));
        // The last figure is money the report computed: a number in the workbook.
        std::string figure = c.figures.back().second;
        std::erase_if(figure, [](char ch) { return ch == '$' || ch == ','; });
        EXPECT_TRUE(contains(cells, "\n=" + figure + "\n")) << c.figures.back().second;

        const auto usage = m_host->host->usageEntries();
        ASSERT_FALSE(usage.empty());
        EXPECT_EQ(usage.back().outcome, "Printed (No Preview)");
        EXPECT_EQ(usage.back().label, "PrintReport-" + c.request.substr(0, c.request.find(' ')));
    }
}

TEST_P(CostRequestTest, AJobSizeTextWithoutSeparatorsIsShownToTheUser) {
    printRequest("finalsummaryar " + sampleTable("FramingReport") +
                 " false 1 1 false false false |x |212");
    const auto shown = shownMessages();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_TRUE(contains(shown[0], "Error Encountered: The job size in the request, \"212\""))
        << shown[0];
}

INSTANTIATE_TEST_SUITE_P(Backends, CostRequestTest,
                         ::testing::Values(CostBackend::SQLite, CostBackend::PostgreSQL),
                         costBackendName);

} // namespace
} // namespace qr::test
