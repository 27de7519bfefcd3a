// The four job glass reports over a hand-made take-off table, figures worked out by hand, read
// off their pages; on SQLite and PostgreSQL.
#include "reports/glass/job_glass_report.hpp"
#include "reports/support/glass_request_fixture.hpp"

#include <algorithm>
#include <functional>
#include <memory>

namespace qr::test {
namespace {

using Texts = std::vector<std::string>;

struct JobGlassCase {
    const char* name;
    const char* request;
    std::function<std::unique_ptr<reports::JobGlassReport>()> make;
    bool byElevation;
    bool wide;
};

const JobGlassCase kReports[] = {
    {"JobGlassByPartAR", "jobglassbypartar",
     [] { return std::make_unique<reports::JobGlassByPartAR>(); }, false, false},
    {"JobGlassByElevAR", "jobglassbyelevar",
     [] { return std::make_unique<reports::JobGlassByElevAR>(); }, true, false},
    {"JobGlassWideByPartAR2", "jobglasswidebypartar2",
     [] { return std::make_unique<reports::JobGlassWideByPartAR2>(); }, false, true},
    {"JobGlassWideByElevAR2", "jobglasswidebyelevar2",
     [] { return std::make_unique<reports::JobGlassWideByElevAR2>(); }, true, true},
};

// Elevation E1 spans two descriptions; GL-1 occurs in both elevations; GL-2 has a price of 0.
// The first row is the worked example: 2 lites of 7.5 square feet, $90.00.
const std::vector<TakeoffRow> kTakeoff{
    {"E1 Entrance", 1, "Clear IG", "GL-1", "GL-1", 2, "48", "84", "84", 6, 7.5, 90, 96, "50 x 86",
     8},
    {"E1 Entrance", 1, "Clear IG", "GL-1", "GL-1", 1, "24", "36", "36", 6, 6, 36, 42, "26 x 38", 7},
    {"E1 Entrance", 1, "Spandrel", "SP-1", "SP-1", 3, "48", "24", "30", 4, 8, 96, 102, "50 x 32",
     8.5},
    {"E2 Storefront", 2, "Clear IG", "GL-1", "GL-1", 4, "36", "72", "72", 6, 18, 432, 444,
     "38 x 74", 18.5},
    {"E2 Storefront", 2, "Clear IG", "GL-2", "GL-2", 1, "36", "20", "20", 0, 5, 0, 0, "38 x 22",
     5.5},
};

/// What one layout prints for kTakeoff: per part, per elevation (elevation reports), the job.
struct Expected {
    Texts parts, partQty, partArea, partPrice, partBlockArea, partBlockPrice;
    Texts elevQty, elevArea, elevPrice, elevBlockArea, elevBlockPrice;
};

const Expected kByPart{{"GL-1", "GL-2", "SP-1"},
                       {"7", "1", "3"},
                       {"93.00", "5.00", "24.00"},
                       {"$558.00", "$.00", "$96.00"},
                       {"97.00", "5.50", "25.50"},
                       {"$582.00", "$.00", "$102.00"},
                       {},
                       {},
                       {},
                       {},
                       {}};
const Expected kByElevation{{"GL-1", "SP-1", "GL-1", "GL-2"},
                            {"3", "3", "4", "1"},
                            {"21.00", "24.00", "72.00", "5.00"},
                            {"$126.00", "$96.00", "$432.00", "$.00"},
                            {"23.00", "25.50", "74.00", "5.50"},
                            {"$138.00", "$102.00", "$444.00", "$.00"},
                            {"6", "5"},
                            {"45.00", "77.00"},
                            {"$222.00", "$432.00"},
                            {"48.50", "79.50"},
                            {"$240.00", "$444.00"}};

class JobGlassTest : public GlassRequestTest {};

TEST_P(JobGlassTest, LinesPartElevationAndJobTotalsOfEveryReport) {
    makeTakeoffTable("TakeoffT", kTakeoff);
    for (const JobGlassCase& c : kReports) {
        SCOPED_TRACE(c.name);
        auto report = c.make();
        const page::Pages& pages = runOn(*report, "TakeoffT");
        const Expected& e = c.byElevation ? kByElevation : kByPart;
        const Texts none;

        // The worked example's line: 7.50 each, $90.00.
        const Texts each = costTexts(pages, "lSquareFt");
        const Texts totals = costTexts(pages, "lTotal");
        ASSERT_FALSE(each.empty());
        EXPECT_EQ(each.size(), kTakeoff.size());
        EXPECT_NE(std::find(each.begin(), each.end(), "7.50"), each.end());
        EXPECT_NE(std::find(totals.begin(), totals.end(), "$90.00"), totals.end());
        EXPECT_EQ(costTexts(pages, "lBlockTotal").size(), c.wide ? kTakeoff.size() : 0u);

        EXPECT_EQ(costTexts(pages, "Field18"), e.parts);
        EXPECT_EQ(costTexts(pages, "Field11"), e.partQty);
        EXPECT_EQ(costTexts(pages, "lSqrFtSubTot"), e.partArea);
        EXPECT_EQ(costTexts(pages, "lActualSubTot"), e.partPrice);
        EXPECT_EQ(costTexts(pages, "lBlkAreaSub"), c.wide ? e.partBlockArea : none);
        EXPECT_EQ(costTexts(pages, "lBlkDollarSub"), c.wide ? e.partBlockPrice : none);

        EXPECT_EQ(costTexts(pages, "Field20"),
                  c.byElevation ? (Texts{"E1 Entrance", "E2 Storefront"}) : none);
        EXPECT_EQ(costTexts(pages, "Field21"), e.elevQty);
        EXPECT_EQ(costTexts(pages, "lElevSqrFtSubTot"), e.elevArea);
        EXPECT_EQ(costTexts(pages, "lElevActualSubTot"), e.elevPrice);
        EXPECT_EQ(costTexts(pages, "lElevBlkAreaSub"), c.wide ? e.elevBlockArea : none);
        EXPECT_EQ(costTexts(pages, "lElevBlkDollarSub"), c.wide ? e.elevBlockPrice : none);

        EXPECT_EQ(costText(pages, "fTotalPieces"), "11");
        EXPECT_EQ(costText(pages, "lAreaGrandTotal"), "122.00");
        EXPECT_EQ(costText(pages, "lGrandTotal"), "$654.00");
        EXPECT_EQ(costTexts(pages, "lBlkAreaGTot"), c.wide ? Texts{"128.00"} : none);
        EXPECT_EQ(costTexts(pages, "lBlockGTotal"), c.wide ? Texts{"$684.00"} : none);
        EXPECT_EQ(costText(pages, "Label1"), "Glass Report for Job:");
        EXPECT_EQ(costText(pages, "lFax"), "(503) 555-0101");
        EXPECT_TRUE(costTexts(pages, "lRepeated").empty());
    }
}

TEST_P(JobGlassTest, EachReportSaysHowItGroupsAndWhereItsNotesStand) {
    makeTakeoffTable("TakeoffT", kTakeoff);
    const char* groupedBy[] = {
        "Grouped by: Glass Type,  SqFt", "Grouped by:  Elevation, Glass Type, SqFt",
        "Grouped by: Glass Type, SqFt", "Grouped by: Elevation, Glass Type, SqFt"};
    for (std::size_t i = 0; i < std::size(kReports); ++i) {
        const JobGlassCase& c = kReports[i];
        SCOPED_TRACE(c.name);
        auto report = c.make();
        const page::Pages& pages = runOn(*report, "TakeoffT");
        EXPECT_EQ(costText(pages, "Label8"), groupedBy[i]);
        EXPECT_EQ(pages.orientation == page::Orientation::Landscape, c.wide);
        const Texts notes = {"The pricing on this report is based on actual size.",
                             "The Final Glass Report calculates pricing from block sizes."};
        EXPECT_EQ(costTexts(pages, "Label53").size() + costTexts(pages, "Label54").size(),
                  c.wide ? 0u : 2u);
        if (!c.wide) {
            EXPECT_EQ(costText(pages, "Label53"), notes[0]);
            EXPECT_EQ(costText(pages, "Label54"), notes[1]);
        } else {
            EXPECT_EQ(costText(pages, "Label60"), "- Totals for this Job -");
        }
    }
}

TEST_P(JobGlassTest, TheWarningShowsOnlyWhenAnItemHasNoPrice) {
    const TakeoffRow priced = kTakeoff[0];
    TakeoffRow zero = kTakeoff[4];
    TakeoffRow null = kTakeoff[4];
    null.price = std::nullopt;
    makeTakeoffTable("Priced", {priced});
    makeTakeoffTable("ZeroPrice", {priced, zero});
    makeTakeoffTable("NullPrice", {priced, null});
    const std::string warning = "Warning: There were some items on this report with no price!";
    struct Case {
        const char* table;
        bool warned;
    };
    // One object each, run in this order: the warning of one run does not stay for the next.
    const Case cases[] = {
        {"ZeroPrice", true}, {"Priced", false}, {"NullPrice", true}, {"Priced", false}};
    for (const JobGlassCase& c : kReports) {
        auto report = c.make();
        for (const Case& run : cases) {
            SCOPED_TRACE(std::string(c.name) + " on " + run.table);
            const page::Pages& pages = runOn(*report, run.table);
            const bool warned = !c.wide && run.warned;
            EXPECT_EQ(costTexts(pages, "lWarning"), warned ? Texts{warning} : Texts{});
            // The notes print whatever the rows hold.
            EXPECT_EQ(costTexts(pages, "Label52"), c.wide ? Texts{} : Texts{"NOTE:"});
        }
    }
}

TEST_P(JobGlassTest, TheSameObjectRunTwicePrintsTheSameTotals) {
    makeTakeoffTable("TakeoffT", kTakeoff);
    for (const JobGlassCase& c : kReports) {
        auto report = c.make();
        for (int run = 1; run <= 2; ++run) {
            SCOPED_TRACE(std::string(c.name) + " run " + std::to_string(run));
            const page::Pages& pages = runOn(*report, "TakeoffT");
            EXPECT_EQ(costText(pages, "lAreaGrandTotal"), "122.00");
            EXPECT_EQ(costText(pages, "lGrandTotal"), "$654.00");
            EXPECT_EQ(costTexts(pages, "lSqrFtSubTot"),
                      c.byElevation ? kByElevation.partArea : kByPart.partArea);
        }
    }
}

TEST_P(JobGlassTest, NoRequestExportsAFileEvenWhenItAsksForBoth) {
    makeTakeoffTable("TakeoffT", kTakeoff);
    for (const JobGlassCase& c : kReports) {
        SCOPED_TRACE(c.name);
        printRequest(std::string(c.request) + " TakeoffT false 1 1 true true false |x |");
        EXPECT_TRUE(shownMessages().empty()) << shownMessages().front();
        EXPECT_FALSE(std::filesystem::exists(reportsFolder(kGlassSampleJob)));
    }
}

TEST_P(JobGlassTest, ALineTotalThatIsNullIsShownNamingTheColumnAndTheTable) {
    makeTakeoffTable("TakeoffNull", {kTakeoff[0]});
    execVendor("UPDATE TakeoffNull SET ptotals = NULL");
    printRequest("jobglassbypartar TakeoffNull false 1 1 false false false |x |");
    const auto shown = shownMessages();
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(shown.front(), "Error Encountered: Invalid use of Null: ptotals of the report table "
                             "takeoffnull is empty (Null).");
}

QR_GLASS_REQUEST_ON_BOTH_BACKENDS(JobGlassTest);

} // namespace
} // namespace qr::test
