// Sub-reports: run inside their section each time it formats, with the inputs a handler sets
// per parent row; their bands grow the section and may continue on the next page.
#include "platform/core/convert.hpp"
#include "platform/engine/engine_test_support.hpp"

#include <gtest/gtest.h>

namespace qr::engine::test {
namespace {

using V = std::vector<Variant>;

ReportDesign childDesign() {
    return designOf(
        "ItemsSub",
        {reportHeader("ReportHeader", 240, {label("SubTitle", {0, 0, 2000, 240}, "Items")}),
         pageHeader("PageHeader", 240, {label("ChildHeading", {0, 0, 2000, 240}, "never")}),
         detail("Detail", 240, {textBox("Item", {0, 0, 2000, 240}, "item")}),
         pageFooter("PageFooter", 240, {textBox("ChildPages", {0, 0, 2000, 240}).pageCount()})});
}

ReportDesign parentDesign() {
    return designOf("Elevations", {detail("Detail", 480,
                                          {textBox("ElevName", {0, 0, 3000, 240}, "name"),
                                           subReport("Sub", {500, 240, 6000, 240}),
                                           textBox("Pages", {7000, 240, 2000, 240}).pageCount()}),
                                   pageFooter("PageFooter", 240, {})});
}

std::vector<V> itemsFor(int count) {
    std::vector<V> rows;
    for (int i = 1; i <= count; ++i)
        rows.push_back(V{"item " + std::to_string(i)});
    return rows;
}

TEST(SubReport, RunsForEachParentRowAndGrowsTheSection) {
    ListReport parent(parentDesign(), {"name", "count"},
                      {V{"North", 1}, V{"South", 2}, V{"East", 0}});
    ListReport child(childDesign(), {"item"}, {});
    parent.atStart = [&] { parent.subReport("Sub").setReport(&child); };
    parent.onFormat("Detail",
                    [&] { child.rows() = itemsFor(toLong(parent.fields()["count"].value())); });
    parent.run();

    EXPECT_EQ(std::count(child.log.begin(), child.log.end(), "initialize"), 1);
    EXPECT_EQ(std::count(child.log.begin(), child.log.end(), "reportStart"), 3);
    EXPECT_EQ(std::count(child.log.begin(), child.log.end(), "reportEnd"), 3);

    const std::vector<std::string> expected = {
        "Detail/ElevName=North", "ReportHeader/SubTitle=Items", "Detail/Item=item 1",
        "Detail/Pages=1",        "Detail/ElevName=South",       "ReportHeader/SubTitle=Items",
        "Detail/Item=item 1",    "Detail/Item=item 2",          "Detail/Pages=1",
        "Detail/ElevName=East",  "ReportHeader/SubTitle=Items", "Detail/Pages=1"};
    EXPECT_EQ(textSequence(parent.pages()), expected);

    // Strips stand inside the box (x 720 + 500); each parent band grows by what its strip
    // needs beyond the box's 240.
    const page::Page& page = parent.pages().pages[0];
    std::vector<int> names, titles, items;
    for (const page::TextItem& t : textsOf(page, "ElevName"))
        names.push_back(t.box.y);
    for (const page::TextItem& t : textsOf(page, "SubTitle"))
        titles.push_back(t.box.y);
    for (const page::TextItem& t : textsOf(page, "Item"))
        items.push_back(t.box.y);
    EXPECT_EQ(names, (std::vector<int>{720, 1440, 2400}));
    EXPECT_EQ(titles, (std::vector<int>{960, 1680, 2640}));
    EXPECT_EQ(items, (std::vector<int>{1200, 1920, 2160}));
    EXPECT_EQ(textsOf(page, "Item")[0].box.x, 1220);
}

TEST(SubReport, LongSubReportContinuesOnTheNextPageAndResolvesItsPageCount) {
    ListReport parent(parentDesign(), {"name", "count"}, {V{"Tall", 100}});
    auto child = std::make_unique<ListReport>(childDesign(), std::vector<std::string>{"item"},
                                              itemsFor(100));
    child->onFormat("ReportHeader", [c = child.get()] {
        c->label("SubTitle").setCaption("page " + std::to_string(c->pageNumber()));
    });
    parent.atStart = [&] { parent.subReport("Sub").setReport(std::move(child)); };
    parent.run();

    const page::Pages& pages = parent.pages();
    ASSERT_EQ(pages.pages.size(), 2u);
    EXPECT_EQ(textValues(pages, "SubTitle"), (std::vector<std::string>{"page 1"}));
    const std::vector<std::string> items = textValues(pages, "Item");
    ASSERT_EQ(items.size(), 100u);
    EXPECT_EQ(items.front(), "item 1");
    EXPECT_EQ(items.back(), "item 100");
    for (const page::Page& page : pages.pages) {
        for (const page::TextItem& t : textsOf(page, "Item")) {
            EXPECT_GE(t.box.y, 720);
            EXPECT_LE(t.box.y + t.box.height, 15840 - 720 - 240);
        }
    }
    // The page count inside the strip is the parent's total.
    EXPECT_EQ(textValues(pages, "ChildPages").size(), 0u); // child page footers never print
    EXPECT_EQ(textValues(pages, "Pages"), (std::vector<std::string>{"2"}));
}

TEST(SubReport, ATextCutInsideASubReportIsListedWithThePageItPrintsOn) {
    ListReport parent(parentDesign(), {"name", "count"}, {V{"Tall", 100}});
    std::vector<V> rows = itemsFor(100);
    rows.back() = V{"item 100 has a long note"}; // two lines in a one-line box
    auto child =
        std::make_unique<ListReport>(childDesign(), std::vector<std::string>{"item"}, rows);
    parent.atStart = [&] { parent.subReport("Sub").setReport(std::move(child)); };
    parent.run();
    ASSERT_EQ(parent.pages().pages.size(), 2u);
    const std::vector<page::CutText> expected = {
        {2, "Item", "Detail", "item 100 has a long note", "item 100 has a long", false}};
    EXPECT_EQ(parent.pages().cutTexts, expected);
}

TEST(SubReport, AReportThatContainsItselfIsRefused) {
    ListReport parent(parentDesign(), {"name", "count"}, {V{"Loop", 1}});
    parent.atStart = [&] { parent.subReport("Sub").setReport(&parent); };
    try {
        parent.run();
        FAIL() << "expected an error";
    } catch (const Error& e) {
        EXPECT_NE(e.description().find("already running"), std::string::npos) << e.description();
    }
    // The failed run leaves the object usable.
    parent.atStart = [&] { parent.subReport("Sub").setReport(nullptr); };
    parent.run();
    EXPECT_EQ(textValues(parent.pages(), "ElevName"), (std::vector<std::string>{"Loop"}));
}

} // namespace
} // namespace qr::engine::test
