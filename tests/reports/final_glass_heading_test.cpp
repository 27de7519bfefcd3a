// The heading of the final glass reports (title, user block, date and time, the description
// with its supplier, page numbers) and the layout of their pages.
#include "reports/glass/final_glass_report.hpp"
#include "support/glass_fixture.hpp"

#include <algorithm>
#include <functional>
#include <map>

namespace qr::test {
namespace {

using Texts = std::vector<std::string>;
using Factory = std::function<std::unique_ptr<reports::FinalGlassReport>()>;

const std::vector<std::pair<const char*, Factory>>& allReports() {
    static const std::vector<std::pair<const char*, Factory>> reports = {
        {"FinalGlassAR", [] { return std::make_unique<reports::FinalGlassAR>(); }},
        {"FinalGlassAR2", [] { return std::make_unique<reports::FinalGlassAR2>(); }},
        {"FinalGlassARNP", [] { return std::make_unique<reports::FinalGlassARNP>(); }},
        {"FinalGlassARNP2", [] { return std::make_unique<reports::FinalGlassARNP2>(); }},
    };
    return reports;
}

class FinalGlassHeading : public GlassReportTest {
  protected:
    page::Pages run(const Factory& make) {
        auto report = make();
        report->ReportData = &reportData();
        report->run();
        return report->pages();
    }
};

TEST_P(FinalGlassHeading, HeadingShowsTheUserTheFirmTheJobAndTheRunTime) {
    for (const auto& [name, make] : allReports()) {
        SCOPED_TRACE(name);
        const page::Pages pages = run(make);
        EXPECT_EQ(glassText(pages, "lUserName"), "Dana Whitfield");
        EXPECT_EQ(glassText(pages, "lGlassfirm"), "Harbor Glass & Glazing");
        EXPECT_EQ(glassText(pages, "lPhone"), "(555) 201-4477");
        EXPECT_EQ(glassText(pages, "lEmail"), "dana@harborglass.example");
        EXPECT_EQ(glassText(pages, "Label8"), "Job  Name:");
        EXPECT_EQ(glassText(pages, "lJobName"), "Harbor Point Tower");
        EXPECT_EQ(glassText(pages, "RptDate"), "3/15/2024");
        EXPECT_EQ(glassText(pages, "RptTime"), "2:05 PM");
        EXPECT_EQ(pages.title, "Job Glass Report");
    }
}

TEST_P(FinalGlassHeading, TitleAndPhoneFallBackOnlyWhenEmpty) {
    struct Case {
        const char* title;
        const char* userPhone;
        const char* shownTitle;
        const char* shownPhone;
    };
    const Case cases[] = {
        {"", "", "Job Glass Report", "(555) 201-4400"},
        {"   ", " ", "Job Glass Report", " "},
        {" Bid Set A Glass ", "(555) 201-4477", " Bid Set A Glass ", "(555) 201-4477"},
    };
    // One object for all cases: a title left from an earlier run must not stick.
    reports::FinalGlassARNP report;
    report.ReportData = &reportData();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.title);
        reportData().ReportTitle = c.title;
        reportData().User.phone = c.userPhone;
        report.run();
        EXPECT_EQ(glassText(report.pages(), "Label1"), c.shownTitle);
        EXPECT_EQ(glassText(report.pages(), "lPhone"), c.shownPhone);
    }
}

TEST_P(FinalGlassHeading, SupplierFollowsTheDescriptionWhenAskedForAndPresent) {
    // The fixture's descriptions: one with a supplier, one with an empty one, one with Null.
    struct Case {
        bool showSupplier;
        Texts portraitPriced; // FinalGlassAR: one space before the parenthesis
        Texts others;         // the three others: two spaces
    };
    const Case cases[] = {
        {true,
         {"1\" Clear Insulated (Oldcastle)", "1/4\" Tempered Spandrel", "Laminated Safety"},
         {"1\" Clear Insulated  (Oldcastle)", "1/4\" Tempered Spandrel", "Laminated Safety"}},
        {false,
         {"1\" Clear Insulated", "1/4\" Tempered Spandrel", "Laminated Safety"},
         {"1\" Clear Insulated", "1/4\" Tempered Spandrel", "Laminated Safety"}},
    };
    for (const Case& c : cases) {
        reportData().ShowSupplier = c.showSupplier;
        for (const auto& [name, make] : allReports()) {
            SCOPED_TRACE(std::string(name) + (c.showSupplier ? " with supplier" : ""));
            const page::Pages pages = run(make);
            const bool portraitPriced = std::string(name) == "FinalGlassAR";
            const char* control =
                portraitPriced ? "DescriptionSupplierField" : "lDescriptionSupplier";
            EXPECT_EQ(glassTexts(pages, control), portraitPriced ? c.portraitPriced : c.others);
        }
    }
}

TEST_P(FinalGlassHeading, EveryPageIsNumberedOfTheTotal) {
    // Enough lines of the fixture's first group to fill a few pages.
    std::string insert = "INSERT INTO JobGlass (GlassID, JobID, sDescription, pThickness, "
                         "sGlassType, sTypeLabel, sCategory, iQuantity, sWidth, sHeight, pSqrFt, "
                         "pPriceTotal) VALUES ";
    for (int i = 0; i < 120; ++i) {
        insert += (i ? ", (" : "(") + std::to_string(100 + i) +
                  ", 7, '1\" Clear Insulated', 1, 'Annealed', 'GL-9', 'Storefront', 1, '24', '" +
                  std::to_string(20 + i) + "', 4, 40)";
    }
    connection()->execute(insert);
    for (const auto& [name, make] : allReports()) {
        SCOPED_TRACE(name);
        const page::Pages pages = run(make);
        const int count = static_cast<int>(pages.pages.size());
        ASSERT_GE(count, 3);
        Texts expected;
        for (int n = 1; n <= count; ++n)
            expected.push_back("Page  " + std::to_string(n) + " of  " + std::to_string(count));
        EXPECT_EQ(glassTexts(pages, "txtPageNumber"), expected);
        EXPECT_EQ(glassText(pages, "Field15"), "246");
    }
}

// Layout: what a reader of the printed page relies on.

/// Right edges of the text items of one control on the first page.
std::vector<int> rightEdges(const page::Page& page, const std::string& control) {
    std::vector<int> edges;
    for (const page::Item& item : page.items) {
        if (const auto* text = std::get_if<page::TextItem>(&item); text && text->control == control)
            edges.push_back(text->box.x + text->box.width);
    }
    return edges;
}

TEST_P(FinalGlassHeading, TextsFitTheirBoxesAndNeverOverlapOnTheirLine) {
    reportData().ShowSupplier = true;
    for (const auto& [name, make] : allReports()) {
        SCOPED_TRACE(name);
        const page::Pages pages = run(make);
        for (const page::Page& page : pages.pages) {
            std::vector<const page::TextItem*> texts;
            for (const page::Item& item : page.items) {
                if (const auto* text = std::get_if<page::TextItem>(&item);
                    text && !text->text.empty())
                    texts.push_back(text);
            }
            for (const page::TextItem* text : texts) {
                // One line each, wholly inside its box and inside the printed width.
                ASSERT_EQ(text->runs.size(), 1u) << text->control << " \"" << text->text << "\"";
                const page::TextRun& run = text->runs.front();
                EXPECT_GE(run.x, text->box.x) << text->control;
                EXPECT_LE(run.x + run.width, text->box.x + text->box.width) << text->control;
                EXPECT_LE(text->box.x + text->box.width, page.width - 720) << text->control;
            }
            for (size_t i = 0; i < texts.size(); ++i) {
                for (size_t j = i + 1; j < texts.size(); ++j) {
                    const page::TextRun& a = texts[i]->runs.front();
                    const page::TextRun& b = texts[j]->runs.front();
                    const bool sameLine = std::abs(a.baseline - b.baseline) < 120;
                    const bool apart = a.x + a.width <= b.x || b.x + b.width <= a.x;
                    EXPECT_TRUE(!sameLine || apart)
                        << texts[i]->control << " \"" << texts[i]->text << "\" and "
                        << texts[j]->control << " \"" << texts[j]->text << "\"";
                }
            }
        }
    }
}

TEST_P(FinalGlassHeading, FiguresAlignRightUnderTheirHeadings) {
    // Each figure column: its heading, its line figures and its totals share one right edge.
    struct Column {
        const char* heading; // the heading word on the bottom row
        std::vector<const char*> figures;
    };
    const std::map<std::string, std::vector<Column>> columns = {
        {"FinalGlassAR",
         {{"Qty", {"Field1", "Field3"}},
          {"Each", {"Field9"}},
          {"Price", {"Field8"}},
          {"Total", {"lAreaSubTotal", "lTypeAreaTotal", "lGrandAreaTotal"}},
          {"Totals", {"Field10", "Field11", "Field14"}}}},
        {"FinalGlassAR2",
         {{"Qty", {"Field1", "Field3"}},
          {"Thick", {"Field21"}},
          {"Each", {"Field9"}},
          {"Total", {"lAreaSubTotal", "lTypeAreaTotal", "lGrandAreaTotal"}},
          {"Totals", {"Field10", "Field11", "Field14"}}}},
        {"FinalGlassARNP",
         {{"Units", {"Field1", "Field3"}},
          {"Each", {"Field9"}},
          {"Total", {"lAreaSubTotal", "lTypeAreaTotal", "lGrandAreaTotal"}}}},
        {"FinalGlassARNP2",
         {{"Units", {"Field1", "Field3"}},
          {"Thick", {"Field21"}},
          {"Total", {"lAreaSubTotal", "lTypeAreaTotal", "lGrandAreaTotal"}}}},
    };
    for (const auto& [name, make] : allReports()) {
        SCOPED_TRACE(name);
        const page::Pages pages = run(make);
        const page::Page& first = pages.pages.front();
        for (const Column& column : columns.at(name)) {
            int headingRight = -1;
            for (const page::Item& item : first.items) {
                if (const auto* text = std::get_if<page::TextItem>(&item);
                    text && text->section == "ReportHeader" && text->text == column.heading) {
                    EXPECT_EQ(text->align, page::Align::Right) << column.heading;
                    headingRight = text->box.x + text->box.width;
                }
            }
            ASSERT_GE(headingRight, 0) << column.heading;
            for (const char* figure : column.figures) {
                std::vector<int> edges;
                for (const page::Page& page : pages.pages) {
                    for (int edge : rightEdges(page, figure))
                        edges.push_back(edge);
                }
                ASSERT_FALSE(edges.empty()) << figure;
                EXPECT_TRUE(std::all_of(edges.begin(), edges.end(),
                                        [&](int edge) { return edge == headingRight; }))
                    << figure << " under " << column.heading;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, FinalGlassHeading,
                         ::testing::Values(GlassBackend::SQLite, GlassBackend::PostgreSQL),
                         glassBackendName);

} // namespace
} // namespace qr::test
