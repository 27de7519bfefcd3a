// The final summary reports on the fixture's jobs and framing-system tables, on SQLite and
// PostgreSQL.
#include "platform/core/error.hpp"
#include "platform/host/module_state.hpp"
#include "reports/cost/final_summary.hpp"
#include "reports/support/cost_fixture.hpp"

namespace qr::test {
namespace {

class FinalSummaryTest : public CostFixtureTest {};

TEST_P(FinalSummaryTest, ShowsTheJobItsSizeAndItsTotalsAtCost) {
    setRequest("FramingClinic", kClinicJob, "48-12-2-310.5-4");
    reports::FinalSummaryAR report;
    const page::Pages& pages = run(report);
    ASSERT_EQ(pages.pages.size(), 1u);
    const std::pair<const char*, const char*> expected[] = {
        {"lJobName", "Riverside Clinic"},
        {"lEstimator", "Dana Whitfield"},
        {"lJobStatus", "Bid"},
        {"lJobColor", "Clear Anodized"},
        {"lGlassfirm", kCostFirm},
        {"lVendor", kCostVendor},
        // The job size text of the request, value by value.
        {"lLiteCount", "48"},
        {"lPanelCount", "12"},
        {"lDoorCount", "2"},
        {"lGlassArea", "310.5"},
        {"lElevationCount", "4"},
        // The job row's numbers as stored.
        {"lSquareFeet", "2450.5"},
        {"lPerimFeet", "612.25"},
        {"lJointCount", "148"},
        {"lTotalCuts", "392"},
        // The override rule: computed metal, overridden doors, misc overridden with 0.
        {"lMetalTotal", "$48,250.75"},
        {"lDoorTotal", "$11,850.00"},
        {"lMiscTotal", "$0.00"},
        {"lGlassTotal", "$36,410.25"},
        {"lLaborTotal", "$52,980.00"},
        {"lGrandTotal", "$149,491.00"},
        {"lJobNotes", "Storefront at grade, curtain wall above."},
    };
    for (const auto& [control, text] : expected)
        EXPECT_EQ(costText(pages, control), text) << control;
    // The request's tail is consumed: the elevation count is what is left of it.
    EXPECT_EQ(host::moduleState().requestTail, "4");
    writeCostPngs(pages, "finalsummaryar");
}

TEST_P(FinalSummaryTest, FramingSystemsPrintAsDetailBandsWithTheirNotes) {
    setRequest("FramingClinic", kClinicJob, "48-12-2-310.5-4");
    reports::FinalSummaryAR2 report;
    const page::Pages& pages = run(report);
    EXPECT_EQ(costTexts(pages, "Field8"),
              (std::vector<std::string>{"Storefront 2\" x 4 1/2\" center set",
                                        "Curtain wall 2 1/2\" x 7 1/2\" captured",
                                        "Medium stile entrances"}));
    EXPECT_EQ(costTexts(pages, "Field7").size(), 2u); // the third system has no notes
    writeCostPngs(pages, "finalsummaryar2");
}

TEST_P(FinalSummaryTest, OnlyTheFirstLayoutCarriesTheNotices) {
    setRequest("FramingClinic", kClinicJob, "48-12-2-310.5-4");
    reports::FinalSummaryAR withNotices;
    const std::string first = page::dump(run(withNotices));
    EXPECT_NE(first.find("\"No wind load calculations are made by the program. You must make "
                         "your own calculations and adjust accordingly.\""),
              std::string::npos);
    EXPECT_NE(first.find("\"Page  1 of  1\""), std::string::npos);

    host::moduleState().requestTail = "48-12-2-310.5-4";
    reports::FinalSummaryAR2 plain;
    const page::Pages& pages = run(plain);
    EXPECT_EQ(page::dump(pages).find("wind load"), std::string::npos);
    EXPECT_EQ(costText(pages, "txtPageNumber"), "Page  1 of  1");
}

TEST_P(FinalSummaryTest, NoFramingSystemsPrintsTheHeaderAndFooterOnly) {
    setRequest("FramingEmpty", kClinicJob, "1-1-1-1-1");
    reports::FinalSummaryAR report;
    const page::Pages& pages = run(report);
    ASSERT_EQ(pages.pages.size(), 1u);
    EXPECT_TRUE(costTexts(pages, "Field8").empty());
    EXPECT_EQ(costText(pages, "lGrandTotal"), "$149,491.00");
}

TEST_P(FinalSummaryTest, AMissingJobLeavesTheJobFiguresAtTheirDesignText) {
    setRequest("FramingEmpty", 999, "48-12-2-310.5-4");
    reports::FinalSummaryAR report;
    const page::Pages& pages = run(report);
    for (const char* control : {"lEstimator", "lSquareFeet", "lMetalTotal", "lGrandTotal"})
        EXPECT_EQ(costText(pages, control), "xx") << control;
    EXPECT_EQ(costText(pages, "lLiteCount"), "48");
}

TEST_P(FinalSummaryTest, ManyFramingSystemsRepeatTheJobHeaderOnEveryPage) {
    for (int i = 1; i <= 60; ++i)
        execVendor("INSERT INTO FramingMany VALUES (?, ?)",
                   {Variant("System " + std::to_string(i)),
                    Variant("Notes of system " + std::to_string(i))});
    setRequest("FramingMany", kClinicJob, "48-12-2-310.5-4");
    reports::FinalSummaryAR report;
    const page::Pages& pages = run(report);
    ASSERT_GE(pages.pages.size(), 2u);
    EXPECT_EQ(costTexts(pages, "Field8").size(), 60u);
    EXPECT_EQ(costTexts(pages, "lGrandTotal").size(), pages.pages.size());
    EXPECT_EQ(costTexts(pages, "txtPageNumber").back(),
              "Page  " + std::to_string(pages.pages.size()) + " of  " +
                  std::to_string(pages.pages.size()));
}

TEST_P(FinalSummaryTest, AJobSizeTextWithTooFewSeparatorsIsAnErrorNamingIt) {
    struct Case {
        const char* tail;
        const char* says;
    };
    const Case cases[] = {
        {"48-12-2-310.5", "holds 4 values where five are needed"},
        {"48", "holds 1 value where five are needed"},
        {"", "holds 1 value where five are needed"},
    };
    for (const Case& c : cases) {
        setRequest("FramingClinic", kClinicJob, c.tail);
        reports::FinalSummaryAR report;
        try {
            report.run();
            ADD_FAILURE() << "printed with the job size \"" << c.tail << "\"";
        } catch (const Error& error) {
            EXPECT_NE(error.description().find(std::string("\"") + c.tail + "\""),
                      std::string::npos)
                << error.description();
            EXPECT_NE(error.description().find(c.says), std::string::npos) << error.description();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, FinalSummaryTest,
                         ::testing::Values(CostBackend::SQLite, CostBackend::PostgreSQL),
                         costBackendName);

} // namespace
} // namespace qr::test
