// The job parts lists (the whole job, and by elevation in the delivered order) and the
// optimized cut list (stock numbers once per piece, framed cuts only where there is a cut, the
// part's figures from the engine's summaries).
#include "reports/parts/cut_list.hpp"
#include "reports/parts/job_parts_report.hpp"
#include "reports/support/parts_fixture.hpp"

namespace qr::test {
namespace {

host::JobPartsReportData jobParts(std::vector<host::PartsReportListItem> items) {
    host::JobPartsReportData data;
    static_cast<host::PartsReportHeading&>(data) = partsHeading();
    data.Items = std::move(items);
    return data;
}

host::PartsReportListItem partLine(const std::string& elevation, std::int32_t sortIndex) {
    return {2,         "SF-4503", "Jamb, 2 x 4-1/2 in. | Dark Bronze", "Frame", "120",
            elevation, sortIndex};
}

TEST_F(PartsReportTest, ElevationBlocksFollowTheDeliveredOrderOfSortIndexes) {
    // 1, 1, 2, 1: three blocks; the second row joins the first one's block and name.
    const auto data = jobParts({partLine("E1 - Entrance", 1), partLine("E1 - Vestibule", 1),
                                partLine("E2 - Storefront", 2), partLine("E1 - Entrance", 1)});
    reports::JobElevAR report;
    report.ReportData = &data;
    report.run();
    EXPECT_EQ(printed(report.pages(), "ElevationNameField"),
              (Texts{"E1 - Entrance", "E2 - Storefront", "E1 - Entrance"}));
    EXPECT_EQ(printed(report.pages(), "QuantityField").size(), 4u);
    EXPECT_TRUE(shown().empty());
}

TEST_F(PartsReportTest, TheJobListRepeatsItsHeadingOnEveryPageTheElevationListOnlyItsCaptions) {
    host::JobPartsReportData data = jobParts({});
    data.User.phone.clear(); // the firm's phone stands in
    for (int i = 0; i < 120; ++i)
        data.Items.push_back(partLine("E" + std::to_string(1 + i / 40), 1 + i / 40));
    reports::JobPartsAR job;
    reports::JobElevAR byElevation;
    job.ReportData = byElevation.ReportData = &data;
    job.run();
    byElevation.run();

    const auto pagesOf = [](const engine::Report& r) { return r.pages().pages.size(); };
    ASSERT_GE(pagesOf(job), 2u);
    ASSERT_GE(pagesOf(byElevation), 2u);
    EXPECT_EQ(printed(job.pages(), "lJobName"), Texts(pagesOf(job), kPartsJob));
    EXPECT_EQ(printed(job.pages(), "lPhone"), Texts(pagesOf(job), "(360) 555-0100"));
    EXPECT_EQ(printed(byElevation.pages(), "lJobName"), Texts{kPartsJob});
    EXPECT_EQ(printed(byElevation.pages(), "lFinish"), Texts{"Dark Bronze Anodized"});
    for (const page::Page& page : byElevation.pages().pages)
        EXPECT_NE(pageText(page).find("Length of Part"), std::string::npos);
    EXPECT_EQ(printed(byElevation.pages(), "ElevationNameField"), (Texts{"E1", "E2", "E3"}));
    EXPECT_EQ(printed(job.pages(), "txtPageNumber").back(),
              "Page  " + std::to_string(pagesOf(job)) + " of  " + std::to_string(pagesOf(job)));
}

// ---- Optimized cut list ---------------------------------------------------------------------

host::CutListRow cutRow(const std::string& part, std::int32_t stock, int cuts, double yield,
                        double feet) {
    host::CutListRow row{part, "Mullion | Dark Bronze", 252, yield, {}, feet, stock, 4};
    for (int i = 0; i < cuts; ++i)
        row.Cuts[static_cast<std::size_t>(i)] =
            host::PatternCut{"30 1/2 (E" + std::to_string(i + 1) + ")"};
    return row;
}

class CutListTest : public PartsReportTest {
  protected:
    const page::Pages& run(std::vector<host::CutListRow> rows) {
        static_cast<host::PartsReportHeading&>(m_data) = partsHeading();
        m_data.Items = std::move(rows);
        m_report.ReportData = &m_data;
        m_report.run();
        return m_report.pages();
    }
    host::OptimizedCutListReportData m_data;
    reports::AR2CutList m_report;
};

TEST_F(CutListTest, AStockNumberPrintsOnTheFirstLineOfEachPieceOnly) {
    // Piece 3 runs over two lines; piece 4 follows; another part's piece 4 prints its number.
    const page::Pages& pages =
        run({cutRow("CW-7501", 3, 8, 0.9, 20), cutRow("CW-7501", 3, 2, 0.9, 5),
             cutRow("CW-7501", 4, 8, 0.8, 20), cutRow("CW-7502", 4, 8, 0.8, 20)});
    EXPECT_EQ(printed(pages, "StockNumberField"), (Texts{"3", "4", "4"}));
    EXPECT_TRUE(shown().empty());
}

TEST_F(CutListTest, OnlyTheCutsALineHoldsAreFramed) {
    host::CutListRow five = cutRow("CW-7501", 1, 5, 0.9, 12.5);
    host::CutListRow blank = cutRow("CW-7501", 2, 3, 0.9, 7.5);
    blank.Cuts[1] = host::PatternCut{""}; // a cut object with no text
    const page::Pages& pages = run({five, blank});
    const char* frames[] = {"Shape1", "Shape2", "Shape3", "Shape4",
                            "Shape5", "Rect6",  "Rect7",  "Shape8"};
    std::string framed;
    for (const char* frame : frames)
        framed += std::to_string(timesPrinted(pages, frame));
    // Lines: five cuts, then cuts 1 and 3.
    EXPECT_EQ(framed, "21211000");
    EXPECT_EQ(printed(pages, "Cut5Field"), Texts{"30 1/2 (E5)"});
}

TEST_F(CutListTest, EachPartShowsItsStockLengthsLinealFeetAndAverageYield) {
    auto partA = [](std::int32_t stock, double yield, double feet) {
        auto row = cutRow("CW-7501", stock, 4, yield, feet);
        row.StocksRequired = 3;
        return row;
    };
    host::CutListRow other = cutRow("SF-4505", 1, 2, 0.5, 9.5);
    other.StockLength = 144.5;
    other.StocksRequired = 1;
    const page::Pages& pages =
        run({partA(1, 0.9, 10.4), partA(2, 0.8, 12.3), partA(3, 0.7, 8.6), other});
    EXPECT_EQ(printed(pages, "AverageYieldField"), (Texts{"80%", "50%"}));
    EXPECT_EQ(printed(pages, "LinealTotalField"), (Texts{"31", "10"}));
    EXPECT_EQ(printed(pages, "StocksRequiredField"), (Texts{"3", "1"}));
    EXPECT_EQ(printed(pages, "StockLengthField"), (Texts{"252 in.", "144.5 in."}));
    EXPECT_EQ(printed(pages, "lStockorRandom"), (Texts{"Stock", "Stock"}));
    EXPECT_EQ(printed(pages, "Label1"), Texts{"Cut Patterns for Stock Lengths"});
    EXPECT_EQ(printed(pages, "lColor"), Texts{"Dark Bronze Anodized"});
}

TEST_F(CutListTest, AnEmptyListPrintsTheHeadingAndNoGroups) {
    const page::Pages& pages = run({});
    EXPECT_EQ(printed(pages, "lJobName"), Texts{kPartsJob});
    EXPECT_TRUE(printed(pages, "PartNumberField").empty());
    EXPECT_TRUE(printed(pages, "Label51").empty());
}

} // namespace
} // namespace qr::test
