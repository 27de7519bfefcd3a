// Printing for real: reports sent through CUPS to the private queue that ./run test starts
// (scripts/print-services.sh), checked by what arrived at the queue's device: the job's name,
// its page count and its paper. Also the page range the print dialog may choose, painted on a
// PDF printer.
#include "output_test_support.hpp"
#include "platform/output/preview_window.hpp"
#include "platform/output/printer.hpp"
#include "preview_window_support.hpp"
#include "support/temp_dir.hpp"

#include <QPrintDialog>
#include <QPrinter>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace qr::output {
namespace {

using test::ScopedEnv;

page::Pages markup(int count, bool landscapeSecond = false) {
    test::PageBuilder b("Markup");
    for (int n = 1; n <= count; ++n) {
        b.addPage(landscapeSecond && n == 2);
        b.text(720, 1440, "Markup with cost pricing");
        b.text(720, 2880, "Page " + std::to_string(n) + " of " + std::to_string(count));
    }
    return b.pages();
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The private queue of the test run, one job at a time: every job lands in the same file.
class CupsQueue {
  public:
    static bool available() {
        return std::getenv("CUPS_SERVER") && std::getenv("QR_TEST_PRINTED_JOB") &&
               std::getenv("QR_TEST_CUPS_PAGE_LOG");
    }

    CupsQueue()
        : m_job(std::getenv("QR_TEST_PRINTED_JOB")),
          m_pageLog(std::getenv("QR_TEST_CUPS_PAGE_LOG")) {
        const std::string lock = m_job.string() + ".lock";
        m_lock = ::open(lock.c_str(), O_CREAT | O_RDWR, 0666);
        if (m_lock >= 0)
            ::flock(m_lock, LOCK_EX);
        std::filesystem::remove(m_job);
    }
    ~CupsQueue() {
        if (m_lock >= 0)
            ::close(m_lock); // releases the lock
    }
    CupsQueue(const CupsQueue&) = delete;
    CupsQueue& operator=(const CupsQueue&) = delete;

    /// A job name no other job of any test run has had.
    static std::string uniqueName(const std::string& title) {
        static int counter = 0;
        return title + " - test " + std::to_string(::getpid()) + "-" + std::to_string(++counter);
    }

    /// Waits until CUPS has finished the job named `name` and returns the page count it logged
    /// (-1 when it does not finish within a minute).
    int waitForJob(const std::string& name) const {
        const std::regex line("^job \\d+ pages total (\\d+) name (.*)$");
        for (int tries = 0; tries < 600; ++tries) {
            std::istringstream log(readFile(m_pageLog));
            std::string text;
            std::smatch found;
            while (std::getline(log, text)) {
                if (std::regex_match(text, found, line) && found[2] == name &&
                    std::filesystem::exists(m_job))
                    return std::stoi(found[1]);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        return -1;
    }

    /// What the device received.
    std::string printed() const { return readFile(m_job); }

  private:
    std::filesystem::path m_job;
    std::filesystem::path m_pageLog;
    int m_lock = -1;
};

// The PDF inside what the queue wrote (a PDF printer puts a PJL header in front of it).
std::unique_ptr<poppler::document> printedPdf(const std::string& data) {
    const auto start = data.find("%PDF-");
    if (start == std::string::npos)
        return nullptr;
    static std::vector<char> bytes; // poppler reads from it while the document lives
    bytes.assign(data.begin() + std::ptrdiff_t(start), data.end());
    return std::unique_ptr<poppler::document>(
        poppler::document::load_from_raw_data(bytes.data(), int(bytes.size())));
}

// The job name the device was given: PJL's JOB NAME, or PostScript's title.
std::string printedJobName(const std::string& data) {
    std::smatch found;
    static const std::regex pjl("@PJL JOB NAME = \"([^\"]*)\"");
    static const std::regex postscript("%%Title: ([^\r\n]*)");
    if (std::regex_search(data, found, pjl) || std::regex_search(data, found, postscript))
        return found[1];
    return {};
}

TEST(PrintCups, ReportReachesTheDefaultQueueWithItsPagesAndName) {
    if (!CupsQueue::available())
        GTEST_SKIP() << "needs the private CUPS of ./run test (scripts/print-services.sh)";
    ScopedEnv noOverride(kPrinterVariable, std::nullopt);
    CupsQueue queue;
    const std::string name = CupsQueue::uniqueName("Markup - Lakeside Medical Office");

    printPages(markup(3), name);

    ASSERT_EQ(queue.waitForJob(name), 3) << "the job did not arrive with three pages";
    const std::string data = queue.printed();
    EXPECT_EQ(printedJobName(data), name);
    auto pdf = printedPdf(data);
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
    EXPECT_EQ(printedJobName(queue.printed()), title);
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
