// The four job glass reports over a hand-made take-off table, figures worked out by hand, read
// off their pages; on SQLite and PostgreSQL.
#include "reports/glass/job_glass_report.hpp"
#include "reports/support/glass_request_fixture.hpp"

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
    const char* groupedBy;
};

const JobGlassCase kReports[] = {
    {"JobGlassByPartAR", "jobglassbypartar",
     [] { return std::make_unique<reports::JobGlassByPartAR>(); }, false, false,
     "Grouped by: Glass Type,  SqFt"},
    {"JobGlassByElevAR", "jobglassbyelevar",
     [] { return std::make_unique<reports::JobGlassByElevAR>(); }, true, false,
     "Grouped by:  Elevation, Glass Type, SqFt"},
    {"JobGlassWideByPartAR2", "jobglasswidebypartar2",
     [] { return std::make_unique<reports::JobGlassWideByPartAR2>(); }, false, true,
     "Grouped by: Glass Type, SqFt"},
    {"JobGlassWideByElevAR2", "jobglasswidebyelevar2",
     [] { return std::make_unique<reports::JobGlassWideByElevAR2>(); }, true, true,
     "Grouped by: Elevation, Glass Type, SqFt"},
};

// Elevation E1 spans two descriptions; GL-1 occurs in both elevations; GL-2 has a price of 0.
// The first row is the worked example: 2 lites of 7.5 square feet, $90.00. Columns: elevation,
// its sort key, description, type label, part, units, width, left and right height, price per
// square foot, area each, line total, block price total, block size, block area each.
constexpr std::size_t kPrice = 9;
const std::vector<ReportRow> kTakeoff{
    {"E1 Entrance", 1, "Clear IG", "GL-1", "GL-1", 2, "48", "84", "84", 6.0, 7.5, 90.0, 96.0,
     "50 x 86", 8.0},
    {"E1 Entrance", 1, "Clear IG", "GL-1", "GL-1", 1, "24", "36", "36", 6.0, 6.0, 36.0, 42.0,
     "26 x 38", 7.0},
    {"E1 Entrance", 1, "Spandrel", "SP-1", "SP-1", 3, "48", "24", "30", 4.0, 8.0, 96.0, 102.0,
     "50 x 32", 8.5},
    {"E2 Storefront", 2, "Clear IG", "GL-1", "GL-1", 4, "36", "72", "72", 6.0, 18.0, 432.0, 444.0,
     "38 x 74", 18.5},
    {"E2 Storefront", 2, "Clear IG", "GL-2", "GL-2", 1, "36", "20", "20", 0.0, 5.0, 0.0, 0.0,
     "38 x 22", 5.5},
};

/// What one layout prints for kTakeoff: per line, per part, per elevation (elevation
/// reports), in the order it prints them.
struct Expected {
    Texts each, totals, blockTotals;
    Texts parts, partQty, partArea, partPrice, partBlockArea, partBlockPrice;
    Texts elevQty, elevArea, elevPrice, elevBlockArea, elevBlockPrice;
};

const Expected kByPart{{"6.00", "7.50", "18.00", "5.00", "8.00"},
                       {"$36.00", "$90.00", "$432.00", "$.00", "$96.00"},
                       {"$42.00", "$96.00", "$444.00", "$.00", "$102.00"},
                       {"GL-1", "GL-2", "SP-1"},
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
const Expected kByElevation{{"6.00", "7.50", "8.00", "18.00", "5.00"},
                            {"$36.00", "$90.00", "$96.00", "$432.00", "$.00"},
                            {"$42.00", "$96.00", "$102.00", "$444.00", "$.00"},
                            {"GL-1", "SP-1", "GL-1", "GL-2"},
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

void expectFigures(const JobGlassCase& c, const page::Pages& pages) {
    const Expected& e = c.byElevation ? kByElevation : kByPart;
    const Texts none;
    // The worked example is the second line by part: 7.50 each, $90.00.
    EXPECT_EQ(costTexts(pages, "lSquareFt"), e.each);
    EXPECT_EQ(costTexts(pages, "lTotal"), e.totals);
    EXPECT_EQ(costTexts(pages, "lBlockTotal"), c.wide ? e.blockTotals : none);

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
    EXPECT_EQ(costText(pages, "Label8"), c.groupedBy);
    EXPECT_EQ(costText(pages, "lFax"), "(503) 555-0101");
    EXPECT_TRUE(costTexts(pages, "lRepeated").empty());
    EXPECT_EQ(pages.orientation == page::Orientation::Landscape, c.wide);
}

class JobGlassTest : public GlassRequestTest {};

TEST_P(JobGlassTest, LinesPartElevationAndJobTotalsOfEveryReportRunTwice) {
    makeTable(data::ReportTableKind::GlassTakeoff, "TakeoffT", kTakeoff);
    for (const JobGlassCase& c : kReports) {
        auto report = c.make();
        for (int run = 1; run <= 2; ++run) {
            SCOPED_TRACE(std::string(c.name) + " run " + std::to_string(run));
            expectFigures(c, runOn(*report, "TakeoffT"));
        }
    }
}

TEST_P(JobGlassTest, TheWarningShowsOnlyWhenAnItemHasNoPrice) {
    using data::ReportTableKind;
    const ReportRow& priced = kTakeoff[0];
    ReportRow unpriced = kTakeoff[4];
    makeTable(ReportTableKind::GlassTakeoff, "Priced", {priced});
    makeTable(ReportTableKind::GlassTakeoff, "ZeroPrice", {priced, unpriced});
    unpriced[kPrice] = Variant::null();
    makeTable(ReportTableKind::GlassTakeoff, "NullPrice", {priced, unpriced});
    const std::string warning = "Warning: There were some items on this report with no price!";
    const Texts notes{"NOTE:", "The pricing on this report is based on actual size.",
                      "The Final Glass Report calculates pricing from block sizes."};
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
            // The notes print on the portrait page whatever the rows hold.
            Texts printed;
            for (const char* label : {"Label52", "Label53", "Label54"})
                for (const std::string& text : costTexts(pages, label))
                    printed.push_back(text);
            EXPECT_EQ(printed, c.wide ? Texts{} : notes);
        }
    }
}

TEST_P(JobGlassTest, NoRequestExportsAFileEvenWhenItAsksForBoth) {
    makeTable(data::ReportTableKind::GlassTakeoff, "TakeoffT", kTakeoff);
    for (const JobGlassCase& c : kReports) {
        SCOPED_TRACE(c.name);
        printRequest(std::string(c.request) + " TakeoffT false 1 1 true true false |x |");
        EXPECT_TRUE(shownMessages().empty()) << shownMessages().front();
        EXPECT_FALSE(std::filesystem::exists(reportsFolder(kGlassSampleJob)));
    }
}

QR_GLASS_REQUEST_ON_BOTH_BACKENDS(JobGlassTest);

} // namespace
} // namespace qr::test
