// The glass cut listing and the four glass label sheets on SQLite and PostgreSQL: what each
// prints from the glass cut table, in which order, on how many pages; the sample job; an empty
// and a missing table; and the label offsets as the requests apply them.

#include "platform/core/convert.hpp"
#include "platform/core/system_formats.hpp"
#include "platform/host/module_state.hpp"
#include "reports/common/label_sheet.hpp"
#include "reports/glass/glass_cut_reports.hpp"
#include "reports/support/cost_fixture.hpp"
#include "reports/support/label_geometry.hpp"

#include <functional>
#include <memory>

namespace qr::test {
namespace {

using data::ReportTableKind;

struct CutRow {
    const char* elevation;
    int elevationSort;
    const char* label;
    const char* description;
    const char* glassType;
    const char* partType;
    const char* width;
    const char* leftHeight;
    const char* rightHeight;
};

// Written in this order, which is neither elevation nor label order.
const std::vector<CutRow> kScrambled = {
    {"North Wall", 2, "N-B1", "1\" Insulated Low-E Clear", "Tempered", "Door", "36", "84", ""},
    {"East Wall", 1, "E-A2", "1/4\" Clear", "Annealed", "Frame", "48 1/4", "96 5/8", ""},
    {"North Wall", 2, "N-A1", "1\" Insulated Spandrel", "Spandrel", "Panel", "30", "22 7/16", ""},
    {"West Wall", 3, "W-A1", "1/4\" Bronze", "Heat Strengthened", "Vent", "24", "30", "36 1/2"},
    {"East Wall", 1, "E-A1", "1/4\" Clear", "Annealed", "Frame", "48 1/4", "96 5/8", ""},
};

class GlassCutReportsTest : public CostReportTest {
  protected:
    void writeTable(const std::string& table, const std::vector<CutRow>& rows) {
        createReportTable(ReportTableKind::GlassCut, table);
        std::vector<std::vector<Variant>> values;
        for (const CutRow& r : rows)
            values.push_back({Variant("Harbor Point"), Variant(r.elevation),
                              Variant(static_cast<std::int32_t>(r.elevationSort)), Variant(r.label),
                              Variant(r.description), Variant(r.glassType), Variant(r.partType),
                              Variant(r.width), Variant(r.leftHeight), Variant(r.rightHeight)});
        db::Transaction transaction(vendor());
        vendor().executeMany("INSERT INTO " + table +
                                 " (sJobname, sElevName, iElevSort, sLabel, sDescription, "
                                 "sGlassType, sPartType, sWidth, sLeftHeight, sRightHeight) "
                                 "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                             values);
        transaction.commit();
    }
    void setStoredOffsets(int top, int left) {
        master().execute("DELETE FROM UserSettings WHERE UserID=1");
        master().execute("INSERT INTO UserSettings (UserID, sName, iValue) VALUES (1, 'LblTop', " +
                         std::to_string(top) + "), (1, 'LblLeft', " + std::to_string(left) + ")");
    }
    long count(const std::string& sql) { return toLong(vendorValue(sql, "n")); }
};

struct LabelReport {
    const char* className;
    std::function<std::unique_ptr<engine::Report>()> make;
    const reports::LabelSheet* sheet;
    const char* title;
    const char* firstLineLeft; ///< the box left on the first line: it shows each label's mark
};

const std::vector<LabelReport>& labelReports() {
    using namespace reports;
    static const std::vector<LabelReport> reports = {
        {"arAvery5260GlassLabels", [] { return std::make_unique<arAvery5260GlassLabels>(); },
         &kAvery5260, "Avery 5260 Glass Label", "txtLabel"},
        {"arAvery5267AGlassLabels", [] { return std::make_unique<arAvery5267AGlassLabels>(); },
         &kAvery5267, "Avery 5267 Glass Label #1", "txtLabel"},
        {"arAvery5267BGlassLabels", [] { return std::make_unique<arAvery5267BGlassLabels>(); },
         &kAvery5267, "Avery 5267 Glass Label #2", "txtLabel"},
        {"arAvery5267CGlassLabels", [] { return std::make_unique<arAvery5267CGlassLabels>(); },
         &kAvery5267, "Avery 5267Glass Label #3", "txtGlassType"},
    };
    return reports;
}

TEST_P(GlassCutReportsTest, TheSampleJobFillsMoreThanOneSheetOfEachStock) {
    loadSample();
    setRequest("GlassCutReport1", 1);
    const long lites = count("SELECT COUNT(*) AS n FROM GlassCutReport1");
    ASSERT_GT(lites, reports::kAvery5267.labelsPerSheet());
    for (const LabelReport& r : labelReports()) {
        SCOPED_TRACE(r.className);
        auto report = r.make();
        const page::Pages& pages = run(*report);
        EXPECT_EQ(pages.title, r.title);
        EXPECT_EQ(static_cast<long>(pages.pages.size()),
                  (lites + r.sheet->labelsPerSheet() - 1) / r.sheet->labelsPerSheet());
        EXPECT_EQ(static_cast<long>(costTexts(pages, r.firstLineLeft).size()), lites);
        EXPECT_EQ(static_cast<long>(costTexts(pages, "txtElevation").size()), lites);
    }
}

TEST_P(GlassCutReportsTest, TheSampleCutListingRunsOverPagesInTheTablesOrder) {
    loadSample();
    setRequest("GlassCutReport1", 1);
    reports::AR2GlassCutListings report;
    const page::Pages& pages = run(report);
    EXPECT_EQ(pages.title, "Glass Cut Sheet in List Format");
    ASSERT_GE(pages.pages.size(), 2u);
    EXPECT_GT(count("SELECT COUNT(DISTINCT sElevName) AS n FROM GlassCutReport1"), 3);

    std::vector<std::string> stored;
    for (auto rows = vendor().openRecordset("Select * from GlassCutReport1"); !rows->eof();
         rows->moveNext())
        stored.push_back(toText(rows->value("sLabel")));
    EXPECT_EQ(costTexts(pages, "txtLabel"), stored);

    const std::string of = " of  " + std::to_string(pages.pages.size());
    EXPECT_EQ(costTexts(pages, "txtPageNumber").front(), "Page  1" + of);
    EXPECT_EQ(costTexts(pages, "txtPageNumber").back(),
              "Page  " + std::to_string(pages.pages.size()) + of);
    // The heading repeats on every page, its job name from the table.
    EXPECT_EQ(costTexts(pages, "Label1").size(), pages.pages.size());
    EXPECT_EQ(costTexts(pages, "txtJobname").front(), "Riverside Medical Office Building");
}

TEST_P(GlassCutReportsTest, LabelsSortByElevationThenLabelWhileTheListKeepsTheTablesOrder) {
    writeTable("GlassCutScrambled", kScrambled);
    setRequest("GlassCutScrambled", 0);
    const std::vector<std::string> labelOrder = {"E-A1", "E-A2", "N-A1", "N-B1", "W-A1"};
    for (const LabelReport& r : labelReports()) {
        if (std::string(r.firstLineLeft) != "txtLabel")
            continue;
        SCOPED_TRACE(r.className);
        auto report = r.make();
        EXPECT_EQ(costTexts(run(*report), "txtLabel"), labelOrder);
    }
    reports::arAvery5267CGlassLabels variantC;
    EXPECT_EQ(costTexts(run(variantC), "txtGlassType"),
              (std::vector<std::string>{"Annealed", "Annealed", "Spandrel", "Tempered",
                                        "Heat Strengthened"}));

    reports::AR2GlassCutListings list;
    EXPECT_EQ(costTexts(run(list), "txtLabel"),
              (std::vector<std::string>{"N-B1", "E-A2", "N-A1", "W-A1", "E-A1"}));
}

TEST_P(GlassCutReportsTest, EachReportShowsItsCaptionsAndTheRowAsStored) {
    writeTable("GlassCutOne", {kScrambled[3]});
    setRequest("GlassCutOne", 0);
    using Shown = std::vector<std::pair<const char*, const char*>>;
    const Shown sizes = {{"txtWidth", "24"}, {"txtLeftHeight", "30"}, {"txtRightHeight", "36 1/2"}};
    const Shown elevation = {{"Label2", "E:"}, {"txt", "3"}, {"txtElevation", "West Wall"}};
    struct Case {
        std::function<std::unique_ptr<engine::Report>()> make;
        Shown shown;
    };
    const std::vector<Case> cases = {
        {labelReports()[0].make,
         {{"txtLabel", "W-A1"},
          {"txtGlassType", "Heat Strengthened"},
          {"PartType", "Vent"},
          {"Label2", "Cut:"},
          {"Label3", "Descr:"},
          {"txtDescription", "1/4\" Bronze"},
          {"Label5", "Elev:"},
          {"txt", "3"},
          {"txtElevation", "West Wall"},
          {"Label4", "Job:"},
          {"txtJobname", "Harbor Point"}}},
        {labelReports()[1].make, {{"txtLabel", "W-A1"}, {"txtDescription", "1/4\" Bronze"}}},
        {labelReports()[2].make, {{"txtLabel", "W-A1"}, {"txtGlassType", "Heat Strengthened"}}},
        {labelReports()[3].make,
         {{"txtGlassType", "Heat Strengthened"}, {"txtDescription", "1/4\" Bronze"}}},
        {[] { return std::make_unique<reports::AR2GlassCutListings>(); },
         {{"Label1", "Glass Cut Listing Report"},
          {"Label8", "Job  Name:"},
          {"txtJobname", "Harbor Point"},
          {"Label2", "Glass Label"},
          {"Label3", "Glass Type"},
          {"Label4", "Part Type"},
          {"Label5", "Width"},
          {"Label6", "L Height"},
          {"Label7", "R Height"},
          {"Label9", "Description"},
          {"Label10", "Elevation"},
          {"txtLabel", "W-A1"},
          {"txtGlassType", "Heat Strengthened"},
          {"PartType", "Vent"},
          {"txtDescription", "1/4\" Bronze"},
          {"txtElevation", "West Wall"},
          {"RptDate", "3/15/2024"},
          {"RptTime", "2:05 PM"},
          {"txtPageNumber", "Page  1 of  1"}}},
    };
    for (const Case& c : cases) {
        auto report = c.make();
        SCOPED_TRACE(report->className());
        const page::Pages& pages = run(*report);
        Shown all = c.shown;
        all.insert(all.end(), sizes.begin(), sizes.end());
        if (report->className() != "arAvery5260GlassLabels" &&
            report->className() != "AR2GlassCutListings")
            all.insert(all.end(), elevation.begin(), elevation.end());
        for (const auto& [control, text] : all)
            EXPECT_EQ(costText(pages, control), text) << control;
    }
}

TEST_P(GlassCutReportsTest, AnEmptyTablePrintsAnEmptySheetOrTheListsHeadingAlone) {
    createReportTable(ReportTableKind::GlassCut, "GlassCutEmpty");
    setRequest("GlassCutEmpty", 0);
    for (const LabelReport& r : labelReports()) {
        auto report = r.make();
        const page::Pages& pages = run(*report);
        ASSERT_EQ(pages.pages.size(), 1u) << r.className;
        EXPECT_EQ(pages.pages[0].items.size(), 0u) << r.className;
    }
    reports::AR2GlassCutListings list;
    const page::Pages& pages = run(list);
    ASSERT_EQ(pages.pages.size(), 1u);
    EXPECT_EQ(costText(pages, "Label1"), "Glass Cut Listing Report");
    EXPECT_TRUE(costTexts(pages, "txtLabel").empty());
    EXPECT_TRUE(shownMessages().empty());
}

TEST_P(GlassCutReportsTest, AMissingTableIsShownNamingTheReportAndTheSheetStillPrints) {
    setRequest("NoSuchGlassTable", 0);
    reports::arAvery5267BGlassLabels report;
    const page::Pages& pages = run(report);
    EXPECT_EQ(pages.pages.size(), 1u);
    const std::vector<std::string> shown = shownMessages();
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(shown[0].rfind("Quarvex Error: Description: ", 0), 0u) << shown[0];
    EXPECT_NE(shown[0].find("\r\nModule: arAvery5267BGlassLabels\r\nFunction: "
                            "ActiveReport_ReportStart"),
              std::string::npos)
        << shown[0];
}

TEST_P(GlassCutReportsTest, ASecondRunDoesNotAddTheOffsetsAgain) {
    writeTable("GlassCutScrambled", kScrambled);
    setRequest("GlassCutScrambled", 0);
    host::moduleState().labelTopOffset = 100;
    host::moduleState().labelLeftOffset = -50;
    reports::arAvery5260GlassLabels report;
    for (int print = 1; print <= 2; ++print) {
        const page::Pages& pages = run(report);
        EXPECT_EQ(pages.marginTop, reports::kLabelOriginTop + 100) << "print " << print;
        EXPECT_EQ(pages.marginLeft, reports::kLabelOriginLeft - 50) << "print " << print;
    }
}

TEST_P(GlassCutReportsTest, TheListMovesByTheOffsetsTheLastLabelRequestLeft) {
    writeTable("GlassCutScrambled", kScrambled);
    setStoredOffsets(120, -60);
    const std::string tail = " GlassCutScrambled false 1 1 false false false |x |";
    const auto before = pdfWords(printRequest("ar2glasscutlistings" + tail));
    printRequest("aravery5267aglasslabels" + tail);
    const auto after = pdfWords(printRequest("ar2glasscutlistings" + tail));
    ASSERT_FALSE(before.empty());
    expectWordsMovedBy(before, after, 120, -60);
    EXPECT_TRUE(shownMessages().empty()) << shownMessages().front();
}

INSTANTIATE_TEST_SUITE_P(Backends, GlassCutReportsTest,
                         ::testing::Values(CostBackend::SQLite, CostBackend::PostgreSQL),
                         costBackendName);

} // namespace
} // namespace qr::test
