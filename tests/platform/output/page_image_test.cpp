// Pictures of pages, from cairo (PNG) and from QPainter (printer and preview). Both must put the
// same ink at the same places.
#include "output_test_support.hpp"
#include "platform/core/error.hpp"
#include "platform/output/gui_application.hpp"
#include "platform/output/painter_renderer.hpp"
#include "platform/output/png_writer.hpp"
#include "support/temp_dir.hpp"

#include <QImage>
#include <QPainter>
#include <cmath>
#include <gtest/gtest.h>

namespace qr::output {
namespace {

using test::PageBuilder;

constexpr double kDpi = 144; // 10 twips a pixel

struct Box {
    int left = 0, top = 0, right = -1, bottom = -1; // inclusive; empty when right < left
    bool empty() const { return right < left; }
};

int luminance(std::uint32_t argb) {
    return (((argb >> 16) & 0xFF) * 30 + ((argb >> 8) & 0xFF) * 59 + (argb & 0xFF) * 11) / 100;
}

bool isInk(std::uint32_t argb) {
    return luminance(argb) < 128;
}

// The bounding box of the ink inside a region given in pixels.
template <typename PixelAt> Box inkBox(PixelAt pixelAt, int x0, int y0, int x1, int y1) {
    Box box{x1, y1, x0 - 1, y0 - 1};
    for (int y = y0; y < y1; ++y) {
        for (int x = x0; x < x1; ++x) {
            if (!isInk(pixelAt(x, y)))
                continue;
            box.left = std::min(box.left, x);
            box.top = std::min(box.top, y);
            box.right = std::max(box.right, x);
            box.bottom = std::max(box.bottom, y);
        }
    }
    return box;
}

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
        EXPECT_EQ(isInk(image.pixel(p.x, p.y)), p.ink) << p.what;
    }
    EXPECT_EQ(image.pixel(550, 300), 0xFFFF0000u) << "filled rectangle";
    EXPECT_EQ(image.pixel(900, 1400), 0xFFFFFFFFu) << "paper is white";
    const Box text = inkBox([&](int x, int y) { return image.pixel(x, y); }, 100, 400, 1224, 600);
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
    ensureGuiApplication();
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

// The printer and the preview paint with QPainter; what they show must match the PDF and PNG.
TEST(PainterRenderer, PaintsTheSameInkAsCairo) {
    PageBuilder b;
    b.addPage();
    page::FontSpec heading;
    heading.sizePoints = 18;
    heading.bold = true;
    heading.underline = true;
    b.text(1440, 1440, "Final Glass Report", heading);
    b.text(1440, 2000, "Tempered 1/4\" clear, 36 x 84");
    page::FontSpec serif;
    serif.family = "Times New Roman";
    serif.italic = true;
    b.text(7000, 2000, "$12,345.67", serif);
    b.line(1440, 2200, 10800, 2200, 15);
    b.checkBox(1440, 2600, 200, true);
    const auto& page = b.pages().pages[0];

    const PageImage cairo = renderPageImage(page, b.pages().fonts, kDpi);
    QImage qt(cairo.width, cairo.height, QImage::Format_RGB32);
    qt.fill(Qt::white);
    {
        PainterRenderer renderer;
        QPainter painter(&qt);
        painter.setTransform(QTransform::fromScale(kDpi / 1440, kDpi / 1440));
        renderer.paint(painter, page, b.pages().fonts);
    }
    struct Region {
        const char* what;
        int x0, y0, x1, y1;
    };
    const Region regions[] = {
        {"underlined heading", 100, 100, 1224, 170}, {"row text", 100, 175, 690, 215},
        {"serif amount", 690, 175, 1224, 215},       {"rule", 100, 216, 1224, 225},
        {"check box", 100, 250, 200, 290},
    };
    for (const auto& r : regions) {
        SCOPED_TRACE(r.what);
        const Box a =
            inkBox([&](int x, int y) { return cairo.pixel(x, y); }, r.x0, r.y0, r.x1, r.y1);
        const Box q = inkBox([&](int x, int y) { return std::uint32_t(qt.pixel(x, y)); }, r.x0,
                             r.y0, r.x1, r.y1);
        ASSERT_FALSE(a.empty());
        ASSERT_FALSE(q.empty());
        EXPECT_NEAR(q.left, a.left, 1);
        EXPECT_NEAR(q.right, a.right, 1);
        EXPECT_NEAR(q.top, a.top, 1);
        EXPECT_NEAR(q.bottom, a.bottom, 1);
    }
}

} // namespace
} // namespace qr::output
