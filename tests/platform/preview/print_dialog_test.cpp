// The preview's print button: the print dialog offers the default queue of the private CUPS
// that ./run test starts (scripts/print-services.sh), and the job arrives there whole. Also the
// page range the print dialog may choose, painted on a PDF printer.
#include "platform/output/cups_queue.hpp"
#include "platform/preview/painter_printing.hpp"
#include "platform/preview/preview_window.hpp"
#include "preview_window_support.hpp"
#include "support/temp_dir.hpp"

#include <QPrintDialog>
#include <QPrinter>
#include <gtest/gtest.h>

namespace qr::output {
namespace {

using test::CupsQueue;

page::Pages markup(int count, bool landscapeSecond = false) {
    test::PageBuilder b("Markup");
    for (int n = 1; n <= count; ++n) {
        b.addPage(landscapeSecond && n == 2);
        b.text(720, 1440, "Markup with cost pricing");
        b.text(720, 2880, "Page " + std::to_string(n) + " of " + std::to_string(count));
    }
    return b.pages();
}

TEST(PrintCups, ThePreviewsPrintDialogSendsTheReportToTheChosenPrinter) {
    if (!CupsQueue::available())
        GTEST_SKIP() << "needs the private CUPS of ./run test (scripts/print-services.sh)";
    test::WindowTestSession session; // the display first, then the queue
    CupsQueue queue;
    const std::string title = CupsQueue::uniqueName("Markup");
    const page::Pages pages = markup(4);
    PreviewWindow window(pages, title);
    ASSERT_TRUE(test::showAndActivate(window));
    std::string printer;
    test::ModalScript script([&] {
        auto* dialog = test::waitForModal<QPrintDialog>();
        ASSERT_NE(dialog, nullptr);
        printer = dialog->printer()->printerName().toStdString();
        static_cast<QDialog*>(dialog)->accept(); // the Print button, with what it offers
    });
    window.printWithDialog();
    window.close();

    EXPECT_TRUE(script.ran());
    EXPECT_EQ(printer, std::getenv("QR_TEST_PRINTER"));
    ASSERT_EQ(queue.waitForJob(title), 4);
    EXPECT_EQ(test::printedJobName(queue.printed()), title);
}

TEST(PrintPageRange, PaintsTheChosenPagesEachInItsOrientation) {
    test::startWindowTests();
    test::TempDir dir;
    const page::Pages pages = markup(4, true); // page 2 is landscape
    struct Case {
        std::size_t first, last;
        std::vector<std::string> texts;
        std::vector<double> widths; // points
    };
    const Case cases[] = {
        {0, 3, {"Page 1 of 4", "Page 2 of 4", "Page 3 of 4", "Page 4 of 4"}, {612, 792, 612, 612}},
        {1, 2, {"Page 2 of 4", "Page 3 of 4"}, {792, 612}},
        {3, 3, {"Page 4 of 4"}, {612}},
        {2, 99, {"Page 3 of 4", "Page 4 of 4"}, {612, 612}}, // held within the pages
    };
    int n = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.first) + "-" + std::to_string(c.last));
        const auto file = dir / ("range-" + std::to_string(++n) + ".pdf");
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(QString::fromStdString(file.string()));
        setUpPrinter(printer, pages, "Markup");
        printPageRange(printer, pages, c.first, c.last, "Markup");

        auto pdf = test::openPdf(file);
        ASSERT_TRUE(pdf);
        ASSERT_EQ(pdf->pages(), int(c.texts.size()));
        for (int i = 0; i < pdf->pages(); ++i) {
            std::unique_ptr<poppler::page> p(pdf->create_page(i));
            EXPECT_NE(test::pdfPageText(*pdf, i).find(c.texts[std::size_t(i)]), std::string::npos);
            EXPECT_NEAR(p->page_rect().width(), c.widths[std::size_t(i)], 1);
        }
        EXPECT_EQ(test::toUtf8(pdf->info_key("Title")), "Markup");
    }
}

} // namespace
} // namespace qr::output
