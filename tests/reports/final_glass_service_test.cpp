// The four final glass print methods end to end: report data in, pages printed (to a file) or
// previewed (headless), the workbook and the PDF exported under the reports' file names and in
// their order, and failures shown through the error dialog.
#include "platform/engine/page/export_filter.hpp"
#include "platform/output/pdf_writer.hpp"
#include "platform/output/workbook.hpp"
#include "service/print_service.hpp"
#include "support/glass_files.hpp"
#include "support/glass_fixture.hpp"

#include <regex>

namespace qr::test {
namespace {

namespace fs = std::filesystem;
using Method = void (service::PrintService::*)(host::FinalGlassReportData&, std::string, bool, bool,
                                               bool);

struct MethodCase {
    const char* name;
    Method method;
    const char* fileStem; // after the job name
    bool prices;
};

const MethodCase kMethods[] = {
    {"PrintFinalGlassPortraitReport", &service::PrintService::PrintFinalGlassPortraitReport,
     "-FinalGlass", true},
    {"PrintFinalGlassLandscapeReport", &service::PrintService::PrintFinalGlassLandscapeReport,
     "-FinalGlass", true},
    {"PrintFinalGlassReportWithoutPrices",
     &service::PrintService::PrintFinalGlassReportWithoutPrices, "-FinalGlassNP", false},
    {"PrintFinalGlassLandscapeReportWithoutPrices",
     &service::PrintService::PrintFinalGlassLandscapeReportWithoutPrices, "-FinalGlassNP", false},
};

/// Sets an environment variable for one scope.
class ScopedVariable {
  public:
    ScopedVariable(const char* name, const std::string& value) : m_name(name) {
        if (const char* old = std::getenv(name))
            m_old = old;
        ::setenv(name, value.c_str(), 1);
    }
    ~ScopedVariable() {
        if (m_old)
            ::setenv(m_name.c_str(), m_old->c_str(), 1);
        else
            ::unsetenv(m_name.c_str());
    }

  private:
    std::string m_name;
    std::optional<std::string> m_old;
};

/// The real export filters, with each file they are asked to write noted in order.
class ExportJournal {
  public:
    ExportJournal() {
        install(page::ExportKind::Spreadsheet, "xls", &output::makeWorkbookExportFilter);
        install(page::ExportKind::Pdf, "pdf", &output::makePdfExportFilter);
    }
    ~ExportJournal() {
        page::installExportFilter(page::ExportKind::Spreadsheet, &output::makeWorkbookExportFilter);
        page::installExportFilter(page::ExportKind::Pdf, &output::makePdfExportFilter);
    }
    std::vector<std::string> written;

  private:
    class Noting : public page::ExportFilter {
      public:
        Noting(std::unique_ptr<page::ExportFilter> real, std::string kind,
               std::vector<std::string>& journal)
            : m_real(std::move(real)), m_kind(std::move(kind)), m_journal(journal) {}
        void setFileName(const std::string& fileName) override {
            m_file = fileName;
            m_real->setFileName(fileName);
        }
        void exportPages(const page::Pages& pages) override {
            m_real->exportPages(pages);
            m_journal.push_back(m_kind + " " + fs::path(m_file).filename().string());
        }

      private:
        std::unique_ptr<page::ExportFilter> m_real;
        std::string m_kind;
        std::vector<std::string>& m_journal;
        std::string m_file;
    };

    void install(page::ExportKind kind, std::string name,
                 std::unique_ptr<page::ExportFilter> (*real)()) {
        page::installExportFilter(
            kind, [this, name, real] { return std::make_unique<Noting>(real(), name, written); });
    }
};

/// Runs of spaces and line breaks as one space, so PDF text compares as words.
std::string words(const std::string& text) {
    return std::regex_replace(text, std::regex("\\s+"), " ");
}

class FinalGlassService : public GlassReportTest {
  protected:
    fs::path reportsFolder() const { return m_vendor.path() / "Jobs" / kGlassJobName / "Reports"; }
    std::string vendorPath() const { return m_vendor.path().string(); }

    TempDir m_vendor;
    TempDir m_output;
};

TEST_P(FinalGlassService, PrintedAndExportedWorkbookFirstUnderTheReportsFileNames) {
    for (const MethodCase& c : kMethods) {
        SCOPED_TRACE(c.name);
        fs::remove_all(reportsFolder());
        const fs::path printed = m_output / (std::string(c.name) + ".pdf");
        ScopedVariable printer("QUARVEX_PRINTER", "file:" + printed.string());
        ExportJournal journal;

        service::PrintService service;
        (service.*c.method)(reportData(), vendorPath(), false, true, true);

        EXPECT_TRUE(m_host.messages->shown.empty()) << m_host.messages->shown.front().text;
        const std::string stem = std::string(kGlassJobName) + c.fileStem;
        EXPECT_EQ(journal.written,
                  (std::vector<std::string>{"xls " + stem + ".xls", "pdf " + stem + ".pdf"}));

        // The PDF export and the print job show the same pages and figures.
        const std::string pdf = words(glassPdfText(reportsFolder() / (stem + ".pdf")));
        EXPECT_EQ(words(glassPdfText(printed)), pdf);
        for (const char* shown :
             {"Harbor Point Tower", "Lites without Doors: 123", "Perimeter of All Glass: 398.75",
              "8,422.50", "Page 1 of 2", "Page 2 of 2", "1\" Clear Insulated"})
            EXPECT_NE(pdf.find(shown), std::string::npos) << shown << " in " << pdf;
        EXPECT_EQ(pdf.find("$105,510.00") != std::string::npos, c.prices);

        // The workbook holds the figures as numbers where the page showed a number.
        const auto cells = glassWorkbookCells(reportsFolder() / (stem + ".xls"));
        EXPECT_NE(findGlassCell(cells, "Harbor Point Tower"), nullptr);
        EXPECT_NE(findGlassCell(cells, "=126"), nullptr) << "all lites";
        EXPECT_NE(findGlassCell(cells, "=80.5"), nullptr) << "area each";
        EXPECT_NE(findGlassCell(cells, "8,103.00"), nullptr) << "type area";
        EXPECT_EQ(findGlassCell(cells, "=105510") != nullptr, c.prices) << "grand price total";
    }
}

TEST_P(FinalGlassService, WithoutExportFlagsThePreviewIsTheOnlyOutput) {
    ScopedVariable preview("QUARVEX_PREVIEW_DIR", m_output.path().string());
    ExportJournal journal;
    for (const MethodCase& c : kMethods) {
        service::PrintService service;
        (service.*c.method)(reportData(), vendorPath(), true, false, false);
    }
    EXPECT_TRUE(m_host.messages->shown.empty());
    EXPECT_TRUE(journal.written.empty());
    EXPECT_FALSE(fs::exists(m_vendor.path() / "Jobs"));
    int previews = 0;
    for (const auto& entry : fs::directory_iterator(m_output.path())) {
        EXPECT_EQ(glassPdfPages(entry.path()), 2) << entry.path();
        ++previews;
    }
    EXPECT_EQ(previews, 4);
}

TEST_P(FinalGlassService, CallingAgainGivesTheSameTotals) {
    service::PrintService service;
    const fs::path pdf = reportsFolder() / (std::string(kGlassJobName) + "-FinalGlass.pdf");
    ScopedVariable printer("QUARVEX_PRINTER", "file:" + (m_output / "print.pdf").string());
    service.PrintFinalGlassPortraitReport(reportData(), vendorPath(), false, false, true);
    const std::string first = glassPdfText(pdf);
    service.PrintFinalGlassPortraitReport(reportData(), vendorPath(), false, false, true);
    EXPECT_EQ(glassPdfText(pdf), first);
    EXPECT_NE(words(first).find("Area Annealed: 8,103.00 $101,155.00"), std::string::npos)
        << words(first);
}

TEST_P(FinalGlassService, FailuresShowTheErrorDialogAndReturn) {
    struct Case {
        const char* what;
        std::function<void(host::FinalGlassReportData&, std::string& vendor)> setUp;
        std::vector<std::string> descriptions; // of each dialog shown, in order
    };
    const std::vector<Case> cases = {
        {"no connection",
         [](host::FinalGlassReportData& d, std::string&) { d.Connection.reset(); },
         {"The data control of FinalGlassAR2 has no connection."}},
        {"a query the database refuses",
         [](host::FinalGlassReportData& d, std::string&) { d.GlassQuery = "SELECT * FROM NoSuch"; },
         {}},
        {"door lites beyond a 16-bit count",
         [this](host::FinalGlassReportData&, std::string&) {
             connection()->execute("UPDATE JobGlass SET iQuantity = 40000 WHERE GlassID = 4");
         },
         {"Overflow"}},
        {"no vendor folder to export to",
         [](host::FinalGlassReportData&, std::string& vendor) { vendor.clear(); },
         {"Issue exporting report to excel: Developer error: Vendor path argument not set for "
          "exporting to the proper path.",
          "Developer error: Vendor path argument not set for exporting to the proper path."}},
    };
    ScopedVariable printer("QUARVEX_PRINTER", "file:" + (m_output / "print.pdf").string());
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        host::FinalGlassReportData data = glassReportData(connection());
        std::string vendor = vendorPath();
        c.setUp(data, vendor);
        m_host.messages->shown.clear();
        service::PrintService service;
        service.PrintFinalGlassLandscapeReport(data, vendor, false, true, true);

        const auto& shown = m_host.messages->shown;
        ASSERT_FALSE(shown.empty());
        const std::string& last = shown.back().text;
        EXPECT_EQ(shown.back().title, "Quarvex Error");
        EXPECT_NE(last.find("\r\nModule: PrintService\r\nFunction: PrintFinalGlassLandscapeReport"),
                  std::string::npos)
            << last;
        if (c.descriptions.empty())
            continue; // the database's own message
        ASSERT_EQ(shown.size(), c.descriptions.size());
        for (size_t i = 0; i < shown.size(); ++i)
            EXPECT_EQ(shown[i].text.substr(0, shown[i].text.find("\r\n")),
                      "Description: " + c.descriptions[i]);
        connection()->execute("UPDATE JobGlass SET iQuantity = 3 WHERE GlassID = 4");
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, FinalGlassService,
                         ::testing::Values(GlassBackend::SQLite, GlassBackend::PostgreSQL),
                         glassBackendName);

} // namespace
} // namespace qr::test
