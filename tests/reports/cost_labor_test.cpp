// The job labor report and its added-labor sub-report on the fixture's labor tables, on SQLite
// and PostgreSQL.
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "reports/cost/final_labor.hpp"
#include "reports/support/cost_fixture.hpp"

namespace qr::test {
namespace {

class LaborReportTest : public CostFixtureTest {
  protected:
    // A figure of one elevation in the labor table, as stored.
    double stored(const std::string& table, const std::string& elevation,
                  const std::string& column) {
        return toDouble(vendorValue("SELECT " + column + " FROM " + table + " WHERE sElevName = '" +
                                        elevation + "'",
                                    column));
    }
};

TEST_P(LaborReportTest, MultipliesEachElevationOutAndWritesItBack) {
    setRequest("LaborClinic", kClinicJob);
    reports::FinalLaborAR report;
    run(report);
    struct Expected {
        const char* elevation;
        const char* column;
        double value;
    };
    const Expected expected[] = {
        {"North Storefront Bay", "pFabHours", 7.5},
        {"North Storefront Bay", "pFabTot", 300},
        {"North Storefront Bay", "pInstallTot", 150.75},
        {"North Storefront Bay", "pGlazHours", 4.5},
        {"North Storefront Bay", "pElevTot", 450.75},
        {"North Entrance", "pEntFabTot", 420},
        {"North Entrance", "pElevTot", 3878.5},
        {"Curtain Wall Typical", "pMiscHours", 4},
        {"Curtain Wall Typical", "pGlazTot", 4144},
        {"Curtain Wall Typical", "pElevTot", 15791},
    };
    for (const Expected& e : expected)
        EXPECT_DOUBLE_EQ(stored("LaborClinic", e.elevation, e.column), e.value)
            << e.elevation << " " << e.column;
}

TEST_P(LaborReportTest, PrintsTheElevationsGrandTotalsAddedLaborAndItsItems) {
    setRequest("LaborClinic", kClinicJob);
    reports::FinalLaborAR report;
    const page::Pages& pages = run(report);
    ASSERT_EQ(pages.pages.size(), 1u);
    EXPECT_EQ(costTexts(pages, "Field1"),
              (std::vector<std::string>{"North Entrance", "North Storefront Bay",
                                        "Curtain Wall Typical"}));
    EXPECT_EQ(costTexts(pages, "Field10"),
              (std::vector<std::string>{"$3,878.50", "$450.75", "$15,791.00"}));
    const std::pair<const char*, const char*> expected[] = {
        {"Field20", "8"},          // quantities
        {"Field24", "95.00"},      // frame fabrication hours
        {"Field19", "$5,987.50"},  // frame fabrication dollars
        {"Field14", "$20,120.25"}, // elevation totals
        {"Field21", "$575.00"},    // 10 added hours at $45 and a fixed $125
        {"Field22", "$20,695.25"}, // job grand total
        {"lJobName", "Riverside Clinic"},
        {"txtPageNumber", "Page  1 of  1"},
    };
    for (const auto& [control, text] : expected)
        EXPECT_EQ(costText(pages, control), text) << control;
    // The sub-report lists the items with hours or an amount.
    EXPECT_EQ(costTexts(pages, "ItemName"),
              (std::vector<std::string>{"Mobilization", "Field measuring", "Punch list"}));
    EXPECT_EQ(costTexts(pages, "FixedAmount"),
              (std::vector<std::string>{"$125.00", "$.00", "$.00"}));
    EXPECT_EQ(costTexts(pages, "MiscHours"), (std::vector<std::string>{"0.00", "6.00", "4.00"}));
    writeCostPngs(pages, "finallaborar");
}

TEST_P(LaborReportTest, ElevationTotalsRoundHalvesToEven) {
    // 2 x 0.0625 = 0.125 and 2 x 0.1875 = 0.375: the frame fabrication figure prints through
    // its format (halves away from zero), the elevation total is rounded to the even cent.
    setRequest("LaborRound", kRoundingJob);
    reports::FinalLaborAR report;
    const page::Pages& pages = run(report);
    EXPECT_EQ(costTexts(pages, "Field4"), (std::vector<std::string>{"$0.13", "$0.38"}));
    EXPECT_EQ(costTexts(pages, "Field10"), (std::vector<std::string>{"$0.12", "$0.38"}));
    EXPECT_DOUBLE_EQ(stored("LaborRound", "Canopy A", "pElevTot"), 0.12);
    EXPECT_DOUBLE_EQ(stored("LaborRound", "Canopy B", "pElevTot"), 0.38);
    EXPECT_EQ(costText(pages, "Field21"), "$.00"); // no added labor, no misc rate
    EXPECT_EQ(costText(pages, "Field22"), "$.50");
}

TEST_P(LaborReportTest, TheJobGrandTotalIsCarriedInSinglePrecision) {
    // $60,000.03 and $40,000.04: the column total adds exactly, the job grand total keeps
    // seven digits.
    setRequest("LaborBig", kRoundingJob);
    reports::FinalLaborAR report;
    const page::Pages& pages = run(report);
    EXPECT_EQ(costText(pages, "Field14"), "$100,000.07");
    EXPECT_EQ(costText(pages, "Field22"), "$100,000.10");
}

TEST_P(LaborReportTest, AnEmptyLaborTablePrintsZeroTotalsAndTheAddedLabor) {
    setRequest("LaborEmpty", kClinicJob);
    reports::FinalLaborAR report;
    const page::Pages& pages = run(report);
    EXPECT_TRUE(costTexts(pages, "Field1").empty());
    EXPECT_EQ(costText(pages, "Field19"), "$0.00");
    EXPECT_EQ(costText(pages, "Field21"), "$575.00");
    EXPECT_EQ(costText(pages, "Field22"), "$575.00");
}

TEST_P(LaborReportTest, ANullFigureIsRefusedBeforeAnyRowChanges) {
    setRequest("LaborNull", kClinicJob);
    reports::FinalLaborAR report;
    try {
        report.run();
        FAIL() << "a labor table with a Null figure was printed";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), errc::kInvalidUseOfNull);
        for (const char* part : {"pinstallhours", "LaborNull", "Stair"})
            EXPECT_NE(error.description().find(part), std::string::npos) << error.description();
    }
    EXPECT_DOUBLE_EQ(stored("LaborNull", "Lobby", "pFabTot"), 10);
}

TEST_P(LaborReportTest, EachRunStartsItsTotalsAfresh) {
    reports::FinalLaborAR report;
    setRequest("LaborBig", kRoundingJob);
    run(report);
    setRequest("LaborRound", kRoundingJob);
    EXPECT_EQ(costText(run(report), "Field22"), "$.50");
}

INSTANTIATE_TEST_SUITE_P(Backends, LaborReportTest,
                         ::testing::Values(CostBackend::SQLite, CostBackend::PostgreSQL),
                         costBackendName);

} // namespace
} // namespace qr::test
