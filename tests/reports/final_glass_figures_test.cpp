// The figures of the four final glass reports over the fixture job, read off the pages: line
// areas, type subtotals, the grand total, the category rows, door lites, the perimeter, the
// minimum block area check.
#include "reports/glass/final_glass_report.hpp"
#include "support/glass_fixture.hpp"

#include <algorithm>
#include <functional>
#include <sstream>

namespace qr::test {
namespace {

using Texts = std::vector<std::string>;

struct ReportCase {
    const char* name;
    std::function<std::unique_ptr<reports::FinalGlassReport>()> make;
    bool prices;
    bool minimumAreaCheck;
};

const std::vector<ReportCase>& allReports() {
    static const std::vector<ReportCase> cases = {
        {"FinalGlassAR", [] { return std::make_unique<reports::FinalGlassAR>(); }, true, false},
        {"FinalGlassAR2", [] { return std::make_unique<reports::FinalGlassAR2>(); }, true, true},
        {"FinalGlassARNP", [] { return std::make_unique<reports::FinalGlassARNP>(); }, false,
         false},
        {"FinalGlassARNP2", [] { return std::make_unique<reports::FinalGlassARNP2>(); }, false,
         true},
    };
    return cases;
}

/// The lines of the page dump, sorted: what was printed where, whatever the drawing order.
Texts dumpLines(const page::Pages& pages) {
    Texts lines;
    std::istringstream dump(page::dump(pages));
    for (std::string line; std::getline(dump, line);) lines.push_back(line);
    std::sort(lines.begin(), lines.end());
    return lines;
}

class FinalGlassFigures : public GlassReportTest {
  protected:
    std::unique_ptr<reports::FinalGlassReport> run(const ReportCase& report) {
        auto object = report.make();
        object->ReportData = &reportData();
        object->run();
        return object;
    }
};

TEST_P(FinalGlassFigures, TypeSubtotalsAndGrandTotalsOfEveryReport) {
    for (const ReportCase& report : allReports()) {
        SCOPED_TRACE(report.name);
        const page::Pages pages = run(report)->pages();
        EXPECT_EQ(glassTexts(pages, "Field3"),
                  (Texts{"105", "4", "6", "2", "2", "3", "1", "1", "2"}));
        EXPECT_EQ(glassTexts(pages, "lTypeAreaTotal"),
                  (Texts{"8,103.00", "50.00", "121.50", "36.00", "60.00", "30.00", "4.00", "12.00",
                         "6.00"}));
        EXPECT_EQ(glassText(pages, "lGrandAreaTotal"), "8,422.50");
        EXPECT_EQ(glassText(pages, "Field15"), "126");
        if (report.prices) {
            EXPECT_EQ(glassTexts(pages, "Field11"),
                      (Texts{"$101,155.00", "$1,005.00", "$972.00", "$540.00", "$900.00", "$750.00",
                             "$20.00", "$120.00", "$48.00"}));
            EXPECT_EQ(glassText(pages, "Field14"), "$105,510.00");
            EXPECT_EQ(glassText(pages, "Label62"), "Final Glass Totals:");
            EXPECT_EQ(glassText(pages, "Label69"), "Note:  Glass is priced by Block Size.");
        } else {
            EXPECT_TRUE(glassTexts(pages, "Field11").empty());
            EXPECT_TRUE(glassTexts(pages, "Field14").empty());
            EXPECT_TRUE(glassTexts(pages, "Label69").empty());
            EXPECT_EQ(glassText(pages, "Label62"), "Final Glass Total:");
        }
    }
}

TEST_P(FinalGlassFigures, CategoryRowsSortLinesByGlassTypeAndKeepDoorLitesApart) {
    // Door lites ("door glass" exactly) count only in the door row; "Door Glass" is a tempered
    // lite. Laminated is Miscellaneous only in the priced reports.
    struct Row {
        const char* area;
        const char* cost;
        const char* pricedArea;
        const char* pricedCost;
        const char* unpricedArea;
    };
    const Row rows[] = {
        {"lSqrAnneal", "lAnnDlr", "8,103.00", "$101,155.00", "8,103.00"},
        {"lSqrHeatStrengthened", "lHeatStrengthenedCost", "60.00", "$900.00", "60.00"},
        {"lSqrTempered", "lTempDlr", "36.50", "$555.00", "36.50"},
        {"lSqrSpecial", "lSpecDlr", "121.50", "$972.00", "121.50"},
        {"lSqrPanels", "lPanelDlr", "12.00", "$120.00", "12.00"},
        {"lSqrVent", "lVentDlr", "6.00", "$48.00", "6.00"},
        {"lSqrMisc", "lMiscDlr", "34.00", "$770.00", "4.00"},
        {"lDoorLites", "lDoorDlr", "49.50", "$990.00", "49.50"},
    };
    for (const ReportCase& report : allReports()) {
        SCOPED_TRACE(report.name);
        const page::Pages pages = run(report)->pages();
        for (const Row& row : rows) {
            EXPECT_EQ(glassText(pages, row.area), report.prices ? row.pricedArea : row.unpricedArea)
                << row.area;
            if (report.prices)
                EXPECT_EQ(glassText(pages, row.cost), row.pricedCost) << row.cost;
            else
                EXPECT_TRUE(glassTexts(pages, row.cost).empty()) << row.cost;
        }
        EXPECT_EQ(glassText(pages, "lOtherLites"), "123");
        EXPECT_EQ(glassText(pages, "lTotalPerimeter"), "398.75");
    }
}

TEST_P(FinalGlassFigures, LinesShowEachAreaAndTheRowAreaWithoutALeadingZero) {
    const Texts areaEach{"80.50", "12.00", "5.00",  "16.50", ".50",   "20.25",
                         "18.00", "30.00", "10.00", "4.00",  "12.00", "3.00"};
    const Texts rowArea{"8,050.00", "48.00", "5.00",  "49.50", ".50",   "121.50",
                        "36.00",    "60.00", "30.00", "4.00",  "12.00", "6.00"};
    for (const ReportCase& report : allReports()) {
        SCOPED_TRACE(report.name);
        const page::Pages pages = run(report)->pages();
        EXPECT_EQ(glassTexts(pages, "Field9"), areaEach);
        EXPECT_EQ(glassTexts(pages, "lAreaSubTotal"), rowArea);
        EXPECT_EQ(glassTexts(pages, "Field4").front(), "120 15/16");
        if (report.prices) {
            EXPECT_EQ(glassTexts(pages, "Field8").front(), "$12.50");
            EXPECT_EQ(glassTexts(pages, "Field10").front(), "$100,625.00");
        } else {
            EXPECT_TRUE(glassTexts(pages, "Field8").empty());
            EXPECT_TRUE(glassTexts(pages, "Field10").empty());
        }
        // The rake box follows the row; the thickness heading prints inches.
        EXPECT_EQ(glassChecks(pages, "CheckBox1"), "--x-----x---");
        EXPECT_EQ(glassTexts(pages, report.minimumAreaCheck ? "Field22" : "Field20").at(1),
                  "0.25\"");
    }
}

TEST_P(FinalGlassFigures, MinimumAreaCheckComparesEachLiteWithItsMinimumBlockArea) {
    // The stored bMinOK values disagree with the figures on purpose: the check is the
    // report's. Equal areas pass; a row without a minimum (the spandrel) fails.
    for (const ReportCase& report : allReports()) {
        SCOPED_TRACE(report.name);
        const page::Pages pages = run(report)->pages();
        EXPECT_EQ(glassChecks(pages, "chkMinArea"), report.minimumAreaCheck ? "xx-x--xxxxxx" : "");
    }
}

TEST_P(FinalGlassFigures, DoorLitesCountAsDoorFiguresOnlyAndStillInAllLites) {
    // A job of door lites alone: every figure but the door row stays at zero.
    connection()->execute("UPDATE JobGlass SET sCategory = 'door glass' WHERE JobID = 7");
    for (const ReportCase& report : allReports()) {
        SCOPED_TRACE(report.name);
        const page::Pages pages = run(report)->pages();
        EXPECT_EQ(glassText(pages, "Field15"), "126");
        EXPECT_EQ(glassText(pages, "lOtherLites"), "0");
        EXPECT_EQ(glassText(pages, "lDoorLites"), "8,422.50");
        EXPECT_EQ(glassText(pages, "lGrandAreaTotal"), "8,422.50");
        for (const char* area : {"lSqrAnneal", "lSqrTempered", "lSqrMisc", "lSqrVent"})
            EXPECT_EQ(glassText(pages, area), ".00") << area;
        if (report.prices) {
            EXPECT_EQ(glassText(pages, "lDoorDlr"), "$105,510.00");
            EXPECT_EQ(glassText(pages, "lAnnDlr"), "$.00");
        }
    }
}

TEST_P(FinalGlassFigures, RunningTheSameObjectAgainGivesTheSameFigures) {
    for (const ReportCase& report : allReports()) {
        SCOPED_TRACE(report.name);
        auto object = run(report);
        const Texts first = dumpLines(object->pages());
        object->run();
        EXPECT_EQ(dumpLines(object->pages()), first);
        EXPECT_EQ(glassText(object->pages(), "lSqrAnneal"), "8,103.00");
        EXPECT_EQ(glassText(object->pages(), "lOtherLites"), "123");
    }
}

TEST_P(FinalGlassFigures, AJobWithoutRowsOrElevationsShowsZeroTotals) {
    // The perimeter sum of a job without elevations is Null: it shows as zero.
    reportData() = glassReportData(connection(), kJobWithoutElevations);
    const page::Pages pages = run(allReports()[0])->pages();
    EXPECT_EQ(glassText(pages, "lTotalPerimeter"), ".00");
    EXPECT_EQ(glassText(pages, "Field15"), "0");
    EXPECT_EQ(glassText(pages, "lOtherLites"), "0");
    EXPECT_EQ(glassText(pages, "lGrandAreaTotal"), ".00");
    EXPECT_EQ(glassText(pages, "Field14"), "$0.00");
    EXPECT_EQ(glassText(pages, "lAnnDlr"), "$.00");
    EXPECT_TRUE(glassTexts(pages, "Field1").empty());
}

TEST_P(FinalGlassFigures, NullFiguresCountAsZeroAndLeaveTheLineAreaBlank) {
    connection()->execute("INSERT INTO JobGlass (GlassID, JobID, sDescription, pThickness, "
                          "sGlassType, sTypeLabel, sCategory, iQuantity, pSqrFt, pPriceTotal) "
                          "VALUES (20, 7, 'Laminated Safety', 0.5625, 'Vent', 'VT-2', "
                          "'Storefront', 5, NULL, NULL)");
    const page::Pages pages = run(allReports()[0])->pages();
    // The new line prints its quantity but no area (an empty text prints nothing).
    EXPECT_EQ(glassTexts(pages, "Field1").size(), 13u);
    EXPECT_EQ(glassTexts(pages, "Field9").size(), 12u);
    EXPECT_EQ(glassTexts(pages, "lAreaSubTotal").size(), 12u);
    EXPECT_EQ(glassTexts(pages, "Field3").back(), "7");
    EXPECT_EQ(glassTexts(pages, "lTypeAreaTotal").back(), "6.00");
    EXPECT_EQ(glassTexts(pages, "Field19").back(), "VT-2");
    EXPECT_EQ(glassText(pages, "lSqrVent"), "6.00");
    EXPECT_EQ(glassText(pages, "lVentDlr"), "$48.00");
    EXPECT_EQ(glassText(pages, "Field15"), "131");
}

TEST_P(FinalGlassFigures, ProblemsInTheDataRaiseErrorsNamingThem) {
    struct Case {
        const char* what;
        std::string glassQuery;
        std::string setUp;
        int number;
        const char* mentions;
    };
    const std::vector<Case> cases = {
        {"door lites beyond a 16-bit count", data::sql::finalGlassQuery(kGlassJobId),
         "UPDATE JobGlass SET iQuantity = 40000 WHERE GlassID = 4", errc::kOverflow, "Overflow"},
        {"an area that is not a number",
         "SELECT sDescription, pThickness, sGlassType, sTypeLabel, sCategory, iQuantity, "
         "'wide' AS pSqrFt, pPriceTotal FROM JobGlass WHERE GlassID = 1",
         "", errc::kTypeMismatch, "pSqrFt"},
        {"a query without the quantity column",
         "SELECT sDescription, pThickness, sGlassType, sTypeLabel, sCategory, pSqrFt, "
         "pPriceTotal FROM JobGlass WHERE GlassID = 1",
         "", errc::kComponent, "iQuantity"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        if (!c.setUp.empty())
            connection()->execute(c.setUp);
        reportData().GlassQuery = c.glassQuery;
        reports::FinalGlassAR report;
        report.ReportData = &reportData();
        try {
            report.run();
            ADD_FAILURE() << "no error";
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), c.number) << error.description();
            EXPECT_NE(error.description().find(c.mentions), std::string::npos)
                << error.description();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, FinalGlassFigures,
                         ::testing::Values(GlassBackend::SQLite, GlassBackend::PostgreSQL),
                         glassBackendName);

} // namespace
} // namespace qr::test
