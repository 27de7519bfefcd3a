// The printer and the preview paint pages with QPainter; what they show must put the same ink
// at the same places as the PDF and PNG, drawn by cairo.
#include "platform/output/output_test_support.hpp"
#include "platform/output/png_writer.hpp"
#include "platform/preview/painter_renderer.hpp"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

namespace qr::output {
namespace {

using test::InkBox;
using test::inkBox;
using test::PageBuilder;

constexpr double kDpi = 144; // 10 twips a pixel

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
        const InkBox a =
            inkBox([&](int x, int y) { return cairo.pixel(x, y); }, r.x0, r.y0, r.x1, r.y1);
        const InkBox q = inkBox([&](int x, int y) { return std::uint32_t(qt.pixel(x, y)); }, r.x0,
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
