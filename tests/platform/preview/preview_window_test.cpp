// The preview window driven the way a user drives it: keys, the page box, the zoom box, the find
// bar, the side panel and the export dialogs, and checked by what it shows. Under ./run test the
// windows are on a private Xvfb display.
#include "platform/output/output_test_support.hpp"
#include "platform/preview/preview_page_view.hpp"
#include "platform/preview/preview_thumbnails.hpp"
#include "platform/preview/preview_window.hpp"
#include "preview_window_support.hpp"
#include "support/temp_dir.hpp"

#include <QComboBox>
#include <QFileDialog>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QWheelEvent>
#include <fstream>
#include <gtest/gtest.h>

namespace qr::output {
namespace {

using test::countPixels;
using test::pressKey;

const page::FontSpec kHeading{"Arial", 14, true};
const page::FontSpec kBig{"Arial", 36, true};

// Five pages of a glass order. Page 1 prints FIRST on the left, page 2 SECOND on the right, so a
// picture of the window tells which page it shows; "Tempered" appears on pages 2, 3 and 5.
page::Pages glassOrder(int pageCount = 5) {
    test::PageBuilder b("Glass Order");
    for (int n = 1; n <= pageCount; ++n) {
        b.addPage();
        b.text(720, 1200, "Glass Order - Storefront", kHeading);
        b.line(720, 1400, 11520, 1400);
        if (n == 1)
            b.text(720, 4000, "FIRST", kBig);
        if (n == 2)
            b.text(6500, 4000, "SECOND", kBig);
        if (n == 2 || n == 3 || n == 5)
            b.text(720, 6000, "Tempered safety glass 1/4\" clear, 48 x 96");
        b.text(720, 6400, "Annealed glass 1/8\" bronze, 24 x 36");
        b.text(5000, 15000, "Page " + std::to_string(n) + " of " + std::to_string(pageCount));
    }
    return b.pages();
}

// Where a text item of page `pageIndex` is in the page view now.
QRect itemRectInView(PageView& view, const page::Pages& pages, std::size_t pageIndex,
                     std::size_t itemIndex) {
    const auto item = std::get<page::TextItem>(pages.pages[pageIndex].items[itemIndex]);
    const QRect page = view.pageRectInView(pageIndex);
    const double scale = double(page.width()) / pages.pages[pageIndex].width;
    return QRectF(page.x() + item.box.x * scale, page.y() + item.box.y * scale,
                  item.box.width * scale, item.box.height * scale)
        .toAlignedRect();
}

bool near(QRgb a, QRgb b, int tolerance = 6) {
    return std::abs(qRed(a) - qRed(b)) <= tolerance &&
           std::abs(qGreen(a) - qGreen(b)) <= tolerance &&
           std::abs(qBlue(a) - qBlue(b)) <= tolerance;
}

QImage grabPages(PreviewWindow& window) {
    return window.pageView().viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

class PreviewWindowTest : public ::testing::Test {
  protected:
    void TearDown() override {
        if (window)
            window->close();
    }
    /// Opens a glass order of `pageCount` pages in a window and waits until it is on the screen.
    bool open(int pageCount = 5) {
        pages = glassOrder(pageCount);
        window = std::make_unique<PreviewWindow>(pages, "Glass Order");
        return test::showAndActivate(*window);
    }
    test::WindowTestSession session;
    const std::string& platform = session.platform();
    page::Pages pages;
    std::unique_ptr<PreviewWindow> window;
};

TEST_F(PreviewWindowTest, ModalPreviewIsDrivenByKeysShowsThePageAndReturnsWhenClosed) {
    SCOPED_TRACE("Qt platform " + platform);
    pages = glassOrder();
    QString pageBoxAfterNext, zoomBoxAfterZoom, findStatus;
    int zoomBefore = 0, zoomAfterKeys = 0, zoomAfterWheel = 0, secondPageTop = -1;
    int secondInk = -1, firstInkOnSecond = -1, highlighted = -1, highlightArea = 0;

    test::ModalScript script([&] {
        auto* window = test::waitForModal<PreviewWindow>();
        ASSERT_NE(window, nullptr) << "the preview window did not come up";
        ASSERT_TRUE(test::showAndActivate(*window));
        EXPECT_EQ(window->pageBoxText(), "1 of 5");

        pressKey(Qt::Key_PageDown, Qt::ControlModifier); // next page
        pageBoxAfterNext = window->findChild<QLineEdit*>("pageBox")->text();
        secondPageTop = window->pageView().pageRectInView(1).top();

        zoomBefore = window->zoomPercent();
        pressKey(Qt::Key_Plus, Qt::ControlModifier);
        pressKey(Qt::Key_Plus, Qt::ControlModifier);
        pressKey(Qt::Key_Minus, Qt::ControlModifier);
        zoomAfterKeys = window->zoomPercent();
        zoomBoxAfterZoom = window->findChild<QComboBox*>("zoomBox")->currentText();
        QWidget* viewport = window->pageView().viewport();
        QWheelEvent wheel(QPointF(50, 50), viewport->mapToGlobal(QPointF(50, 50)), QPoint(),
                          QPoint(0, 120), Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(viewport, &wheel);
        zoomAfterWheel = window->zoomPercent();
        window->setZoom({ZoomMode::FitWidth, 100});

        pressKey(Qt::Key_F, Qt::ControlModifier); // to the find box
        auto* findBox = window->findChild<QLineEdit*>("findBox");
        EXPECT_EQ(QApplication::focusWidget(), findBox);
        findBox->setText("TEMPERED");
        pressKey(Qt::Key_Return, Qt::NoModifier, findBox);
        findStatus = window->findChild<QLabel*>("findStatus")->text();

        const QImage shot = grabPages(*window);
        PageView& view = window->pageView();
        secondInk = countPixels(shot, itemRectInView(view, pages, 1, 2), test::isInk);
        // Where page 1 prints FIRST, page 2 is blank paper.
        const QRect first =
            itemRectInView(view, pages, 0, 2)
                .translated(view.pageRectInView(1).topLeft() - view.pageRectInView(0).topLeft());
        firstInkOnSecond = countPixels(shot, first, test::isInk);
        const QRect match = view.matchRectInView(window->currentMatch());
        highlightArea = match.width() * match.height();
        highlighted =
            countPixels(shot, match, [](QRgb p) { return near(p, PageView::kCurrentMatchColor); });

        pressKey(Qt::Key_Escape, Qt::NoModifier, window);
    });
    // Blocks until the window is closed: by the script's Esc, or by the guard after a minute.
    WindowPreview().show(pages, "Glass Order");

    EXPECT_TRUE(script.ran());
    EXPECT_FALSE(script.timedOut()) << "the window had to be closed by force";
    EXPECT_EQ(pageBoxAfterNext, "2 of 5");
    EXPECT_EQ(secondPageTop, PageColumn::kGap); // page 2 at the top of the view
    EXPECT_EQ(zoomAfterKeys, zoomInStep(zoomBefore));
    EXPECT_EQ(zoomBoxAfterZoom, QString::number(zoomAfterKeys) + "%");
    EXPECT_EQ(zoomAfterWheel, zoomInStep(zoomAfterKeys));
    EXPECT_EQ(findStatus, "1 of 3"); // the first match on or after page 2
    EXPECT_GT(secondInk, 200) << "SECOND of page 2 is not where page 2 should show";
    EXPECT_EQ(firstInkOnSecond, 0);
    EXPECT_GT(highlighted, highlightArea / 3) << "the current match is not highlighted";
    EXPECT_TRUE(QApplication::topLevelWidgets().empty() ||
                std::none_of(QApplication::topLevelWidgets().begin(),
                             QApplication::topLevelWidgets().end(),
                             [](QWidget* w) { return w->isVisible(); }));
}

TEST_F(PreviewWindowTest, PageCommandsAndThePageBoxMoveThroughThePages) {
    ASSERT_TRUE(open());
    PreviewWindow& window = *this->window;
    auto* pageBox = window.findChild<QLineEdit*>("pageBox");
    struct Case {
        const char* name;
        std::size_t from;
        std::function<void()> act;
        std::size_t to;
    };
    const auto key = [](int k) { return [k] { pressKey(k, Qt::ControlModifier); }; };
    const auto typed = [&](const char* text) {
        return [&, text] {
            pageBox->setFocus();
            pageBox->setText(text);
            pageBox->setModified(true);
            pressKey(Qt::Key_Return, Qt::NoModifier, pageBox);
        };
    };
    const Case cases[] = {
        {"Ctrl+Home", 2, key(Qt::Key_Home), 0},
        {"Ctrl+End", 2, key(Qt::Key_End), 4},
        {"Ctrl+PgUp", 2, key(Qt::Key_PageUp), 1},
        {"Ctrl+PgDown", 2, key(Qt::Key_PageDown), 3},
        {"Ctrl+PgUp on the first page", 0, key(Qt::Key_PageUp), 0},
        {"Ctrl+PgDown on the last page", 4, key(Qt::Key_PageDown), 4},
        {"page box: a number", 0, typed("4"), 3},
        {"page box: the text it shows, edited", 0, typed(" 3 of 5"), 2},
        {"page box: zero", 1, typed("0"), 1},
        {"page box: past the end", 1, typed("99"), 1},
        {"page box: not a number", 1, typed("last"), 1},
        {"thumbnail chosen", 0,
         [&] {
             window.thumbnails().selectionModel()->setCurrentIndex(
                 window.thumbnails().model()->index(3, 0), QItemSelectionModel::ClearAndSelect);
         },
         3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        window.goToPage(c.from);
        window.pageView().setFocus();
        c.act();
        EXPECT_EQ(window.currentPage(), c.to);
        const QString shown = QString("%1 of 5").arg(c.to + 1);
        EXPECT_EQ(window.pageBoxText(), shown);
        pageBox->clearFocus();
        EXPECT_EQ(pageBox->text(), shown);
        EXPECT_EQ(window.thumbnails().currentIndex().row(), int(c.to));
    }
}

TEST_F(PreviewWindowTest, ZoomBoxTakesFitModesAndPercentagesWithinLimits) {
    ASSERT_TRUE(open());
    PreviewWindow& window = *this->window;
    auto* zoomBox = window.findChild<QComboBox*>("zoomBox");
    struct Case {
        const char* typed;
        Zoom zoom;
        const char* shown;
    };
    const Case cases[] = {
        {"180", {ZoomMode::Percent, 180}, "180%"},
        {"75 %", {ZoomMode::Percent, 75}, "75%"},
        {"1000%", {ZoomMode::Percent, 400}, "400%"},
        {"30", {ZoomMode::Percent, 50}, "50%"},
        {"fit page", {ZoomMode::FitPage, 100}, "Fit page"},
        {"huge", {ZoomMode::FitPage, 100}, "Fit page"}, // not understood: the zoom stays
        {"Fit width", {ZoomMode::FitWidth, 100}, "Fit width"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        zoomBox->setEditText(c.typed);
        pressKey(Qt::Key_Return, Qt::NoModifier, zoomBox->lineEdit());
        EXPECT_EQ(window.zoom(), c.zoom);
        EXPECT_EQ(zoomBox->currentText(), c.shown);
        if (c.zoom.mode == ZoomMode::Percent) {
            EXPECT_EQ(window.zoomPercent(), c.zoom.percent);
        }
    }
    // Fit page shows a whole page; fit width fills the width.
    window.setZoom({ZoomMode::FitPage, 100});
    const QRect view = window.pageView().viewport()->rect();
    EXPECT_TRUE(view.contains(window.pageView().pageRectInView(window.currentPage())));
    window.setZoom({ZoomMode::FitWidth, 100});
    EXPECT_NEAR(window.pageView().pageRectInView(0).width(), view.width() - 2 * PageColumn::kGap,
                2);
}

TEST_F(PreviewWindowTest, FindGoesFromMatchToMatchAndWraps) {
    ASSERT_TRUE(open());
    PreviewWindow& window = *this->window;
    window.find("tempered");
    ASSERT_EQ(window.matchCount(), 3u);
    struct Step {
        int key;
        Qt::KeyboardModifiers modifiers;
        std::size_t page;
        const char* status;
    };
    const Step steps[] = {
        {Qt::Key_F3, Qt::NoModifier, 2, "2 of 3"},
        {Qt::Key_F3, Qt::NoModifier, 4, "3 of 3"},
        {Qt::Key_F3, Qt::NoModifier, 1, "1 of 3"}, // wraps to the start
        {Qt::Key_F3, Qt::ShiftModifier, 4, "3 of 3"},
    };
    EXPECT_EQ(window.currentPage(), 1u);
    EXPECT_EQ(window.findStatusText(), "1 of 3");
    for (const auto& s : steps) {
        SCOPED_TRACE(s.status);
        pressKey(s.key, s.modifiers);
        EXPECT_EQ(window.currentPage(), s.page);
        EXPECT_EQ(window.findStatusText(), s.status);
        EXPECT_TRUE(window.pageView().viewport()->rect().contains(
            window.pageView().matchRectInView(window.currentMatch())));
    }
    window.find("mirror");
    EXPECT_EQ(window.matchCount(), 0u);
    EXPECT_EQ(window.findStatusText(), "No matches");
    EXPECT_EQ(window.currentPage(), 4u); // nothing found: the page stays
    window.findChild<QLineEdit*>("findBox")->clear();
    EXPECT_EQ(window.findStatusText(), "");
    // With no match highlighted, no highlight colour anywhere.
    const QImage shot = grabPages(window);
    EXPECT_EQ(
        countPixels(shot, shot.rect(), [](QRgb p) { return near(p, PageView::kMatchColor, 2); }),
        0);
}

TEST_F(PreviewWindowTest, LargeReportDrawsOnlyWhatComesIntoView) {
    ASSERT_TRUE(open(2000));
    PreviewWindow& window = *this->window;
    grabPages(window);
    const auto& thumbnails = window.thumbnailModel();
    EXPECT_EQ(window.pageBoxText(), "1 of 2000");
    EXPECT_LE(window.pageView().pagesPainted(), 8u);
    EXPECT_LE(thumbnails.picturesDrawn(), 30);

    window.lastPage();
    const QImage last = grabPages(window);
    EXPECT_EQ(window.pageBoxText(), "2000 of 2000");
    EXPECT_LE(window.pageView().pagesPainted(), 16u);
    EXPECT_LE(thumbnails.picturesDrawn(), 60);
    // The last page is on the screen, with its ink.
    EXPECT_GT(countPixels(last, itemRectInView(window.pageView(), pages, 1999, 0), test::isInk),
              50);
}

TEST_F(PreviewWindowTest, ExportsThroughTheFileDialog) {
    test::TempDir dir;
    ASSERT_TRUE(open());
    PreviewWindow& window = *this->window;
    struct Case {
        const char* name;
        std::function<void()> run;
        std::string typed;   // the name typed in the dialog
        std::string written; // the file that must appear
    };
    const Case cases[] = {
        {"PDF", [&] { window.exportPdfWithDialog(); }, "order", "order.pdf"},
        {"workbook", [&] { window.exportWorkbookWithDialog(); }, "order.xls", "order.xls"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        test::ModalScript script([&] {
            auto* dialog = test::waitForModal<QFileDialog>();
            ASSERT_NE(dialog, nullptr);
            dialog->setDirectory(QString::fromStdString(dir.path().string()));
            dialog->selectFile(QString::fromStdString((dir / c.typed).string()));
            static_cast<QDialog*>(dialog)->accept(); // what the Save button does
        });
        c.run();
        EXPECT_TRUE(script.ran());
        EXPECT_TRUE(std::filesystem::is_regular_file(dir / c.written));
    }
    auto pdf = test::openPdf(dir / "order.pdf");
    ASSERT_TRUE(pdf);
    EXPECT_EQ(pdf->pages(), 5);
    EXPECT_NE(test::pdfPageText(*pdf, 1).find("SECOND"), std::string::npos);
    std::ifstream xls(dir / "order.xls", std::ios::binary);
    char signature[4] = {};
    xls.read(signature, 4); // an OLE2 compound file, as Excel 97-2003 writes
    EXPECT_EQ(std::string(signature, 4), std::string("\xD0\xCF\x11\xE0", 4));

    // Cancelling writes nothing.
    test::ModalScript cancel([&] {
        if (auto* dialog = test::waitForModal<QFileDialog>())
            dialog->reject();
    });
    window.exportPdfWithDialog();
    EXPECT_TRUE(cancel.ran());
    EXPECT_EQ(test::folderContents(dir.path()).size(), 2u);
}

} // namespace
} // namespace qr::output
