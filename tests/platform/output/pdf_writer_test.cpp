#include "output_test_support.hpp"
#include "platform/core/error.hpp"
#include "platform/core/system_formats.hpp"
#include "platform/output/pdf_objects.hpp"
#include "platform/output/pdf_writer.hpp"
#include "platform/output/png_writer.hpp"
#include "support/temp_dir.hpp"

#include <chrono>
#include <fstream>
#include <optional>
#include <gtest/gtest.h>
#include <poppler-destination.h>
#include <poppler-font.h>
#include <poppler-page-renderer.h>
#include <poppler-toc.h>
#include <thread>

namespace qr::output {
namespace {

using test::folderContents;
using test::openPdf;
using test::PageBuilder;
using test::pdfPageText;

page::FontSpec bold() {
    page::FontSpec f;
    f.bold = true;
    return f;
}

// A small priced glass list: a heading, two rows of cells, a total.
PageBuilder glassList() {
    PageBuilder b("Job Glass Report");
    b.addPage();
    b.text(720, 1000, "Final Glass Report", bold());
    int y = 1600;
    for (const char* row : {"Tempered", "Laminated"}) {
        b.text(720, y, row);
        b.text(4000, y, "24 x 36");
        b.text(8000, y, "$1,234.50");
        y += 300;
    }
    b.line(720, y, 11520, y);
    b.text(8000, y + 300, "Total $2,469.00", bold());
    return b;
}

TEST(WritePdf, TextReadsBackInReadingOrder) {
    test::TempDir dir;
    PageBuilder b = glassList();
    writePdf(b.pages(), dir / "glass.pdf");

    auto doc = openPdf(dir / "glass.pdf");
    ASSERT_TRUE(doc);
    ASSERT_EQ(doc->pages(), 1);
    const std::string text = pdfPageText(*doc, 0);
    const std::vector<std::string> inOrder = {"Final Glass Report", "Tempered",  "24 x 36",
                                              "$1,234.50",          "Laminated", "Total $2,469.00"};
    std::size_t at = 0;
    for (const auto& expected : inOrder) {
        const auto found = text.find(expected, at);
        ASSERT_NE(found, std::string::npos) << "\"" << expected << "\" missing in:\n" << text;
        at = found + expected.size();
    }
    EXPECT_EQ(test::toUtf8(doc->get_title()), "Job Glass Report");
}

// Dark pixels inside `box` (twips) of a picture drawn at `dpi`.
template <typename Pixel>
int inkIn(int width, int height, Pixel pixel, page::Rect box, double dpi) {
    const double scale = dpi / 1440;
    int ink = 0;
    for (int y = std::max(0, int(box.y * scale)); y < std::min(height, int((box.y + box.height) * scale)); ++y) {
        for (int x = std::max(0, int(box.x * scale)); x < std::min(width, int((box.x + box.width) * scale)); ++x) {
            const std::uint32_t argb = pixel(x, y);
            const int luma = ((argb >> 16 & 0xFF) * 3 + (argb >> 8 & 0xFF) * 6 + (argb & 0xFF)) / 10;
            ink += luma < 128;
        }
    }
    return ink;
}

// Each glyph (plain and accented letters built from other glyphs, dash, euro) in each kind of
// font file (TrueType cut down to the glyphs shown, bold italic, CFF outlines embedded whole),
// and filled, stroked and rounded boxes: poppler draws each with about the ink of the same page
// drawn straight to a picture, and reads every character back.
TEST(WritePdf, EveryGlyphAndBoxDrawsAsOnThePictureOfThePage) {
    test::TempDir dir;
    PageBuilder b("Glyphs");
    b.addPage();
    page::FontSpec boldItalic;
    boldItalic.bold = boldItalic.italic = true;
    page::FontSpec cff;
    cff.family = "Helvetica";
    page::FontSpec mono;
    mono.family = "Courier New";
    std::vector<page::Rect> boxes;
    int baseline = 1440;
    std::string expectedText;
    for (const page::FontSpec& font : {page::FontSpec{}, boldItalic, cff, mono}) {
        int x = 720;
        for (const char* glyph : {"W", "\u00C5", "\u00E7", "\u00E9", "\u2013", "\u20AC", "7"}) {
            boxes.push_back(b.text(x, baseline, glyph, font).box);
            expectedText += glyph;
            x += 720;
        }
        baseline += 720;
    }
    b.rect({720, baseline, 1440, 720}, page::Color{0x404040}, 0);
    boxes.push_back({720, baseline, 1440, 720});
    page::RectItem rounded;
    rounded.box = {2880, baseline, 1440, 720};
    rounded.rounded = true;
    rounded.thickness = 40;
    b.pages().pages.back().items.emplace_back(rounded);
    boxes.push_back({2880 - 40, baseline - 40, 1440 + 80, 720 + 80});
    writePdf(b.pages(), dir / "glyphs.pdf");

    constexpr double kDpi = 144;
    const PageImage expected = renderPageImage(b.pages().pages[0], b.pages().fonts, kDpi);
    auto doc = openPdf(dir / "glyphs.pdf");
    ASSERT_TRUE(doc);
    std::unique_ptr<poppler::page> page(doc->create_page(0));
    poppler::page_renderer renderer;
    renderer.set_render_hints(poppler::page_renderer::antialiasing |
                              poppler::page_renderer::text_antialiasing);
    const poppler::image drawn = renderer.render_page(page.get(), kDpi, kDpi);
    ASSERT_TRUE(drawn.is_valid());
    const auto drawnPixel = [&](int x, int y) {
        return reinterpret_cast<const std::uint32_t*>(drawn.const_data() +
                                                      y * drawn.bytes_per_row())[x];
    };
    const auto expectedPixel = [&](int x, int y) { return expected.pixel(x, y); };
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const int want = inkIn(expected.width, expected.height, expectedPixel, boxes[i], kDpi);
        const int got = inkIn(drawn.width(), drawn.height(), drawnPixel, boxes[i], kDpi);
        EXPECT_GT(want, 0) << "item " << i;
        EXPECT_NEAR(got, want, want * 0.3 + 4) << "item " << i;
    }
    std::string text = pdfPageText(*doc, 0);
    std::erase_if(text, [](char c) { return c == ' ' || c == '\n' || c == '\f'; });
    EXPECT_EQ(text, expectedText);
}

TEST(PdfNumbers, PrintAsPdfNumbersWithoutExponentsOrNegativeZero) {
    const std::tuple<double, int, const char*> cases[] = {
        {12, 2, "12"},          {0.5, 2, "0.5"},     {-3.25, 2, "-3.25"},  {-0.0001, 2, "0"},
        {1234.5678, 3, "1234.568"}, {1e-9, 6, "0"},  {0.05, 4, "0.05"},    {1e300, 2, "0"},
        {-7.999, 2, "-8"},      {100.1, 0, "100"},
    };
    for (const auto& [value, decimals, expected] : cases) {
        std::string out;
        pdf::appendNumber(out, value, decimals);
        EXPECT_EQ(out, expected) << value;
    }
    EXPECT_EQ(pdf::textString("Bid (2) \\ A"), "(Bid \\(2\\) \\\\ A)");
    EXPECT_EQ(pdf::textString("Caf\u00E9 \U0001F600"), "<FEFF00430061006600E90020D83DDE00>");
}

TEST(WritePdf, FontsAreEmbeddedSubsetsOfLiberation) {
    test::TempDir dir;
    PageBuilder b = glassList();
    writePdf(b.pages(), dir / "glass.pdf");

    auto doc = openPdf(dir / "glass.pdf");
    ASSERT_TRUE(doc);
    std::vector<std::string> names;
    for (const auto& info : doc->fonts()) {
        SCOPED_TRACE(info.name());
        EXPECT_TRUE(info.is_embedded());
        EXPECT_TRUE(info.is_subset());
        // A subset's name is a six-letter tag, "+", and the font's PostScript name.
        const auto plus = info.name().find('+');
        ASSERT_EQ(plus, 6u);
        names.push_back(info.name().substr(plus + 1));
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"LiberationSans", "LiberationSans-Bold"}));
}

TEST(WritePdf, EachPageHasItsOwnPaperSize) {
    test::TempDir dir;
    PageBuilder b;
    b.addPage();
    b.text(720, 1440, "portrait");
    b.addPage(true);
    b.text(720, 1440, "landscape");
    b.addPage();
    b.text(720, 1440, "portrait again");
    writePdf(b.pages(), dir / "mixed.pdf");

    auto doc = openPdf(dir / "mixed.pdf");
    ASSERT_TRUE(doc);
    ASSERT_EQ(doc->pages(), 3);
    const std::pair<double, double> expected[] = {{612, 792}, {792, 612}, {612, 792}};
    for (int i = 0; i < 3; ++i) {
        std::unique_ptr<poppler::page> p(doc->create_page(i));
        EXPECT_DOUBLE_EQ(p->page_rect().width(), expected[i].first) << "page " << i + 1;
        EXPECT_DOUBLE_EQ(p->page_rect().height(), expected[i].second) << "page " << i + 1;
    }
    EXPECT_NE(pdfPageText(*doc, 1).find("landscape"), std::string::npos);
}

TEST(WritePdf, EmptyReportGivesOneBlankPageInItsOrientation) {
    test::TempDir dir;
    page::Pages pages;
    pages.orientation = page::Orientation::Landscape;
    writePdf(pages, dir / "empty.pdf");
    auto doc = openPdf(dir / "empty.pdf");
    ASSERT_TRUE(doc);
    ASSERT_EQ(doc->pages(), 1);
    std::unique_ptr<poppler::page> p(doc->create_page(0));
    EXPECT_DOUBLE_EQ(p->page_rect().width(), 792);
}

TEST(WritePdf, ManyPagesStreamThroughOneWriter) {
    test::TempDir dir;
    PageBuilder b;
    for (int i = 1; i <= 40; ++i) {
        b.addPage();
        b.text(720, 1440, "Page " + std::to_string(i) + " of 40");
    }
    PdfWriter writer(dir / "long.pdf", "Long");
    for (const auto& p : b.pages().pages)
        writer.addPage(p, b.pages().fonts);
    EXPECT_EQ(writer.pageCount(), 40u);
    EXPECT_FALSE(std::filesystem::exists(dir / "long.pdf")); // not before finish
    writer.finish();
    auto doc = openPdf(dir / "long.pdf");
    ASSERT_TRUE(doc);
    EXPECT_EQ(doc->pages(), 40);
    EXPECT_NE(pdfPageText(*doc, 39).find("Page 40 of 40"), std::string::npos);
}

// Every way a write can fail: the error names the target, and the folder holds afterwards
// exactly what it held before (no partial file, no temporary).
TEST(WritePdf, FailureLeavesNoFileAndNoTemporary) {
    struct Case {
        const char* name;
        std::function<void(const std::filesystem::path& dir, const std::filesystem::path& target)>
            act;
    };
    const Case cases[] = {
        {"target is a folder",
         [](const auto&, const auto& target) {
             std::filesystem::create_directory(target);
             page::Pages pages;
             pages.pages.emplace_back();
             writePdf(pages, target);
         }},
        {"item names a font the pages lack",
         [](const auto&, const auto& target) {
             page::Pages pages;
             page::TextItem item;
             item.font = 3;
             item.runs.push_back({0, 100, 10, "x"});
             pages.pages.emplace_back().items.emplace_back(item);
             writePdf(pages, target);
         }},
        {"font not installed",
         [](const auto&, const auto& target) {
             page::Pages pages;
             pages.fonts.push_back({"Quarvex Missing Face", 10});
             page::TextItem item;
             item.runs.push_back({0, 100, 10, "x"});
             pages.pages.emplace_back().items.emplace_back(item);
             writePdf(pages, target);
         }},
        {"writer abandoned before finishing",
         [](const auto&, const auto& target) {
             PdfWriter writer(target, "t");
             writer.addPage(page::Page{}, {});
             throw Error(1, "test", "abandoned \"" + target.string() + "\"");
         }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        test::TempDir dir;
        std::ofstream(dir / "other.txt") << "kept";
        const auto target = dir / "out.pdf";
        const auto before = folderContents(dir.path());
        try {
            c.act(dir.path(), target);
            ADD_FAILURE() << "expected an error";
        } catch (const Error& e) {
            EXPECT_FALSE(e.description().empty());
        }
        auto after = folderContents(dir.path());
        if (std::filesystem::is_directory(target)) {
            EXPECT_TRUE(std::filesystem::is_empty(target));
            std::erase(after, "out.pdf");
        }
        EXPECT_EQ(after, before);
    }
}

TEST(WritePdf, MissingFolderIsAnErrorNamingThePath) {
    test::TempDir dir;
    const auto target = dir / "no-such-folder" / "out.pdf";
    try {
        writePdf(page::Pages{}, target);
        FAIL() << "expected an error";
    } catch (const Error& e) {
        EXPECT_NE(e.description().find(target.string()), std::string::npos) << e.description();
        EXPECT_NE(e.description().find("No such file or directory"), std::string::npos);
    }
}

TEST(WritePdf, FailedWriteKeepsThePreviousFile) {
    test::TempDir dir;
    const auto target = dir / "report.pdf";
    std::ofstream(target) << "previous export";
    page::Pages broken;
    page::TextItem item;
    item.font = 0;
    item.runs.push_back({0, 100, 10, "x"});
    broken.pages.emplace_back().items.emplace_back(item);
    EXPECT_THROW(writePdf(broken, target), Error);
    std::ifstream in(target);
    std::string content;
    std::getline(in, content);
    EXPECT_EQ(content, "previous export");
    EXPECT_EQ(folderContents(dir.path()), std::vector<std::string>{"report.pdf"});
}

TEST(PdfExportFilter, WritesToTheFileNameItWasGiven) {
    test::TempDir dir;
    PageBuilder b = glassList();
    auto filter = makePdfExportFilter();
    EXPECT_THROW(filter->exportPages(b.pages()), Error);
    filter->setFileName((dir / "J-Markup.pdf").string());
    filter->exportPages(b.pages());
    auto doc = openPdf(dir / "J-Markup.pdf");
    ASSERT_TRUE(doc);
    EXPECT_EQ(doc->pages(), 1);
}

// Bookmarks in a row open the same next page; a bookmark after the last page gets a blank one.
TEST(PdfWriter, BookmarksOpenTheNextPageAddedEvenWhenNoneFollows) {
    test::TempDir dir;
    PageBuilder b("Marks");
    b.addPage();
    b.text(720, 1440, "first");
    PdfWriter writer(dir / "marks.pdf", "Marks");
    writer.addBookmark("A");
    writer.addBookmark("B");
    writer.addPage(b.pages().pages[0], b.pages().fonts);
    writer.addBookmark("C");
    writer.finish();

    auto doc = openPdf(dir / "marks.pdf");
    ASSERT_TRUE(doc);
    ASSERT_EQ(doc->pages(), 2);
    const auto destinations = doc->create_destination_map();
    const int expected[] = {1, 1, 2};
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        const auto found = destinations.find(bookmarkDestination(i + 1));
        ASSERT_NE(found, destinations.end()) << i;
        EXPECT_EQ(found->second.page_number(), expected[i]) << i;
    }
}

} // namespace
} // namespace qr::output

namespace qr::output {
namespace {

std::string fileBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

TEST(WritePdf, TheSameReportAtTheSameClockGivesTheSameBytes) {
    test::TempDir dir;
    Clock::pin(Date::fromParts(2026, 3, 14, 9, 26, 53));
    writePdf(glassList().pages(), dir / "first.pdf");
    // A second later on the wall clock, the same report clock.
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    writePdf(glassList().pages(), dir / "second.pdf");
    Clock::pin(Date::fromParts(2027, 1, 2));
    writePdf(glassList().pages(), dir / "later.pdf");
    Clock::unpin();

    EXPECT_EQ(fileBytes(dir / "first.pdf"), fileBytes(dir / "second.pdf"));
    EXPECT_NE(fileBytes(dir / "first.pdf"), fileBytes(dir / "later.pdf"));
    EXPECT_NE(fileBytes(dir / "first.pdf").find("/CreationDate (D:20260314092653)"),
              std::string::npos);
}

// Within a reuse scope a document of the same pages is the earlier file copied (it keeps that
// file's creation date); anything else is drawn anew at the current clock.
TEST(PdfReuseScope, ARepeatedDocumentIsCopiedOnlyWhileItsFileIsUnchanged) {
    struct Case {
        const char* name;
        bool scoped;
        bool pagesChanged;
        bool fileChanged;
        bool copied;
    };
    const Case cases[] = {
        {"same pages in a scope", true, false, false, true},
        {"one more text", true, true, false, false},
        {"earlier file changed since", true, false, true, false},
        {"no scope", false, false, false, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        test::TempDir dir;
        std::optional<PdfReuseScope> scope;
        if (c.scoped)
            scope.emplace();
        Clock::pin(Date::fromParts(2026, 3, 14, 9, 26, 53));
        writePdf(glassList().pages(), dir / "export.pdf");
        if (c.fileChanged)
            std::ofstream(dir / "export.pdf", std::ios::app) << "%";
        PageBuilder again = glassList();
        if (c.pagesChanged)
            again.text(720, 5000, "Door glass");
        Clock::pin(Date::fromParts(2027, 1, 2));
        writePdf(again.pages(), dir / "printed.pdf");
        Clock::unpin();

        const std::string printed = fileBytes(dir / "printed.pdf");
        EXPECT_EQ(printed.find("/CreationDate (D:20260314092653)") != std::string::npos, c.copied);
        if (c.copied)
            EXPECT_EQ(printed, fileBytes(dir / "export.pdf"));
        else
            EXPECT_NE(printed.find("/CreationDate (D:20270102"), std::string::npos);
    }
}

// Sections: a report of two pages, an empty one (a blank landscape page, so its bookmark has a
// page to open) and a one-page report, each bookmarked at its first page; the metadata as given.
TEST(WritePdfSections, EachSectionIsBookmarkedAtItsFirstPage) {
    test::TempDir dir;
    PageBuilder two("Two");
    two.addPage();
    two.text(720, 1440, "first of two");
    two.addPage();
    two.text(720, 1440, "second of two");
    page::Pages empty;
    empty.orientation = page::Orientation::Landscape;
    PageBuilder one("One");
    one.addPage();
    one.text(720, 1440, "only one");
    writePdf({{"Two pages", &two.pages()}, {"Nothing", &empty}, {"One page", &one.pages()}},
             dir / "sections.pdf", {"Bid Package - Clinic", "Glass & Co.", "Clinic"});

    auto doc = openPdf(dir / "sections.pdf");
    ASSERT_TRUE(doc);
    ASSERT_EQ(doc->pages(), 4);
    EXPECT_NE(pdfPageText(*doc, 3).find("only one"), std::string::npos);
    std::unique_ptr<poppler::page> blank(doc->create_page(2));
    EXPECT_DOUBLE_EQ(blank->page_rect().width(), 792);

    std::unique_ptr<poppler::toc> toc(doc->create_toc());
    ASSERT_TRUE(toc);
    const auto destinations = doc->create_destination_map();
    const std::pair<const char*, int> expected[] = {
        {"Two pages", 1}, {"Nothing", 3}, {"One page", 4}};
    const auto items = toc->root()->children();
    ASSERT_EQ(items.size(), std::size(expected));
    for (std::size_t i = 0; i < items.size(); ++i) {
        EXPECT_EQ(test::toUtf8(items[i]->title()), expected[i].first);
        const auto found = destinations.find(bookmarkDestination(i + 1));
        ASSERT_NE(found, destinations.end()) << expected[i].first;
        EXPECT_EQ(found->second.page_number(), expected[i].second) << expected[i].first;
    }
    EXPECT_EQ(test::toUtf8(doc->get_title()), "Bid Package - Clinic");
    EXPECT_EQ(test::toUtf8(doc->get_author()), "Glass & Co.");
    EXPECT_EQ(test::toUtf8(doc->get_subject()), "Clinic");
}

} // namespace
} // namespace qr::output
