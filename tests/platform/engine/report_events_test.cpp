// Event order, group breaks and summaries of a run, checked on the events handlers see and on
// the printed page items.
#include "platform/engine/engine_test_support.hpp"

#include <gtest/gtest.h>

namespace qr::engine::test {
namespace {

using V = std::vector<Variant>;

ReportDesign orderDesign() {
    return designOf(
        "OrderReport",
        {reportHeader("ReportHeader", 300, {label("Title", {0, 0, 3000, 240}, "Title")}),
         pageHeader("PageHeader", 300, {}),
         groupHeader("ghKind", "Kind", 300, {textBox("KindField", {0, 0, 2000, 240}, "Kind")}),
         detail("Detail", 240, {textBox("QtyField", {0, 0, 1000, 240}, "Qty")}),
         groupFooter("gfKind", "ghKind", 300, {}), pageFooter("PageFooter", 300, {}),
         reportFooter("ReportFooter", 300, {})});
}

TEST(ReportEvents, RaisedInTheOrderOfTheContract) {
    ListReport report(orderDesign(), {"Kind", "Qty"}, {V{"A", 1}, V{"A", 2}, V{"B", 3}});
    logSections(report, {"ReportHeader", "PageHeader", "ghKind", "Detail", "gfKind", "PageFooter",
                         "ReportFooter"});
    report.run();
    const std::vector<std::string> expected = {
        "initialize",          "reportStart",        "fetch 1",
        "ReportHeader.format", "ReportHeader.print", "PageHeader.format",
        "PageHeader.print",    "ghKind.format",      "ghKind.print",
        "Detail.format",       "Detail.print",       "fetch 2",
        "Detail.format",       "Detail.print",       "fetch 3",
        "gfKind.format",       "gfKind.print",       "ghKind.format",
        "ghKind.print",        "Detail.format",      "Detail.print",
        "fetch eof",           "gfKind.format",      "gfKind.print",
        "ReportFooter.format", "ReportFooter.print", "PageFooter.format",
        "PageFooter.print",    "reportEnd"};
    EXPECT_EQ(report.log, expected);

    // A second run raises the same events, without initialize.
    report.log.clear();
    report.run();
    std::vector<std::string> again(expected.begin() + 1, expected.end());
    EXPECT_EQ(report.log, again);
}

TEST(ReportEvents, ReportEndSeesCompletePagesWithPageCounts) {
    ReportDesign d = designOf(
        "PagedReport",
        {detail("Detail", 4000, {textBox("QtyField", {0, 0, 1000, 240}, "Qty")}),
         pageFooter("PageFooter", 300, {textBox("txtPageNumber", {0, 0, 3000, 240}).pageCount()})});
    ListReport report(std::move(d), {"Qty"}, {V{1}, V{2}, V{3}, V{4}, V{5}});
    std::vector<int> footerPages;
    report.onFormat("PageFooter", [&] {
        footerPages.push_back(report.pageNumber());
        report.textBox("txtPageNumber")
            .setOutputFormat("\"Page  " + std::to_string(report.pageNumber()) + " of  \"#");
    });
    std::vector<std::string> seenAtEnd;
    report.atEnd = [&] { seenAtEnd = textValues(report.pages(), "txtPageNumber"); };
    report.run();

    EXPECT_EQ(footerPages, (std::vector<int>{1, 2}));
    EXPECT_EQ(seenAtEnd, (std::vector<std::string>{"Page  1 of  2", "Page  2 of  2"}));
    EXPECT_EQ(report.pageNumber(), 2);
    const page::TextItem box = textsOf(report.pages().pages[1], "txtPageNumber").front();
    EXPECT_EQ(box.numericValue, 2.0);
    EXPECT_EQ(box.format, "\"Page  2 of  \"#");
}

// Four levels of groups; a change at one level closes and reopens every level inside it.
TEST(ReportGroups, BreakOnConsecutiveValuesAtFourLevels) {
    ReportDesign d = designOf(
        "Grouped", {groupHeader("gh1", "a", 240, {textBox("h1", {0, 0, 1000, 240}, "a")}),
                    groupHeader("gh2", "b", 240, {textBox("h2", {0, 0, 1000, 240}, "b")}),
                    groupHeader("gh3", "c", 240, {textBox("h3", {0, 0, 1000, 240}, "c")}),
                    groupHeader("gh4", "d", 240, {textBox("h4", {0, 0, 1000, 240}, "d")}),
                    detail("Detail", 240, {textBox("n", {0, 0, 1000, 240}, "n")}),
                    groupFooter("gf4", "gh4", 240, {textBox("f4", {0, 0, 1000, 240}, "d")}),
                    groupFooter("gf3", "gh3", 240, {textBox("f3", {0, 0, 1000, 240}, "c")}),
                    groupFooter("gf2", "gh2", 240, {textBox("f2", {0, 0, 1000, 240}, "b")}),
                    groupFooter("gf1", "gh1", 240, {textBox("f1", {0, 0, 1000, 240}, "a")})});
    // Rows 1 and 2 share every key; row 3 changes d; row 4 changes c; row 5 changes a only
    // (b, c, d keep their values but still start again); row 6 returns to an earlier a,
    // which is a new group because groups are consecutive runs.
    ListReport report(std::move(d), {"a", "b", "c", "d", "n"},
                      {V{"A", "B", "C", "D", "1"}, V{"A", "B", "C", "D", "2"},
                       V{"A", "B", "C", "E", "3"}, V{"A", "B", "F", "E", "4"},
                       V{"G", "B", "F", "E", "5"}, V{"A", "B", "F", "E", "6"}});
    report.run();
    const std::vector<std::string> expected = {
        "gh1/h1=A", "gh2/h2=B",   "gh3/h3=C",   "gh4/h4=D", "Detail/n=1", "Detail/n=2",
        "gf4/f4=D", "gh4/h4=E",   "Detail/n=3", "gf4/f4=E", "gf3/f3=C",   "gh3/h3=F",
        "gh4/h4=E", "Detail/n=4", "gf4/f4=E",   "gf3/f3=F", "gf2/f2=B",   "gf1/f1=A",
        "gh1/h1=G", "gh2/h2=B",   "gh3/h3=F",   "gh4/h4=E", "Detail/n=5", "gf4/f4=E",
        "gf3/f3=F", "gf2/f2=B",   "gf1/f1=G",   "gh1/h1=A", "gh2/h2=B",   "gh3/h3=F",
        "gh4/h4=E", "Detail/n=6", "gf4/f4=E",   "gf3/f3=F", "gf2/f2=B",   "gf1/f1=A"};
    EXPECT_EQ(textSequence(report.pages()), expected);
}

TEST(ReportGroups, NumbersOfDifferentTypesButEqualValueDoNotBreak) {
    ReportDesign d =
        designOf("Thickness", {groupHeader("gh", "t", 240, {textBox("h", {0, 0, 1000, 240}, "t")}),
                               detail("Detail", 240, {})});
    ListReport report(std::move(d), {"t"},
                      {V{std::int32_t{1}}, V{1.0}, V{std::int16_t{1}}, V{0.25}});
    report.run();
    EXPECT_EQ(textValues(report.pages(), "h"), (std::vector<std::string>{"1", "0.25"}));
}

TEST(ReportGroups, HeaderWithoutFieldPrintsOnceAroundAllRows) {
    ReportDesign d =
        designOf("Whole", {groupHeader("gh", "", 240, {label("h", {0, 0, 1000, 240}, "head")}),
                           detail("Detail", 240, {textBox("n", {0, 0, 1000, 240}, "n")}),
                           groupFooter("gf", "gh", 240, {label("f", {0, 0, 1000, 240}, "foot")})});
    ListReport report(std::move(d), {"n"}, {V{1}, V{2}});
    report.run();
    EXPECT_EQ(textSequence(report.pages()),
              (std::vector<std::string>{"gh/h=head", "Detail/n=1", "Detail/n=2", "gf/f=foot"}));

    report.rows().clear(); // no rows: no group at all
    report.run();
    EXPECT_TRUE(textSequence(report.pages()).empty());
}

ReportDesign summaryDesign() {
    return designOf(
        "Sums",
        {groupHeader("ghType", "type", 240, {textBox("typeName", {0, 0, 2000, 240}, "type")}),
         detail("Detail", 240, {textBox("qty", {0, 0, 1000, 240}, "qty")}),
         groupFooter(
             "gfType", "ghType", 240,
             {textBox("typeQty", {0, 0, 1000, 240}, "qty").sum("ghType"),
              textBox("typeAvg", {1000, 0, 1000, 240}, "price").average("ghType"),
              textBox("typeTotal", {2000, 0, 2000, 240}, "price").format("$#,##0.00").sum("ghType"),
              textBox("typeCount", {4000, 0, 1000, 240}, "price").count("ghType"),
              textBox("typeMin", {5000, 0, 1000, 240}, "price").minimum("ghType"),
              textBox("typeMax", {6000, 0, 1000, 240}, "price").maximum("ghType"),
              textBox("lastQty", {7000, 0, 1000, 240}, "qty")}),
         reportFooter("ReportFooter", 240,
                      {textBox("allQty", {0, 0, 1000, 240}, "qty").sum(),
                       label("otherLites", {1000, 0, 2000, 240}, "xx")})});
}

TEST(ReportSummaries, SumAverageCountPerGroupAndGrandTotal) {
    ListReport report(summaryDesign(), {"type", "qty", "price"},
                      {V{"Tempered", 2, 10.0}, V{"Tempered", 3, 20.5}, V{"Annealed", 4, 1000.0},
                       V{"Vent", 1, Variant::null()}});
    report.run();
    const page::Pages& pages = report.pages();
    EXPECT_EQ(textValues(pages, "typeQty"), (std::vector<std::string>{"5", "4", "1"}));
    EXPECT_EQ(textValues(pages, "typeAvg"), (std::vector<std::string>{"15.25", "1000", "0"}));
    EXPECT_EQ(textValues(pages, "typeTotal"),
              (std::vector<std::string>{"$30.50", "$1,000.00", "$0.00"}));
    // Null values are not counted, and leave minimum and maximum empty.
    EXPECT_EQ(textValues(pages, "typeCount"), (std::vector<std::string>{"2", "1", "0"}));
    EXPECT_EQ(textValues(pages, "typeMin"), (std::vector<std::string>{"10", "1000"}));
    EXPECT_EQ(textValues(pages, "typeMax"), (std::vector<std::string>{"20.5", "1000"}));
    // A plain bound box in a footer shows the group's last row.
    EXPECT_EQ(textValues(pages, "lastQty"), (std::vector<std::string>{"3", "4", "1"}));
    EXPECT_EQ(textValues(pages, "allQty"), (std::vector<std::string>{"10"}));

    const page::TextItem total = textsOf(pages.pages[0], "typeTotal").front();
    EXPECT_EQ(total.numericValue, 30.5);
    EXPECT_EQ(total.format, "$#,##0.00");
}

TEST(ReportSummaries, FooterHandlersReadSummaryTextsAndRunsGiveTheSameTotals) {
    ListReport report(summaryDesign(), {"type", "qty", "price"},
                      {V{"Tempered", 2, 10.0}, V{"door", 3, 5.0}});
    std::vector<std::string> formatTexts;
    std::vector<std::string> printTexts;
    report.onFormat("gfType", [&] { formatTexts.push_back(report.textBox("typeTotal").text()); });
    report.onBeforePrint("gfType",
                         [&] { printTexts.push_back(report.textBox("typeTotal").text()); });
    report.onBeforePrint("ReportFooter", [&] {
        // All lites minus door lites, read back from the grand total as printed.
        const int all = std::stoi(report.textBox("allQty").text());
        report.label("otherLites").setCaption(std::to_string(all - 3));
    });
    report.run();
    // In Format the value shows as plain text, from layout on through its output format.
    EXPECT_EQ(formatTexts, (std::vector<std::string>{"10", "5"}));
    EXPECT_EQ(printTexts, (std::vector<std::string>{"$10.00", "$5.00"}));
    EXPECT_EQ(textValues(report.pages(), "otherLites"), (std::vector<std::string>{"2"}));

    const std::string first = page::dump(report.pages());
    report.run();
    EXPECT_EQ(page::dump(report.pages()), first);
}

TEST(ReportSummaries, TextThatIsNotANumberIsRefusedNamingTheBox) {
    ListReport report(summaryDesign(), {"type", "qty", "price"}, {V{"Tempered", "many", 1.0}});
    try {
        report.run();
        FAIL() << "expected an error";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), errc::kTypeMismatch);
        EXPECT_NE(e.description().find("typeQty"), std::string::npos) << e.description();
    }
}

} // namespace
} // namespace qr::engine::test

namespace qr::engine::test {
namespace {

TEST(ReportMeasurer, TheProcessWideMeasurerServesReportsWithoutTheirOwn) {
    class Plain : public Report {
      public:
        Plain()
            : Report(designOf("Plain",
                              {detail("Detail", 240, {}),
                               reportFooter("ReportFooter", 240,
                                            {engine::label("Note", {0, 0, 2000, 240}, "abc")})})) {}
    };
    Plain report;
    setTextMeasurer(nullptr);
    try {
        report.run();
        ADD_FAILURE() << "ran without a measurer";
    } catch (const Error& e) {
        EXPECT_NE(e.description().find("No text measurer"), std::string::npos);
    }
    auto shared = std::make_shared<FixedMeasurer>();
    setTextMeasurer(shared);
    report.run();
    setTextMeasurer(nullptr);
    EXPECT_GT(shared->calls, 0);
    EXPECT_EQ(textsOf(report.pages().pages[0], "Note")[0].runs.at(0).width, 300);
}

} // namespace
} // namespace qr::engine::test
