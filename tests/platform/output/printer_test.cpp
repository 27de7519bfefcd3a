#include "output_test_support.hpp"
#include "platform/core/error.hpp"
#include "platform/output/printer.hpp"
#include "support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace qr::output {
namespace {

using Kind = PrintDestination::Kind;
using test::ScopedEnv;

page::Pages threePages() {
    test::PageBuilder b("Markup");
    for (int i = 1; i <= 3; ++i) {
        b.addPage(true);
        b.text(720, 1440, "Markup page " + std::to_string(i));
    }
    b.pages().orientation = page::Orientation::Landscape;
    return b.pages();
}

// Keeps the CUPS client away from any print server, so the machine has no printer at all.
struct NoPrintServer {
    test::TempDir dir;
    ScopedEnv server{"CUPS_SERVER", (dir / "no-cups.sock").string()};
    ScopedEnv printer{"PRINTER", std::nullopt};
    ScopedEnv lpdest{"LPDEST", std::nullopt};
};

TEST(PrinterOverride, ParsesIntoADestination) {
    struct Case {
        const char* value;
        Kind kind;
        std::string target;
    };
    const Case cases[] = {
        {nullptr, Kind::DefaultPrinter, ""},
        {"", Kind::DefaultPrinter, ""},
        {"Office_LaserJet", Kind::NamedPrinter, "Office_LaserJet"},
        {"file:/tmp/job.pdf", Kind::PdfFile, "/tmp/job.pdf"},
        {"file:relative/job.pdf", Kind::PdfFile, "relative/job.pdf"},
        {"File:job.pdf", Kind::NamedPrinter, "File:job.pdf"}, // the prefix is exact
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value ? c.value : "(unset)");
        const PrintDestination d = parsePrinterOverride(c.value);
        EXPECT_EQ(d.kind, c.kind);
        EXPECT_EQ(d.target, c.target);
    }
    EXPECT_THROW(parsePrinterOverride("file:"), Error);
}

TEST(PrintPages, OverrideToFileWritesTheJobAsPdf) {
    test::TempDir dir;
    const auto target = dir / "job.pdf";
    ScopedEnv env(kPrinterVariable, "file:" + target.string());
    printPages(threePages(), "Markup");

    auto doc = test::openPdf(target);
    ASSERT_TRUE(doc);
    EXPECT_EQ(doc->pages(), 3);
    std::unique_ptr<poppler::page> first(doc->create_page(0));
    EXPECT_DOUBLE_EQ(first->page_rect().width(), 792); // landscape Letter
    EXPECT_NE(test::pdfPageText(*doc, 2).find("Markup page 3"), std::string::npos);
}

TEST(PrintPages, UnknownPrinterIsAnErrorNamingIt) {
    NoPrintServer none;
    ScopedEnv env(kPrinterVariable, "Quarvex_Missing_Printer");
    try {
        printPages(threePages(), "Markup");
        FAIL() << "expected an error";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), 482);
        EXPECT_NE(e.description().find("\"Quarvex_Missing_Printer\""), std::string::npos)
            << e.description();
    }
}

TEST(PrintPages, NoPrinterAtAllIsAnErrorNotAFile) {
    NoPrintServer none;
    ScopedEnv env(kPrinterVariable, std::nullopt);
    const auto before = test::folderContents(".");
    try {
        printPages(threePages(), "Markup");
        FAIL() << "expected an error";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), 482);
        EXPECT_EQ(e.description(),
                  "No printer is available: install a printer or set QUARVEX_PRINTER.");
    }
    EXPECT_EQ(test::folderContents("."), before);
}

} // namespace
} // namespace qr::output
