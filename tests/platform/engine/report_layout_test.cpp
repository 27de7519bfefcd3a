// Layout and pagination of whole runs: growing text, bands moving or cut at the page end,
// page headers and footers on every page, page breaks, and label sheets. The test measurer
// makes a character 100 twips wide and a line 240 twips high (baseline 180 below its top).
#include "platform/engine/engine_test_support.hpp"

#include <gtest/gtest.h>

namespace qr::page {
void PrintTo(const CutText& c, std::ostream* os) {
    *os << "{page " << c.page << ", " << c.section << "/" << c.control << ", \"" << c.text
        << "\" printed \"" << c.printed << "\"" << (c.clipped ? ", clipped" : "") << "}";
}
} // namespace qr::page

namespace qr::engine::test {
namespace {

using V = std::vector<Variant>;

std::vector<V> numberedRows(int count) {
    std::vector<V> rows;
    for (int i = 1; i <= count; ++i)
        rows.push_back(V{std::to_string(i)});
    return rows;
}

/// Top of every text item of `control`, page by page.
std::vector<std::vector<int>> topsByPage(const page::Pages& pages, const std::string& control) {
    std::vector<std::vector<int>> tops;
    for (const page::Page& page : pages.pages) {
        tops.emplace_back();
        for (const page::TextItem& t : textsOf(page, control))
            tops.back().push_back(t.box.y);
    }
    return tops;
}

TEST(ReportLayout, MemoWithLineBreaksGrowsItsSectionAndPushesWhatIsBelow) {
    ReportDesign d =
        designOf("Notes", {detail("Detail", 540,
                                  {label("Caption", {0, 0, 1000, 240}, "Notes:"),
                                   textBox("Memo", {1200, 0, 3000, 240}, "mNotes").grow(),
                                   label("After", {0, 300, 1000, 240}, "After")})});
    ListReport report(std::move(d), {"mNotes"},
                      {V{"line one\r\nline two\nline three"}, V{"short"}});
    report.run();
    const page::Page& page = report.pages().pages[0];

    const page::TextItem memo = textsOf(page, "Memo")[0];
    EXPECT_EQ(memo.box, (page::Rect{1920, 720, 3000, 720}));
    ASSERT_EQ(memo.runs.size(), 3u);
    EXPECT_EQ(memo.runs[0], (page::TextRun{1920, 900, 800, "line one"}));
    EXPECT_EQ(memo.runs[1], (page::TextRun{1920, 1140, 800, "line two"}));
    EXPECT_EQ(memo.runs[2], (page::TextRun{1920, 1380, 1000, "line three"}));
    EXPECT_EQ(memo.text, "line one\nline two\nline three");
    // The label beside the memo stays; the one below moves down by the growth (480).
    EXPECT_EQ(textsOf(page, "Caption")[0].box.y, 720);
    EXPECT_EQ(textsOf(page, "After")[0].box.y, 720 + 300 + 480);
    // The next band starts below the grown one; it does not grow.
    EXPECT_EQ(textsOf(page, "Memo")[1].box, (page::Rect{1920, 720 + 540 + 480, 3000, 240}));
    EXPECT_EQ(textsOf(page, "After")[1].box.y, 720 + 540 + 480 + 300);
}

TEST(ReportLayout, TextThatMayNotGrowIsClippedAndEveryCutIsListedWithItsPage) {
    ReportDesign d = designOf(
        "Cuts",
        {detail("Detail", 480,
                {textBox("Wrapped", {0, 0, 500, 480}, "t"),
                 textBox("OneLine", {1000, 0, 500, 240}, "t").noWrap(),
                 textBox("RightEnd", {2000, 0, 500, 240}, "t").noWrap().alignRight().clipped(),
                 textBox("Grown", {3000, 0, 500, 240}, "t").grow(),
                 label("Late", {4000, 0, 300, 240}, "too long").noWrap()}),
         pageFooter("PageFooter", 240, {textBox("Folio", {0, 0, 50, 240}).pageNumber().noWrap()})});
    ListReport report(std::move(d), {"t"}, {V{"aaa bbb ccc"}, V{"a"}});
    // The label's design text is cut, but the first line replaces it with one that fits; the
    // second with one that does not.
    int row = 0;
    report.onBeforePrint("Detail",
                         [&] { report.label("Late").setCaption(++row == 1 ? "ok" : "later"); });
    report.run();
    const std::vector<page::CutText> expected = {
        {1, "Wrapped", "Detail", "aaa bbb ccc", "aaa\nbbb", false},
        {1, "OneLine", "Detail", "aaa bbb ccc", "aaa b", false},
        {1, "RightEnd", "Detail", "aaa bbb ccc", "b ccc", true},
        {1, "Late", "Detail", "later", "lat", false},
        {1, "Folio", "PageFooter", "1", "", false},
    };
    // What each cut text printed is what its runs hold; the item keeps the whole text for
    // outputs that show cells.
    EXPECT_EQ(report.pages().cutTexts, expected);
    EXPECT_EQ(textsOf(report.pages().pages[0], "OneLine")[0].text, "aaa bbb ccc");
}

TEST(ReportLayout, TextsChangedInBeforePrintAreLaidOutInTheirBoxes) {
    ReportDesign d =
        designOf("Inches", {detail("Detail", 240,
                                   {textBox("Thickness", {0, 0, 1000, 240}, "t").format("0.#####"),
                                    label("Empty", {2000, 0, 1000, 240}, "")})});
    ListReport report(std::move(d), {"t"}, {V{0.25}});
    report.onBeforePrint("Detail", [&] {
        TextBox& box = report.textBox("Thickness");
        box.setText(box.text() + "\"");
        report.label("Empty").setCaption("filled");
    });
    report.run();
    const page::Page& page = report.pages().pages[0];
    EXPECT_EQ(textsOf(page, "Thickness")[0].runs.at(0), (page::TextRun{720, 900, 500, "0.25\""}));
    EXPECT_EQ(textsOf(page, "Empty")[0].runs.at(0), (page::TextRun{2720, 900, 600, "filled"}));
    EXPECT_FALSE(textsOf(page, "Thickness")[0].numericValue.has_value());
}

ReportDesign pagedDesign() {
    return designOf(
        "Paged",
        {pageHeader("PageHeader", 500, {label("Heading", {0, 0, 2000, 240}, "Heading")}),
         detail("Detail", 1000, {textBox("n", {0, 0, 1000, 240}, "n")}),
         pageFooter("PageFooter", 400,
                    {textBox("txtPageNumber", {0, 0, 3000, 240}).pageCount().alignRight()})});
}

TEST(ReportLayout, BandsMoveToTheNextPageAndEveryPageHasHeaderFooterAndPageNofM) {
    ListReport report(pagedDesign(), {"n"}, numberedRows(30));
    report.onFormat("PageFooter", [&] {
        report.textBox("txtPageNumber")
            .setOutputFormat("\"Page  " + std::to_string(report.pageNumber()) + " of  \"#");
    });
    report.run();
    const page::Pages& pages = report.pages();
    // The body runs from 1220 (under the header) to 14720 (above the footer): 13 bands a page.
    ASSERT_EQ(pages.pages.size(), 3u);
    std::vector<std::vector<int>> expectedTops(3);
    for (int i = 0; i < 30; ++i)
        expectedTops[i / 13].push_back(1220 + (i % 13) * 1000);
    EXPECT_EQ(topsByPage(pages, "n"), expectedTops);
    EXPECT_EQ(textValues(pages, "Heading"), (std::vector<std::string>(3, "Heading")));
    EXPECT_EQ(topsByPage(pages, "Heading"), (std::vector<std::vector<int>>(3, {720})));
    EXPECT_EQ(topsByPage(pages, "txtPageNumber"), (std::vector<std::vector<int>>(3, {14720})));
    EXPECT_EQ(textValues(pages, "txtPageNumber"),
              (std::vector<std::string>{"Page  1 of  3", "Page  2 of  3", "Page  3 of  3"}));
    // Resolved page counts are laid out like any text: right aligned in their box.
    const page::TextItem last = textsOf(pages.pages[2], "txtPageNumber")[0];
    EXPECT_EQ(last.runs.at(0).x, 720 + 3000 - 1300);
    EXPECT_EQ(last.runs.at(0).baseline, 14720 + 180);
}

TEST(ReportLayout, PageNumberBoxShowsThePageItPrintsOn) {
    ReportDesign d = pagedDesign();
    d.sections[2].controls.push_back(textBox("running", {4000, 0, 2000, 240}).pageNumber());
    ListReport report(std::move(d), {"n"}, numberedRows(14));
    report.run();
    EXPECT_EQ(textValues(report.pages(), "running"), (std::vector<std::string>{"1", "2"}));
    EXPECT_EQ(textValues(report.pages(), "txtPageNumber"), (std::vector<std::string>{"2", "2"}));
}

ReportDesign totalsDesign(bool keepTogether) {
    SectionDesign totals = reportFooter("ReportFooter", 720,
                                        {label("Total1", {0, 0, 2000, 240}, "one"),
                                         label("Total2", {0, 240, 2000, 240}, "two"),
                                         label("Total3", {0, 480, 2000, 240}, "three")});
    if (keepTogether)
        totals.keepTogetherOnPage();
    return designOf("Totals", {detail("Detail", 1000, {textBox("n", {0, 0, 1000, 240}, "n")}),
                               std::move(totals)});
}

TEST(ReportLayout, ABandThatDoesNotFitIsCutBetweenLinesOrKeptTogether) {
    // 14 bands of 1000 leave 400 of the 14400-high body: room for one line of the totals.
    struct Case {
        bool keepTogether;
        std::vector<std::vector<int>> total1;
        std::vector<std::vector<int>> total3;
    };
    const std::vector<Case> cases = {
        {false, {{14720}, {}}, {{}, {960}}},
        {true, {{}, {720}}, {{}, {1200}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.keepTogether ? "kept together" : "cut");
        ListReport report(totalsDesign(c.keepTogether), {"n"}, numberedRows(14));
        report.run();
        ASSERT_EQ(report.pages().pages.size(), 2u);
        EXPECT_EQ(topsByPage(report.pages(), "Total1"), c.total1);
        EXPECT_EQ(topsByPage(report.pages(), "Total3"), c.total3);
    }
}

TEST(ReportLayout, AGroupFooterThatDoesNotFitTakesTheGroupsLastLineAlong) {
    // 14 lines of 1000 leave 400 of the 14400-high body. The inner footer fits under the last
    // line; the outer one, a rule over its total, does not: both footers and the last line go
    // to the next page, so no page opens with a footer.
    ReportDesign d = designOf(
        "Groups",
        {groupHeader("ghOuter", "g", 0, {}), groupHeader("ghInner", "g", 0, {}),
         detail("Detail", 1000,
                {textBox("n", {0, 0, 1000, 240}, "n"),
                 textBox("folio", {2000, 0, 1000, 240}).pageNumber()}),
         groupFooter("gfInner", "ghInner", 240, {label("Inner", {0, 0, 2000, 240}, "inner")}),
         groupFooter("gfOuter", "ghOuter", 720,
                     {line("Rule", 0, 30, 3000, 30), label("Outer", {0, 60, 2000, 240}, "outer"),
                      label("Note", {0, 300, 2000, 240}, "note")})});
    std::vector<V> rows;
    for (int i = 1; i <= 14; ++i)
        rows.push_back(V{"A", std::to_string(i)});
    ListReport report(std::move(d), {"g", "n"}, rows);
    report.run();
    const page::Pages& pages = report.pages();
    ASSERT_EQ(pages.pages.size(), 2u);
    std::vector<int> firstPage;
    for (int i = 0; i < 13; ++i)
        firstPage.push_back(720 + i * 1000);
    EXPECT_EQ(topsByPage(pages, "n"), (std::vector<std::vector<int>>{firstPage, {720}}));
    // The moved line shows the page it prints on.
    EXPECT_EQ(textValues(pages, "folio").back(), "2");
    EXPECT_EQ(topsByPage(pages, "Inner"), (std::vector<std::vector<int>>{{}, {1720}}));
    EXPECT_EQ(topsByPage(pages, "Outer"), (std::vector<std::vector<int>>{{}, {1960 + 60}}));
    EXPECT_EQ(textSequence(pages).back(), "gfOuter/Note=note");
}

TEST(ReportLayout, AMemoLongerThanAPageContinuesOnTheNextPages) {
    ReportDesign d = designOf(
        "LongNotes", {pageHeader("PageHeader", 500, {label("Heading", {0, 0, 2000, 240}, "H")}),
                      detail("Detail", 240, {textBox("Memo", {0, 0, 5000, 240}, "m").grow()}),
                      pageFooter("PageFooter", 400, {label("Foot", {0, 0, 2000, 240}, "F")})});
    std::string memo;
    for (int i = 1; i <= 80; ++i)
        memo += (i > 1 ? "\r\n" : "") + ("line " + std::to_string(i));
    ListReport report(std::move(d), {"m"}, {V{memo}});
    report.run();
    const page::Pages& pages = report.pages();
    // 56 lines fit between 1220 and 14720 (the 57th would end at 14900).
    ASSERT_EQ(pages.pages.size(), 2u);
    std::vector<std::string> lines;
    for (const page::Page& page : pages.pages) {
        for (const page::TextItem& t : textsOf(page, "Memo")) {
            EXPECT_GE(t.runs.front().baseline - 180, 1220);
            EXPECT_LE(t.runs.back().baseline + 60, 14720);
            for (const page::TextRun& r : t.runs)
                lines.push_back(r.text);
        }
    }
    ASSERT_EQ(lines.size(), 80u);
    EXPECT_EQ(lines[55], "line 56");
    EXPECT_EQ(textsOf(pages.pages[0], "Memo")[0].runs.size(), 56u);
    EXPECT_EQ(textsOf(pages.pages[1], "Memo")[0].runs.front().baseline, 1220 + 180);
    EXPECT_EQ(textValues(pages, "Heading").size(), 2u);
    EXPECT_EQ(textValues(pages, "Foot").size(), 2u);
}

TEST(ReportLayout, PageBreakBeforeAndAfterSections) {
    SectionDesign header = groupHeader("gh", "g", 240, {textBox("Group", {0, 0, 1000, 240}, "g")});
    header.pageBreakBefore();
    ReportDesign d = designOf("Breaks", {reportHeader("ReportHeader", 240, {}).pageBreakAfter(),
                                         std::move(header), detail("Detail", 240, {})});
    d.sections[0].controls.push_back(label("Cover", {0, 0, 1000, 240}, "Cover"));
    ListReport report(std::move(d), {"g"}, {V{"A"}, V{"A"}, V{"B"}});
    report.run();
    ASSERT_EQ(report.pages().pages.size(), 3u);
    EXPECT_EQ(topsByPage(report.pages(), "Cover"), (std::vector<std::vector<int>>{{720}, {}, {}}));
    EXPECT_EQ(topsByPage(report.pages(), "Group"),
              (std::vector<std::vector<int>>{{}, {720}, {720}}));
}

ReportDesign labelSheet(ColumnDirection direction, int labelHeight) {
    ReportDesign d = designOf(
        "Labels", {detail("Detail", labelHeight, {textBox("txtLabel", {0, 0, 1500, 240}, "n")})
                       .columns(3, direction)});
    d.page.marginLeft = 225;
    d.page.marginRight = 0;
    d.page.marginTop = 760;
    d.page.marginBottom = 400;
    d.page.printWidth = 11910;
    return d;
}

struct Spot {
    size_t page;
    int x;
    int y;
    bool operator==(const Spot&) const = default;
};

std::vector<Spot> labelSpots(const page::Pages& pages) {
    std::vector<Spot> spots;
    for (size_t p = 0; p < pages.pages.size(); ++p) {
        for (const page::TextItem& t : textsOf(pages.pages[p], "txtLabel"))
            spots.push_back({p, t.box.x, t.box.y});
    }
    return spots;
}

TEST(ReportLayout, LabelSheetFillsAcrossThenDown) {
    ListReport report(labelSheet(ColumnDirection::AcrossThenDown, 1440), {"n"}, numberedRows(35));
    report.run();
    // Three labels of 3970 across, ten rows of 1440 down a page, then the next sheet.
    std::vector<Spot> expected;
    for (int i = 0; i < 35; ++i) {
        const int onPage = i % 30;
        expected.push_back(
            {static_cast<size_t>(i / 30), 225 + (onPage % 3) * 3970, 760 + (onPage / 3) * 1440});
    }
    EXPECT_EQ(labelSpots(report.pages()), expected);
    EXPECT_EQ(textValues(report.pages(), "txtLabel").front(), "1");
    EXPECT_EQ(textValues(report.pages(), "txtLabel").back(), "35");
}

TEST(ReportLayout, LabelSheetCanFillDownThenAcross) {
    ListReport report(labelSheet(ColumnDirection::DownThenAcross, 5000), {"n"}, numberedRows(7));
    report.run();
    // Two labels of 5000 fit the 14680-high body of a column.
    const std::vector<Spot> expected = {{0, 225, 760},   {0, 225, 5760}, {0, 4195, 760},
                                        {0, 4195, 5760}, {0, 8165, 760}, {0, 8165, 5760},
                                        {1, 225, 760}};
    EXPECT_EQ(labelSpots(report.pages()), expected);
}

TEST(ReportLayout, LandscapeAndMarginsChangedAtReportStartApply) {
    ListReport report(pagedDesign(), {"n"}, numberedRows(1));
    report.atStart = [&] {
        report.setOrientation(page::Orientation::Landscape);
        report.pageSettings().marginTop += 100;
        report.pageSettings().marginLeft -= 50;
    };
    report.run();
    const page::Pages& pages = report.pages();
    EXPECT_EQ(pages.orientation, page::Orientation::Landscape);
    EXPECT_EQ(pages.pages[0].width, 15840);
    EXPECT_EQ(pages.pages[0].height, 12240);
    EXPECT_EQ(pages.marginTop, 820);
    EXPECT_EQ(textsOf(pages.pages[0], "Heading")[0].box, (page::Rect{670, 820, 2000, 240}));
    // The footer stands on the landscape page's bottom margin.
    EXPECT_EQ(textsOf(pages.pages[0], "txtPageNumber")[0].box.y, 12240 - 720 - 400);
    EXPECT_EQ(pages.title, "Test");
}

} // namespace
} // namespace qr::engine::test
