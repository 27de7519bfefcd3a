// The four final glass print methods end to end: printed to a file or previewed headless, the
// workbook and then the PDF exported under the reports' names, read back with poppler and
// libfreexl; failures shown through the error dialog.
#include "platform/engine/page/export_filter.hpp"
#include "platform/output/pdf_writer.hpp"
#include "platform/output/workbook.hpp"
#include "service/print_service.hpp"
#include "support/export_journal.hpp"
#include "support/glass_fixture.hpp"

#include <freexl.h>
#include <poppler-document.h>
#include <poppler-page.h>
#include <regex>
#include <sstream>

namespace qr::test {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;
using Method = void (service::PrintService::*)(host::FinalGlassReportData&, std::string, bool, bool,
                                               bool);
using S = service::PrintService;

struct MethodCase {
    const char* name;
    Method method;
    const char* suffix;
    bool prices;
};
const MethodCase kMethods[] = {
    {"PrintFinalGlassPortraitReport", &S::PrintFinalGlassPortraitReport, "-FinalGlass", true},
    {"PrintFinalGlassLandscapeReport", &S::PrintFinalGlassLandscapeReport, "-FinalGlass", true},
    {"PrintFinalGlassReportWithoutPrices", &S::PrintFinalGlassReportWithoutPrices, "-FinalGlassNP",
     false},
    {"PrintFinalGlassLandscapeReportWithoutPrices", &S::PrintFinalGlassLandscapeReportWithoutPrices,
     "-FinalGlassNP", false},
};

/// A PDF's text, runs of white space as one space.
std::string pdfWords(const fs::path& path) {
    std::unique_ptr<poppler::document> doc(poppler::document::load_from_file(path.string()));
    if (!doc)
        return "<unreadable " + path.string() + ">";
    std::string text;
    for (int i = 0; i < doc->pages(); ++i) {
        const auto bytes = std::unique_ptr<poppler::page>(doc->create_page(i))->text().to_utf8();
        text.append(bytes.begin(), bytes.end()).append(" ");
    }
    return std::regex_replace(text, std::regex("\\s+"), " ");
}

/// The cells of a workbook's first sheet as libfreexl reads them: numbers as "=value".
Texts workbookCells(const fs::path& path) {
    const void* book = nullptr;
    Texts cells;
    if (freexl_open(path.c_str(), &book) != FREEXL_OK || book == nullptr)
        return {"<unreadable>"};
    unsigned rows = 0;
    unsigned short columns = 0;
    freexl_select_active_worksheet(book, 0);
    freexl_worksheet_dimensions(book, &rows, &columns);
    for (unsigned r = 0; r < rows; ++r) {
        for (unsigned short c = 0; c < columns; ++c) {
            FreeXL_CellValue v{};
            freexl_get_cell_value(book, r, c, &v);
            std::ostringstream shown;
            if (v.type == FREEXL_CELL_INT)
                shown << '=' << v.value.int_value;
            if (v.type == FREEXL_CELL_DOUBLE)
                shown << '=' << v.value.double_value;
            if (v.type == FREEXL_CELL_TEXT || v.type == FREEXL_CELL_SST_TEXT)
                shown << v.value.text_value;
            cells.push_back(shown.str());
        }
    }
    freexl_close(book);
    return cells;
}

bool has(const Texts& cells, const std::string& cell) {
    return std::find(cells.begin(), cells.end(), cell) != cells.end();
}

class FinalGlassService : public GlassReportTest {
  protected:
    void call(const MethodCase& c, std::string vendor, bool preview, bool excel, bool pdf) {
        S service;
        (service.*c.method)(reportData(), std::move(vendor), preview, excel, pdf);
    }
    fs::path reports() const { return m_dir / "Jobs" / kGlassJobName / "Reports"; }

    struct Variable {
        Variable(const char* name, const std::string& value) : name(name) {
            ::setenv(name, value.c_str(), 1);
        }
        ~Variable() { ::unsetenv(name); }
        const char* name;
    };
};

TEST_P(FinalGlassService, PrintsAndExportsTheWorkbookThenThePdf) {
    for (const MethodCase& c : kMethods) {
        SCOPED_TRACE(c.name);
        fs::remove_all(m_dir / "Jobs");
        const fs::path printed = m_dir / "printed.pdf";
        Variable printer("QUARVEX_PRINTER", "file:" + printed.string());
        ExportJournal journal;
        call(c, m_dir.path().string(), false, true, true);

        EXPECT_TRUE(m_host.messages->shown.empty());
        const std::string file = std::string(kGlassJobName) + c.suffix;
        EXPECT_EQ(journal.written, (Texts{file + ".xls", file + ".pdf"}));
        const std::string pdf = pdfWords(reports() / (file + ".pdf"));
        EXPECT_EQ(pdfWords(printed), pdf);
        for (const char* shown :
             {"Job Name: Harbor Point Tower", "1\" Clear Insulated", "All Lites: 126",
              "Perimeter of All Glass: 398.75", "Lites without Doors: 123", "8,422.50",
              "Area Door Lites: 49.50", "Page 1 of 2", "Page 2 of 2"})
            EXPECT_NE(pdf.find(shown), std::string::npos) << shown << " in " << pdf;
        EXPECT_EQ(pdf.find("Area Annealed: 8,103.00 $101,155.00") != std::string::npos, c.prices);

        // Numbers the pages showed through a format are numbers in the workbook.
        const Texts cells = workbookCells(reports() / (file + ".xls"));
        EXPECT_TRUE(has(cells, "Harbor Point Tower"));
        EXPECT_TRUE(has(cells, "=126")) << "all lites";
        EXPECT_TRUE(has(cells, "=80.5")) << "area each";
        EXPECT_TRUE(has(cells, "=8103")) << "type area";
        EXPECT_EQ(has(cells, "=105510"), c.prices) << "price total";
    }
}

TEST_P(FinalGlassService, WithoutExportFlagsThePreviewIsTheOnlyOutput) {
    Variable preview("QUARVEX_PREVIEW_DIR", (m_dir / "preview").string());
    ExportJournal journal;
    for (const MethodCase& c : kMethods)
        call(c, m_dir.path().string(), true, false, false);
    EXPECT_TRUE(m_host.messages->shown.empty());
    EXPECT_TRUE(journal.written.empty());
    EXPECT_FALSE(fs::exists(m_dir / "Jobs"));
    EXPECT_EQ(std::distance(fs::directory_iterator(m_dir / "preview"), fs::directory_iterator()),
              4);
}

TEST_P(FinalGlassService, FailuresShowTheErrorDialogAndReturn) {
    struct Case {
        const char* what;
        std::function<void(host::FinalGlassReportData&, std::string& vendor)> setUp;
        Texts descriptions; // of the dialogs shown, in order
    };
    const Case cases[] = {
        {"no connection",
         [](auto& data, auto&) { data.Connection.reset(); },
         {"The data control of FinalGlassAR2 has no connection."}},
        {"no vendor folder",
         [](auto&, std::string& vendor) { vendor.clear(); },
         {"Issue exporting report to excel: Developer error: Vendor path argument not set for "
          "exporting to the proper path.",
          "Developer error: Vendor path argument not set for exporting to the proper path."}},
        {"door lites beyond a 16-bit count",
         [this](auto&, auto&) {
             connection().execute("UPDATE JobGlass SET iQuantity = 40000 WHERE GlassID = 4");
         },
         {"Overflow"}},
    };
    Variable printer("QUARVEX_PRINTER", "file:" + (m_dir / "printed.pdf").string());
    const host::ConnectionRef database = reportData().Connection;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        reportData() = glassReportData(database);
        std::string vendor = m_dir.path().string();
        c.setUp(reportData(), vendor);
        m_host.messages->shown.clear();
        call(kMethods[1], vendor, false, true, true);

        Texts descriptions;
        for (const ShownMessage& shown : m_host.messages->shown) {
            EXPECT_EQ(shown.title, "Quarvex Error");
            descriptions.push_back(shown.text.substr(13, shown.text.find("\r\n") - 13));
        }
        EXPECT_EQ(descriptions, c.descriptions);
        ASSERT_FALSE(m_host.messages->shown.empty());
        EXPECT_NE(m_host.messages->shown.back().text.find(
                      "\r\nModule: PrintService\r\nFunction: PrintFinalGlassLandscapeReport"),
                  std::string::npos);
    }
}

QR_GLASS_ON_BOTH_BACKENDS(FinalGlassService);

} // namespace
} // namespace qr::test
