// Printing for real: reports sent through CUPS to the private queue that ./run test starts
// (scripts/print-services.sh), checked by what arrived at the queue's device: the job's name,
// its page count and its paper.
#include "cups_queue.hpp"
#include "output_test_support.hpp"
#include "platform/output/printer.hpp"
#include "support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace qr::output {
namespace {

using test::CupsQueue;
using test::ScopedEnv;

page::Pages markup(int count) {
    test::PageBuilder b("Markup");
    for (int n = 1; n <= count; ++n) {
        b.addPage();
        b.text(720, 1440, "Markup with cost pricing");
        b.text(720, 2880, "Page " + std::to_string(n) + " of " + std::to_string(count));
    }
    return b.pages();
}

TEST(PrintCups, ReportReachesTheDefaultQueueWithItsPagesAndName) {
    if (!CupsQueue::available())
        GTEST_SKIP() << "needs the private CUPS of ./run test (scripts/print-services.sh)";
    ScopedEnv noOverride(kPrinterVariable, std::nullopt);
    test::TempDir scratch; // the job's PDF goes through the temporary folder, and leaves it
    ScopedEnv temporaryFolder("TMPDIR", scratch.path().string());
    CupsQueue queue;
    const std::string name = CupsQueue::uniqueName("Markup - Lakeside Medical Office");

    printPages(markup(3), name);
    EXPECT_TRUE(test::folderContents(scratch.path()).empty());

    ASSERT_EQ(queue.waitForJob(name), 3) << "the job did not arrive with three pages";
    const std::string data = queue.printed();
    EXPECT_EQ(test::printedJobName(data), name);
    auto pdf = test::printedPdf(data);
    if (!pdf)
        GTEST_SKIP() << "the queue prints PostScript; page count checked through CUPS only";
    ASSERT_EQ(pdf->pages(), 3);
    for (int i = 0; i < 3; ++i) {
        std::unique_ptr<poppler::page> p(pdf->create_page(i));
        EXPECT_NEAR(p->page_rect().width(), 612, 1); // Letter
        EXPECT_NEAR(p->page_rect().height(), 792, 1);
        EXPECT_NE(test::pdfPageText(*pdf, i).find("Page " + std::to_string(i + 1) + " of 3"),
                  std::string::npos);
    }
}

} // namespace
} // namespace qr::output
