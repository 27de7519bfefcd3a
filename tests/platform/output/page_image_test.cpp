// Pictures of pages from cairo (PNG): the ink lands where the items were drawn.
#include "output_test_support.hpp"
#include "platform/core/error.hpp"
#include "platform/output/png_writer.hpp"
#include "support/temp_dir.hpp"

#include <QImage>
#include <cmath>
#include <gtest/gtest.h>

namespace qr::output {
namespace {

using test::inkBox;
using test::isDark;
using test::PageBuilder;

constexpr double kDpi = 144; // 10 twips a pixel

PageBuilder samplePage() {
    PageBuilder b;
    b.addPage();
    b.line(1440, 1440, 4320, 1440, 20);
    b.checkBox(2880, 2880, 200, true);
    b.checkBox(3600, 2880, 200, false);
    b.rect({5000, 2800, 1000, 400}, 0xFF0000, 0);
    page::FontSpec big;
    big.sizePoints = 24;
    b.text(1440, 5000, "Storefront 4-1/2\"", big);
    return b;
}

TEST(RenderPageImage, InkLandsWhereItemsWereDrawn) {
    PageBuilder b = samplePage();
    const PageImage image = renderPageImage(b.pages().pages[0], b.pages().fonts, kDpi);
    ASSERT_EQ(image.width, 1224);
    ASSERT_EQ(image.height, 1584);
    struct Probe {
        const char* what;
        int x, y;
        bool ink;
    };
    const Probe probes[] = {
        {"line, upper half", 300, 143, true},
        {"line, lower half", 300, 144, true},
        {"above the line", 300, 140, false},
        {"below the line", 300, 147, false},
        {"left of the line", 140, 144, false},
        {"right of the line", 435, 144, false},
        {"centre of the checked box", 298, 298, true},
        {"centre of the unchecked box", 370, 298, false},
        {"border of the unchecked box", 360, 298, true},
        {"empty paper", 900, 1400, false},
    };
    for (const auto& p : probes) {
        EXPECT_EQ(isDark(image.pixel(p.x, p.y)), p.ink) << p.what;
    }
    EXPECT_EQ(image.pixel(550, 300), 0xFFFF0000u) << "filled rectangle";
    EXPECT_EQ(image.pixel(900, 1400), 0xFFFFFFFFu) << "paper is white";
    const test::InkBox text =
        inkBox([&](int x, int y) { return image.pixel(x, y); }, 100, 400, 1224, 600);
    ASSERT_FALSE(text.empty());
    EXPECT_NEAR(text.left, 145, 3);   // the run starts at x = 1440 twips
    EXPECT_NEAR(text.bottom, 500, 3); // sits on the baseline (no descenders in the text)
}

TEST(RenderPageImage, ResolutionOutsideTheRangeIsAnError) {
    PageBuilder b = samplePage();
    for (double dpi : {0.0, -72.0, std::nan(""), 1e6}) {
        SCOPED_TRACE(dpi);
        EXPECT_THROW(renderPageImage(b.pages().pages[0], b.pages().fonts, dpi), Error);
    }
}

TEST(WritePng, FileReadsBackWithTheSamePixels) {
    test::TempDir dir;
    PageBuilder b = samplePage();
    writePng(b.pages(), 0, dir / "page1.png", 72);
    QImage read(QString::fromStdString((dir / "page1.png").string()));
    ASSERT_FALSE(read.isNull());
    EXPECT_EQ(read.width(), 612);
    EXPECT_EQ(read.height(), 792);
    const PageImage drawn = renderPageImage(b.pages().pages[0], b.pages().fonts, 72);
    for (auto [x, y] : {std::pair{150, 72}, {275, 150}, {300, 500}, {100, 250}}) {
        EXPECT_EQ(read.pixel(x, y), drawn.pixel(x, y)) << x << "," << y;
    }
    EXPECT_THROW(writePng(b.pages(), 1, dir / "page2.png", 72), Error);
    EXPECT_EQ(test::folderContents(dir.path()), std::vector<std::string>{"page1.png"});
}

} // namespace
} // namespace qr::output
