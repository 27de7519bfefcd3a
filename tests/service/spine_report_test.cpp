// The whole spine with a small report of its own: groups, group summaries, a grand total, a
// sub-report, page N of M, run through the typed-method mechanism, printed to a file, and
// exported to a workbook and a PDF that independent readers read back.

#include "platform/core/convert.hpp"
#include "platform/engine/report.hpp"
#include "reports/common/page_footer.hpp"
#include "reports/common/print_reports.hpp"
#include "service/component.hpp"
#include "service/run_sequence.hpp"
#include "support/host/recording_host.hpp"
#include "support/readers/file_readers.hpp"
#include "support/temp_dir.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace qr::service {
namespace {

using namespace engine;

ReportDesign notesDesign() {
    return {"NotesSub",
            "Notes",
            PageSettings{},
            {detail("Detail", 240, {textBox("txtNote", {0, 0, 6000, 240}, "sNote")})}};
}

// Notes printed below the totals, one line per note: runs inside the report footer.
class NotesSub : public Report {
  public:
    NotesSub() : Report(notesDesign()) {}
    std::vector<std::string> notes;

  protected:
    void initialize() override { fields().add("sNote"); }
    void reportStart() override { m_next = 0; }
    void fetchData(bool& eof) override {
        if (m_next >= notes.size()) {
            eof = true;
            return;
        }
        fields()["sNote"].setValue(notes[m_next++]);
        eof = false;
    }

  private:
    size_t m_next = 0;
};

ReportDesign glassListDesign() {
    PageSettings page;
    page.marginLeft = page.marginRight = page.marginTop = page.marginBottom = 720;
    page.printWidth = 10800;
    return {
        "SpineGlassList",
        "Spine Glass List",
        page,
        {pageHeader("PageHeader", 300,
                    {label("lQty", {0, 0, 900, 240}, "Qty").alignRight(),
                     label("lType", {1200, 0, 2400, 240}, "Type"),
                     label("lArea", {7000, 0, 1500, 240}, "Area").alignRight()}),
         groupHeader("TypeHeader", "sGlassType", 300,
                     {textBox("txtType", {0, 0, 4000, 240}, "sGlassType").bold()}),
         detail(
             "Detail", 240,
             {textBox("txtQty", {0, 0, 900, 240}, "iQuantity").alignRight(),
              textBox("txtSize", {1200, 0, 2400, 240}, "sSize"),
              textBox("txtArea", {7000, 0, 1500, 240}, "pSqrFt").format("##,###.00").alignRight()}),
         groupFooter(
             "TypeFooter", "TypeHeader", 300,
             {textBox("txtTypeQty", {0, 0, 900, 240}, "iQuantity").sum("TypeHeader").alignRight(),
              textBox("txtTypeArea", {7000, 0, 1500, 240}, "pSqrFt")
                  .sum("TypeHeader")
                  .format("###,###.00")
                  .alignRight()}),
         pageFooter("PageFooter", 300,
                    {textBox("txtPageNumber", {7000, 0, 3000, 240}).pageCount().alignRight()}),
         reportFooter("ReportFooter", 600,
                      {textBox("txtAllLites", {0, 0, 900, 240}, "iQuantity").sum().alignRight(),
                       subReport("Notes", {1200, 300, 8000, 240})})}};
}

class SpineGlassList : public Report {
  public:
    SpineGlassList() : Report(glassListDesign()) {
        onFormat("PageFooter", &SpineGlassList::pageFooterFormat);
    }
    bool ShouldExportToExcel = false;
    bool ShouldExportToPdf = false;
    std::string JobName;
    int lines = 0;
    static inline page::Pages lastPages; // what the last run printed, kept past the release

  protected:
    void initialize() override {
        for (const char* name : {"sGlassType", "iQuantity", "sSize", "pSqrFt"})
            fields().add(name);
    }
    void reportStart() override {
        m_row = 0;
        m_notes.notes = {"Glass is priced by block size.", "Door lites are listed with doors."};
        subReport("Notes").setReport(&m_notes);
    }
    void fetchData(bool& eof) override {
        if (m_row >= lines) {
            eof = true;
            return;
        }
        static const char* kTypes[] = {"Annealed", "Tempered", "Spandrel"};
        fields()["sGlassType"].setValue(kTypes[m_row * 3 / lines]);
        fields()["iQuantity"].setValue(std::int32_t(m_row % 4 + 1));
        fields()["sSize"].setValue(std::to_string(24 + m_row % 30) + " 1/2 x 60");
        fields()["pSqrFt"].setValue(0.5 + m_row % 7);
        ++m_row;
        eof = false;
    }
    void pageFooterFormat() { reports::showPageOfPages(textBox("txtPageNumber"), pageNumber()); }
    void reportEnd() override {
        lastPages = pages();
        reports::exportAtReportEnd(pages(), JobName, ShouldExportToExcel, ShouldExportToPdf,
                                   {"-Spine.xls", "-Spine.pdf"});
    }

  private:
    int m_row = 0;
    NotesSub m_notes;
};

std::string collapseBlanks(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == ' ' && !out.empty() && out.back() == ' ')
            continue;
        out += c;
    }
    return out;
}

class Spine : public ::testing::Test {
  protected:
    void SetUp() override {
        addReportClass("SpineGlassList", [] { return std::make_unique<SpineGlassList>(); });
        initializeComponent();
        ::setenv("QUARVEX_PRINTER", ("file:" + (dir / "printed.pdf").string()).c_str(), 1);
        host::moduleState().vendorPath = (dir / "vendor").string();
    }
    void TearDown() override {
        ::unsetenv("QUARVEX_PRINTER");
        releaseReportObject("SpineGlassList");
    }
    test::TempDir dir;
    test::RecordingHost recording;
};

TEST_F(Spine, PrintsAndExportsAGroupedListThatReadersReadBack) {
    runTypedMethod<SpineGlassList>("PrintSpine", "SpineGlassList", false, [](SpineGlassList& r) {
        r.lines = 150;
        r.JobName = "Medical Office";
        r.ShouldExportToExcel = true;
        r.ShouldExportToPdf = true;
    });
    ASSERT_TRUE(recording.messages->shown.empty()) << recording.messages->shown[0].text;

    const auto folder = dir / "vendor" / "Jobs" / "Medical Office" / "Reports";
    const auto pdf = folder / "Medical Office-Spine.pdf";
    const auto xls = folder / "Medical Office-Spine.xls";
    ASSERT_TRUE(std::filesystem::exists(pdf));
    ASSERT_TRUE(std::filesystem::exists(xls));
    EXPECT_LE(std::filesystem::last_write_time(xls), std::filesystem::last_write_time(pdf))
        << "the workbook is written before the PDF";

    // The printed job and the exported PDF carry the same pages.
    const auto printed = test::pdfPageTexts(dir / "printed.pdf");
    const auto exported = test::pdfPageTexts(pdf);
    ASSERT_GE(exported.size(), 3u);
    EXPECT_EQ(printed, exported);
    // The exact text is on the pages; PDF text extraction folds the double blanks.
    const std::string total = std::to_string(exported.size());
    const auto& pages = SpineGlassList::lastPages;
    for (size_t i = 0; i < exported.size(); ++i) {
        const std::string expected = "Page  " + std::to_string(i + 1) + " of  " + total;
        EXPECT_NE(page::dump(pages.pages[i]).find('"' + expected + '"'), std::string::npos);
        EXPECT_NE(collapseBlanks(exported[i]).find(collapseBlanks(expected)), std::string::npos)
            << "page " << i + 1;
    }
    const std::string last = exported.back();
    EXPECT_NE(last.find("Glass is priced by block size."), std::string::npos);
    EXPECT_NE(last.find("Door lites are listed with doors."), std::string::npos);
    // 150 lines of quantities 1,2,3,4 repeating: 37 full cycles (370) plus 1 + 2.
    EXPECT_NE(last.find("373"), std::string::npos);

    // The workbook holds the quantities and areas as numbers, subtotals included.
    auto sheets = test::readWorkbook(xls);
    ASSERT_FALSE(sheets.empty());
    std::vector<double> numbers;
    for (const auto& sheet : sheets) {
        auto n = test::numbersOf(sheet);
        numbers.insert(numbers.end(), n.begin(), n.end());
    }
    EXPECT_NE(std::find(numbers.begin(), numbers.end(), 373.0), numbers.end());
    EXPECT_NE(std::find(numbers.begin(), numbers.end(), 6.5), numbers.end());
    // The typed mechanism released the object: the next use is a fresh one.
    EXPECT_EQ(reportObjectAs<SpineGlassList>("SpineGlassList").lines, 0);
    EXPECT_TRUE(reportObjectAs<SpineGlassList>("SpineGlassList").pages().pages.empty());
}

TEST_F(Spine, ExportMessagesNameWhatIsMissing) {
    struct Case {
        std::string vendorPath, jobName, currentJob;
        std::string excelMessage;
        std::string pdfMessage;
    };
    const std::string v = (dir / "vendor").string();
    const Case cases[] = {
        {v, "", "",
         "Issue exporting report to excel: Developer error: Job Name argument not set "
         "for exporting excel file to the proper path.",
         "Job Name argument not set for exporting PDF file to the proper path."},
        {"", "Job", "",
         "Issue exporting report to excel: Developer error: Vendor path argument "
         "not set for exporting to the proper path.",
         "Developer error: Vendor path argument not set for exporting to the proper path."},
    };
    for (const auto& c : cases) {
        recording.messages->shown.clear();
        auto& state = host::moduleState();
        state.vendorPath = c.vendorPath;
        state.currentJobName = c.currentJob;
        page::Pages pages;
        pages.pages.emplace_back();
        reports::exportToExcel(pages, c.jobName + "-X.xls", c.jobName);
        ASSERT_EQ(recording.messages->shown.size(), 1u);
        EXPECT_EQ(recording.messages->shown[0].text,
                  "Description: " + c.excelMessage +
                      "\r\nModule: PrintReports\r\nFunction: ExportToExcel");
        try {
            reports::exportToPdf(pages, c.jobName + "-X.pdf", c.jobName);
            ADD_FAILURE() << "PDF export without " << (c.jobName.empty() ? "job" : "vendor path");
        } catch (const Error& e) {
            EXPECT_EQ(e.number(), 999);
            EXPECT_EQ(e.source(), "PrintReports");
            EXPECT_EQ(e.description(), c.pdfMessage);
        }
    }
}

TEST_F(Spine, AnEmptyJobNameExportsIntoTheCurrentRequestsJobFolder) {
    auto& state = host::moduleState();
    state.currentJobName = "Clinic";
    page::Pages pages;
    pages.pages.emplace_back();
    reports::exportAtReportEnd(pages, "", true, true, {"-Markup.xls", "-Markup.pdf"});
    const auto folder = dir / "vendor" / "Jobs" / "Clinic" / "Reports";
    EXPECT_TRUE(std::filesystem::exists(folder / "-Markup.xls"));
    EXPECT_TRUE(std::filesystem::exists(folder / "-Markup.pdf"));
}

TEST_F(Spine, HostileJobNamesNeverWriteOutsideTheJobsReportsFolder) {
    struct Case {
        const char* jobName;
        const char* folder; // the job's folder under Jobs/, "" when the export is refused
    };
    const Case cases[] = {
        {"../../../../escaped", "..-..-..-..-escaped"},
        {"Smith/Jones Remodel", "Smith-Jones Remodel"},
        {"C:\\Windows\\System32", "C--Windows-System32"},
        {"What? <Phase 2> \"A|B\" *", "What- -Phase 2- -A-B- -"},
        {"Line\nbreak\ttab", "Line-break-tab"},
        {"..", ""},
        {".", ""},
        {"   ", ""},
        {"/", ""},
    };
    auto& state = host::moduleState();
    const auto vendor = dir / "hostile" / "vendor";
    state.vendorPath = vendor.string();
    page::Pages pages;
    pages.pages.emplace_back();
    for (const auto& c : cases) {
        std::filesystem::remove_all(dir / "hostile");
        std::filesystem::create_directories(vendor);
        recording.messages->shown.clear();
        const std::string job = c.jobName;
        bool refused = false;
        try {
            reports::exportAtReportEnd(pages, job, true, true, {"-Glass.xls", "-Glass.pdf"});
        } catch (const Error& e) {
            refused = true;
            EXPECT_NE(e.description().find("gives no folder name"), std::string::npos) << job;
        }
        // Everything written lies under vendor/Jobs/<folder>/Reports.
        std::vector<std::string> written;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(dir / "hostile"))
            if (entry.is_regular_file())
                written.push_back(std::filesystem::relative(entry.path(), vendor).string());
        if (*c.folder == 0) {
            EXPECT_TRUE(refused) << job;
            EXPECT_TRUE(written.empty()) << job;
            ASSERT_EQ(recording.messages->shown.size(), 1u) << job;
            continue;
        }
        const std::string reports = std::string("Jobs/") + c.folder + "/Reports/" + c.folder;
        EXPECT_FALSE(refused) << job;
        EXPECT_EQ(written.size(), 2u) << job;
        for (const auto& file : written)
            EXPECT_TRUE(file == reports + "-Glass.xls" || file == reports + "-Glass.pdf")
                << job << " wrote " << file;
    }
}

TEST(ExportFolder, JoinsWithoutNormalising) {
    const char sep = reports::kPathSeparator;
    const std::string s(1, sep);
    EXPECT_EQ(reports::exportFolder("V", "J"), "V" + s + "Jobs" + s + "J" + s + "Reports" + s);
    EXPECT_EQ(reports::exportFolder("V" + s, "My Job"),
              "V" + s + s + "Jobs" + s + "My Job" + s + "Reports" + s);
}

} // namespace
} // namespace qr::service
