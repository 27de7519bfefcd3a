// Bound reports: the data control, what bound controls show, what handlers change, and what
// hidden controls and sections leave out.
#include "platform/engine/engine_test_support.hpp"

#include <gtest/gtest.h>

namespace qr::engine::test {
namespace {

using V = std::vector<Variant>;

ReportDesign glassDesign() {
    return designOf(
        "GlassList",
        {reportHeader("ReportHeader", 240, {label("lJobName", {0, 0, 4000, 240}, "xx")}),
         detail("Detail", 240,
                {textBox("Field1", {0, 0, 600, 240}, "iQuantity").alignRight(),
                 textBox("Field2", {700, 0, 2000, 240}, "sGlassType"),
                 checkBox("CheckBox1", {2800, 0, 300, 240}, "brake"),
                 textBox("Field9", {3200, 0, 1000, 240}, "pSqrFt"),
                 textBox("Field8", {4300, 0, 1200, 240}, "pPrice").format("$#,##0.00"),
                 textBox("Field10", {5600, 0, 1200, 240}, "sWidth").format("#,##0.00"),
                 label("lAreaSubTotal", {7000, 0, 1200, 240}, ""),
                 textBox("Hidden", {8300, 0, 1000, 240}, "sGlassType").hidden()}),
         reportFooter("ReportFooter", 240, {label("lNote", {0, 0, 3000, 240}, "note")})});
}

MemoryRows glassRows() {
    MemoryRows rows;
    rows.tables["SELECT * FROM Glass"] =
        Table{{"iQuantity", "sGlassType", "brake", "pSqrFt", "pPrice", "sWidth"},
              {V{std::int32_t{2}, "Tempered", true, 0.5, 12.5, "36 1/2"},
               V{std::int32_t{1}, "door glass", false, 12.0, 1234.5, "1234.5"},
               V{Variant::null(), Variant::null(), Variant::null(), Variant::null(), 0.0, ""}}};
    return rows;
}

class GlassList : public Report {
  public:
    explicit GlassList(MemoryRows& rows, ReportDesign design = glassDesign())
        : Report(std::move(design)), m_rows(rows) {
        setTextMeasurer(std::make_shared<FixedMeasurer>());
        onFormat("Detail", &GlassList::detailFormat);
    }
    using Report::onBeforePrint;
    using Report::onFormat;

    long countAtStart = -1;
    Variant firstTypeAtStart;
    std::vector<std::string> fetched;
    std::function<void()> atStart;
    std::function<void()> atFetch;

  protected:
    void reportStart() override {
        dataControl().setConnection(&m_rows);
        dataControl().setCursorType(CursorType::Static);
        dataControl().setLockType(LockType::Optimistic);
        dataControl().setSource("SELECT * FROM Glass");
        dataControl().refresh();
        RowCursor* glassRows = dataControl().recordset();
        countAtStart = glassRows->recordCount();
        firstTypeAtStart = glassRows->value("SGLASSTYPE");
        label("lJobName").setCaption("Job 7");
        if (atStart)
            atStart();
    }
    void fetchData(bool& eof) override {
        EXPECT_FALSE(eof);
        const Variant& type = fields()["SGLASSTYPE"].value();
        fetched.push_back(type.isNull() ? "<null>" : type.asString());
        if (atFetch)
            atFetch();
    }

  private:
    void detailFormat() {
        const Variant area = fields()["psqrft"].value();
        label("lAreaSubTotal").setCaption(area.isNull() ? "-" : formatValue(area, "##,###.00"));
    }
    MemoryRows& m_rows;
};

TEST(BoundReport, DataControlOpensTheSourceAndBoundControlsShowTheRows) {
    MemoryRows rows = glassRows();
    GlassList report(rows);
    report.run();

    EXPECT_EQ(rows.lastCursor, CursorType::Static);
    EXPECT_EQ(rows.lastLock, LockType::Optimistic);
    EXPECT_EQ(report.countAtStart, 3);
    EXPECT_EQ(report.firstTypeAtStart, Variant("Tempered"));
    EXPECT_EQ(report.fetched, (std::vector<std::string>{"Tempered", "door glass", "<null>"}));

    const std::string expected = "page 1 of 1\n"
                                 "text  ReportHeader/lJobName [720,720 4000x240] L \"Job 7\"\n"
                                 "text  Detail/Field1 [720,960 600x240] R \"2\"\n"
                                 "text  Detail/Field2 [1420,960 2000x240] L \"Tempered\"\n"
                                 "check Detail/CheckBox1 [3520,980 200x200] x\n"
                                 "text  Detail/Field9 [3920,960 1000x240] L \"0.5\"\n"
                                 "text  Detail/Field8 [5020,960 1200x240] L \"$12.50\"\n"
                                 "text  Detail/Field10 [6320,960 1200x240] L \"36 1/2\"\n"
                                 "text  Detail/lAreaSubTotal [7720,960 1200x240] L \".50\"\n"
                                 "text  Detail/Field1 [720,1200 600x240] R \"1\"\n"
                                 "text  Detail/Field2 [1420,1200 2000x240] L \"door glass\"\n"
                                 "check Detail/CheckBox1 [3520,1220 200x200] -\n"
                                 "text  Detail/Field9 [3920,1200 1000x240] L \"12\"\n"
                                 "text  Detail/Field8 [5020,1200 1200x240] L \"$1,234.50\"\n"
                                 "text  Detail/Field10 [6320,1200 1200x240] L \"1,234.50\"\n"
                                 "text  Detail/lAreaSubTotal [7720,1200 1200x240] L \"12.00\"\n"
                                 "check Detail/CheckBox1 [3520,1460 200x200] -\n"
                                 "text  Detail/Field8 [5020,1440 1200x240] L \"$0.00\"\n"
                                 "text  Detail/lAreaSubTotal [7720,1440 1200x240] L \"-\"\n"
                                 "text  ReportFooter/lNote [720,1680 3000x240] L \"note\"\n";
    EXPECT_EQ(page::dump(report.pages()), expected);

    // Numbers shown through a format carry the number and the format for the workbook; text
    // does not.
    const page::Page& page = report.pages().pages[0];
    EXPECT_EQ(textsOf(page, "Field8")[1].numericValue, 1234.5);
    EXPECT_EQ(textsOf(page, "Field8")[1].format, "$#,##0.00");
    EXPECT_FALSE(textsOf(page, "Field2")[0].numericValue.has_value());
    // Runs are placed: right alignment measured with the measurer (1 character = 100 twips).
    const page::TextRun run = textsOf(page, "Field1")[0].runs.at(0);
    EXPECT_EQ(run, (page::TextRun{720 + 600 - 100, 960 + 180, 100, "2"}));
}

TEST(BoundReport, HandlerTextWinsForItsRowAndBindingResumesOnTheNext) {
    MemoryRows rows = glassRows();
    GlassList report(rows);
    int row = 0;
    // Text set in fetchData (before the section formats) and in Format both win for that row.
    report.atFetch = [&] {
        if (++row == 1)
            report.textBox("Field2").setText("set in fetch");
    };
    report.onFormat("Detail", [&] {
        if (row == 2)
            report.textBox("Field9").setText("set in format");
        if (row == 2)
            report.checkBox("CheckBox1").setChecked(true);
    });
    report.run();
    EXPECT_EQ(textValues(report.pages(), "Field2"),
              (std::vector<std::string>{"set in fetch", "door glass"}));
    EXPECT_EQ(textValues(report.pages(), "Field9"),
              (std::vector<std::string>{"0.5", "set in format"}));
    EXPECT_NE(page::dump(report.pages()).find("check Detail/CheckBox1 [3520,1220 200x200] x"),
              std::string::npos);
}

TEST(BoundReport, RebindingAndReopeningTheSourceShowTheNewValues) {
    MemoryRows rows = glassRows();
    GlassList report(rows);
    report.atStart = [&] {
        report.textBox("Field2").setDataField("sWidth");
        // The table changes after the first open; a second refresh re-reads it.
        rows.tables["SELECT * FROM Glass"].rows.resize(1);
        report.dataControl().refresh();
    };
    report.run();
    EXPECT_EQ(rows.opens, 2);
    EXPECT_EQ(textValues(report.pages(), "Field2"), (std::vector<std::string>{"36 1/2"}));

    // A second run opens the source again and prints the same pages.
    const std::string first = page::dump(report.pages());
    report.run();
    EXPECT_EQ(rows.opens, 4);
    EXPECT_EQ(page::dump(report.pages()), first);
}

// Rows are read by column position once the columns are bound: in any column order, and of
// two columns of one name (any case) the first feeds the field.
TEST(BoundReport, FieldsFollowTheirColumnsInAnyOrderAndTheFirstOfANameWins) {
    MemoryRows rows = glassRows();
    Table& table = rows.tables["SELECT * FROM Glass"];
    table.columns = {"sWidth", "pPrice", "SGLASSTYPE", "pSqrFt", "brake", "iQuantity", "sGlassType"};
    for (auto& row : table.rows) {
        row = V{row[5], row[4], row[1], row[3], row[2], row[0], "second of the name"};
    }
    GlassList report(rows);
    report.run();
    EXPECT_EQ(textValues(report.pages(), "Field1"), (std::vector<std::string>{"2", "1"}));
    EXPECT_EQ(textValues(report.pages(), "Field2"),
              (std::vector<std::string>{"Tempered", "door glass"}));
    EXPECT_EQ(textValues(report.pages(), "Field10"),
              (std::vector<std::string>{"36 1/2", "1,234.50"}));
}

TEST(BoundReport, HiddenControlsAndSectionsAreAbsentButTheirEventsStillRun) {
    MemoryRows rows = glassRows();
    GlassList report(rows);
    int footerFormats = 0;
    report.atStart = [&] {
        report.control("Field9").setVisible(false);
        report.section("ReportFooter").setVisible(false);
    };
    report.onFormat("ReportFooter", [&] { ++footerFormats; });
    report.run();
    const std::string dump = page::dump(report.pages());
    EXPECT_EQ(dump.find("Field9"), std::string::npos);
    EXPECT_EQ(dump.find("Hidden"), std::string::npos);
    EXPECT_EQ(dump.find("ReportFooter"), std::string::npos);
    EXPECT_EQ(footerFormats, 1);

    // Shown again, a control prints again (the run-time settings persist until changed).
    report.atStart = [&] { report.control("Hidden").setVisible(true); };
    report.run();
    EXPECT_EQ(textValues(report.pages(), "Hidden"),
              (std::vector<std::string>{"Tempered", "door glass"}));
    EXPECT_TRUE(textValues(report.pages(), "Field9").empty());
}

TEST(BoundReport, WrongSetUpIsReportedNamingWhatIsWrong) {
    struct Case {
        const char* what;
        std::function<void(Report&, MemoryRows&)> setUp;
        int number;
        const char* mentions;
    };
    const std::vector<Case> cases = {
        {"no connection", [](Report& r, MemoryRows&) { r.dataControl().setConnection(nullptr); },
         errc::kObjectNotSet, "GlassList"},
        {"group on a missing column",
         [](Report& r, MemoryRows&) { r.section("ghType").setGroupField("sNoSuchColumn"); },
         errc::kComponent, "sNoSuchColumn"},
        {"unknown control", [](Report& r, MemoryRows&) { r.textBox("Field99"); }, errc::kComponent,
         "Field99"},
        {"label asked as a text box", [](Report& r, MemoryRows&) { r.textBox("lAreaSubTotal"); },
         errc::kComponent, "lAreaSubTotal is a label"},
        {"unknown field", [](Report& r, MemoryRows&) { r.fields()["nothing"]; },
         errc::kSubscriptOutOfRange, "nothing"},
        {"bad output format",
         [](Report& r, MemoryRows&) { r.textBox("Field8").setOutputFormat("0.00\\"); },
         errc::kComponent, "Field8"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        MemoryRows rows = glassRows();
        ReportDesign d = glassDesign();
        d.sections.insert(d.sections.begin() + 1, groupHeader("ghType", "", 0, {}));
        GlassList report(rows, std::move(d));
        report.atStart = [&] {
            c.setUp(report, rows);
            report.dataControl().refresh();
        };
        try {
            report.run();
            ADD_FAILURE() << "expected an error";
        } catch (const Error& e) {
            EXPECT_EQ(e.number(), c.number);
            EXPECT_NE(e.description().find(c.mentions), std::string::npos) << e.description();
        }
    }
}

} // namespace
} // namespace qr::engine::test
