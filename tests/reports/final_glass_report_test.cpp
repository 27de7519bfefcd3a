// The four final glass reports over the fixture job (figures worked out by hand in
// glass_job.sql), read off their pages.
#include "reports/glass/final_glass_report.hpp"
#include "support/glass_fixture.hpp"

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <tuple>

namespace qr::test {
namespace {

using Texts = std::vector<std::string>;

struct ReportCase {
    const char* name;
    std::function<std::unique_ptr<reports::FinalGlassReport>()> make;
    bool prices;
    bool landscape;
};

const ReportCase kReports[] = {
    {"FinalGlassAR", [] { return std::make_unique<reports::FinalGlassAR>(); }, true, false},
    {"FinalGlassAR2", [] { return std::make_unique<reports::FinalGlassAR2>(); }, true, true},
    {"FinalGlassARNP", [] { return std::make_unique<reports::FinalGlassARNP>(); }, false, false},
    {"FinalGlassARNP2", [] { return std::make_unique<reports::FinalGlassARNP2>(); }, false, true},
};

/// The page dump's lines sorted: what printed where, whatever the drawing order.
Texts dumpLines(const page::Pages& pages) {
    Texts lines;
    std::istringstream dump(page::dump(pages));
    for (std::string line; std::getline(dump, line);)
        lines.push_back(line);
    std::sort(lines.begin(), lines.end());
    return lines;
}

class FinalGlassReport : public GlassReportTest {
  protected:
    std::unique_ptr<reports::FinalGlassReport> run(const ReportCase& c) {
        auto report = c.make();
        report->ReportData = &reportData();
        report->run();
        return report;
    }
};

TEST_P(FinalGlassReport, SubtotalsCategoriesDoorLitesAndPerimeterOfEveryReport) {
    // Door lites ("door glass" exactly) count in the door row only; "Door Glass" is a tempered
    // lite. The laminated type is Miscellaneous in the priced reports and in no category
    // without prices. Each row: area label, cost label, priced area and cost, unpriced area.
    const Texts categories[] = {
        {"lSqrAnneal", "lAnnDlr", "8,103.00", "$101,155.00", "8,103.00"},
        {"lSqrHeatStrengthened", "lHeatStrengthenedCost", "60.00", "$900.00", "60.00"},
        {"lSqrTempered", "lTempDlr", "36.50", "$555.00", "36.50"},
        {"lSqrSpecial", "lSpecDlr", "121.50", "$972.00", "121.50"},
        {"lSqrPanels", "lPanelDlr", "12.00", "$120.00", "12.00"},
        {"lSqrVent", "lVentDlr", "6.00", "$48.00", "6.00"},
        {"lSqrMisc", "lMiscDlr", "34.00", "$770.00", "4.00"},
        {"lDoorLites", "lDoorDlr", "49.50", "$990.00", "49.50"},
    };
    for (const ReportCase& c : kReports) {
        SCOPED_TRACE(c.name);
        auto report = run(c);
        const page::Pages& pages = report->pages();
        EXPECT_EQ(glassTexts(pages, "Field3"),
                  (Texts{"105", "4", "6", "2", "2", "3", "1", "1", "2"}));
        EXPECT_EQ(glassTexts(pages, "lTypeAreaTotal"),
                  (Texts{"8,103.00", "50.00", "121.50", "36.00", "60.00", "30.00", "4.00", "12.00",
                         "6.00"}));
        const Texts pricedSubtotals{"$101,155.00", "$1,005.00", "$972.00", "$540.00", "$900.00",
                                    "$750.00",     "$20.00",    "$120.00", "$48.00"};
        EXPECT_EQ(glassTexts(pages, "Field11"), c.prices ? pricedSubtotals : Texts{});
        EXPECT_EQ(glassText(pages, "lGrandAreaTotal"), "8,422.50");
        EXPECT_EQ(glassText(pages, "Label62"),
                  c.prices ? "Final Glass Totals:" : "Final Glass Total:");
        EXPECT_EQ(glassTexts(pages, "Field14"), c.prices ? Texts{"$105,510.00"} : Texts{});
        EXPECT_EQ(glassText(pages, "Field15"), "126");
        EXPECT_EQ(glassText(pages, "lOtherLites"), "123");
        EXPECT_EQ(glassText(pages, "lTotalPerimeter"), "398.75");
        for (const Texts& row : categories) {
            EXPECT_EQ(glassText(pages, row[0]), c.prices ? row[2] : row[4]) << row[0];
            EXPECT_EQ(glassTexts(pages, row[1]), c.prices ? Texts{row[3]} : Texts{}) << row[1];
        }
        // A lite of half a square foot prints ".50" each and in total.
        EXPECT_EQ(glassTexts(pages, "Field9").at(4), ".50");
        EXPECT_EQ(glassTexts(pages, "lAreaSubTotal").at(4), ".50");
        EXPECT_EQ(glassTexts(pages, "lAreaSubTotal").at(0), "8,050.00");
        // The minimum-area check is the report's, whatever bMinOK holds: equal areas pass, a
        // row without a minimum fails.
        EXPECT_EQ(glassChecks(pages, "chkMinArea"), c.landscape ? "xx-x--xxxxxx" : "");
        EXPECT_EQ(glassChecks(pages, "CheckBox1"), "--x-----x---");

        // The same object run again starts from zero and prints the same figures.
        const Texts first = dumpLines(pages);
        report->run();
        EXPECT_EQ(dumpLines(report->pages()), first);
    }
}

TEST_P(FinalGlassReport, NullFiguresCountAsZero) {
    // A line without area or price prints its quantity but no area, and adds nothing.
    connection().execute(
        "INSERT INTO JobGlass (GlassID, JobID, sDescription, pThickness, sGlassType, sTypeLabel, "
        "sCategory, iQuantity, pSqrFt, pPriceTotal) VALUES (20, 7, 'Laminated Safety', 0.5625, "
        "'Vent', 'VT-2', 'Storefront', 5, NULL, NULL)");
    auto report = run(kReports[0]);
    EXPECT_EQ(glassTexts(report->pages(), "Field1").size(), 13u);
    EXPECT_EQ(glassTexts(report->pages(), "lAreaSubTotal").size(), 12u);
    EXPECT_EQ(glassText(report->pages(), "lSqrVent"), "6.00");
    EXPECT_EQ(glassText(report->pages(), "lVentDlr"), "$48.00");
    EXPECT_EQ(glassText(report->pages(), "Field15"), "131");

    // A job without glass or elevations: its perimeter sum is Null and shows as zero.
    reportData() = glassReportData(reportData().Connection, 9);
    report->run();
    EXPECT_EQ(glassText(report->pages(), "lTotalPerimeter"), ".00");
    EXPECT_EQ(glassText(report->pages(), "lOtherLites"), "0");
    EXPECT_EQ(glassText(report->pages(), "lAnnDlr"), "$.00");
}

TEST_P(FinalGlassReport, HeadingTitlePhoneAndSupplier) {
    const page::Pages landscape = run(kReports[1])->pages();
    EXPECT_EQ(glassText(landscape, "RptDate"), "3/15/2024");
    EXPECT_EQ(glassText(landscape, "RptTime"), "2:05 PM");
    EXPECT_EQ(glassText(landscape, "lJobName"), "Harbor Point Tower");

    // Only an empty phone falls back to the firm's; a blank title keeps the design's.
    struct Heading {
        const char *title, *phone, *shownTitle, *shownPhone;
    };
    const Heading headings[] = {
        {"", "", "Job Glass Report", "(555) 201-4400"},
        {"   ", " ", "Job Glass Report", " "},
        {" Bid Set A ", "(555) 201-4477", " Bid Set A ", "(555) 201-4477"},
    };
    for (const Heading& h : headings) {
        reportData().ReportTitle = h.title;
        reportData().User.phone = h.phone;
        auto report = run(kReports[2]);
        EXPECT_EQ(glassText(report->pages(), "Label1"), h.shownTitle);
        EXPECT_EQ(glassText(report->pages(), "lPhone"), h.shownPhone);
    }

    // The supplier (empty and Null in the second and third description) follows after one
    // space in the portrait priced report, after two in the others.
    for (bool showSupplier : {true, false}) {
        reportData().ShowSupplier = showSupplier;
        for (const ReportCase& c : kReports) {
            const bool one = std::string(c.name) == "FinalGlassAR";
            const std::string first = showSupplier ? (one ? " (Oldcastle)" : "  (Oldcastle)") : "";
            EXPECT_EQ(glassTexts(run(c)->pages(),
                                 one ? "DescriptionSupplierField" : "lDescriptionSupplier"),
                      (Texts{"1\" Clear Insulated" + first, "1/4\" Tempered Spandrel",
                             "Laminated Safety"}))
                << c.name;
        }
    }
}

TEST_P(FinalGlassReport, PagesAreNumberedAndFiguresFitUnderTheirHeadings) {
    std::string rows;
    for (int i = 0; i < 120; ++i)
        rows += (i ? ", (" : "(") + std::to_string(100 + i) +
                ", 7, '1\" Clear Insulated', 1, 'Annealed', 'GL-9', 'x', 1, 4, 40)";
    connection().execute("INSERT INTO JobGlass (GlassID, JobID, sDescription, pThickness, "
                         "sGlassType, sTypeLabel, sCategory, iQuantity, pSqrFt, pPriceTotal) "
                         "VALUES " +
                         rows);
    // Figure columns: the heading on the bottom row and the controls right-aligned under it.
    const std::vector<Texts> columns = {
        {"Qty", "Field1", "Field3"},
        {"Units", "Field1", "Field3"},
        {"Each", "Field9"},
        {"Total", "lAreaSubTotal", "lTypeAreaTotal", "lGrandAreaTotal"},
        {"Totals", "Field10", "Field11", "Field14"}};
    for (const ReportCase& c : kReports) {
        SCOPED_TRACE(c.name);
        const page::Pages pages = run(c)->pages();
        const int count = static_cast<int>(pages.pages.size());
        Texts numbers;
        for (int n = 1; n <= count; ++n)
            numbers.push_back("Page  " + std::to_string(n) + " of  " + std::to_string(count));
        EXPECT_GE(count, 3);
        EXPECT_EQ(glassTexts(pages, "txtPageNumber"), numbers);

        std::map<std::string, std::set<int>> rightEdges;
        for (const page::Page& page : pages.pages) {
            std::vector<page::TextRun> runs; // to find texts that overlap on a line
            for (const page::Item& item : page.items) {
                const auto* t = std::get_if<page::TextItem>(&item);
                if (!t || t->text.empty())
                    continue;
                // Every text on one line, whole inside its box, the box inside the margins.
                ASSERT_EQ(t->runs.size(), 1u) << t->control << " " << t->text;
                EXPECT_GE(t->runs[0].x, t->box.x) << t->control;
                EXPECT_LE(t->runs[0].x + t->runs[0].width, t->box.x + t->box.width) << t->control;
                EXPECT_LE(t->box.x + t->box.width, page.width - 720) << t->control;
                runs.push_back(t->runs[0]);
                const bool heading = t->section == "ReportHeader" && t->box.y > 1900;
                if (t->align == page::Align::Right)
                    rightEdges[heading ? t->text : t->control].insert(t->box.x + t->box.width);
            }
            std::sort(runs.begin(), runs.end(), [](const auto& a, const auto& b) {
                return std::tie(a.baseline, a.x) < std::tie(b.baseline, b.x);
            });
            for (size_t i = 1; i < runs.size(); ++i) {
                if (runs[i].baseline == runs[i - 1].baseline) {
                    EXPECT_LE(runs[i - 1].x + runs[i - 1].width, runs[i].x)
                        << runs[i - 1].text << " / " << runs[i].text;
                }
            }
        }
        for (const Texts& column : columns) {
            if (!rightEdges.count(column[0]))
                continue; // not a heading of this report
            std::set<int> edges = rightEdges[column[0]];
            for (size_t i = 1; i < column.size(); ++i) {
                edges.insert(rightEdges[column[i]].begin(), rightEdges[column[i]].end());
            }
            EXPECT_EQ(edges.size(), 1u) << column[0];
        }
    }
}

QR_GLASS_ON_BOTH_BACKENDS(FinalGlassReport);

} // namespace
} // namespace qr::test
