// The bid package of a sample job (SQLite and PostgreSQL): its reports in one PDF, read back
// through poppler. Each
// report's share of the pages is taken from the report's own footer ("Page  1 of  n" on its
// first page), so the bookmarks, the page count and the numbering are checked against what the
// reports printed, not against the package's own counting.

#include "data/sample/sample_writer.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/db/connection.hpp"
#include "platform/db/recordset.hpp"
#include "platform/output/pdf_writer.hpp"
#include "reports/support/cost_fixture.hpp"
#include "service/bid_package.hpp"
#include "support/readers/file_readers.hpp"
#include "support/temp_dir.hpp"

#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <poppler-destination.h>
#include <poppler-document.h>
#include <poppler-toc.h>
#include <regex>

namespace qr::service {
namespace {

namespace fs = std::filesystem;

std::string utf8(const poppler::ustring& text) {
    const auto bytes = text.to_utf8();
    return {bytes.begin(), bytes.end()};
}

std::string firstText(db::Connection& connection, const std::string& sql, const char* column) {
    auto rows = connection.openRecordset(sql);
    return toText(rows->value(column));
}

/// A bookmark: its title and the page (from 1) it opens.
struct Bookmark {
    std::string title;
    int page = 0;
};

/// The document's top-level bookmarks, each resolved through its named destination.
std::vector<Bookmark> bookmarksOf(const fs::path& pdf) {
    std::unique_ptr<poppler::document> doc(poppler::document::load_from_file(pdf.string()));
    if (!doc) {
        ADD_FAILURE() << "poppler cannot open " << pdf;
        return {};
    }
    std::unique_ptr<poppler::toc> toc(doc->create_toc());
    if (!toc) {
        ADD_FAILURE() << pdf << " has no outline";
        return {};
    }
    const auto destinations = doc->create_destination_map();
    std::vector<Bookmark> bookmarks;
    std::size_t n = 0;
    for (const poppler::toc_item* item : toc->root()->children()) {
        const auto found = destinations.find(output::bookmarkDestination(++n));
        bookmarks.push_back(
            {utf8(item->title()), found == destinations.end() ? 0 : found->second.page_number()});
    }
    return bookmarks;
}

/// The page numbering a page prints: {n, m} of "Page  n of  m", or {0, 0} when none.
std::pair<int, int> printedPageNumber(const std::string& pageText) {
    static const std::regex pattern(R"(Page\s+(\d+)\s+of\s+(\d+))");
    std::smatch match;
    if (!std::regex_search(pageText, match, pattern))
        return {0, 0};
    return {std::stoi(match[1]), std::stoi(match[2])};
}

class BidPackage : public test::CostSampleTest {
  protected:
    void SetUp() override {
        CostSampleTest::SetUp();
        if (IsSkipped())
            return;
        service.setContainer(m_host->host);
        service.setVendorConnection(vendorConnection());
        service.setMasterConnection(masterConnection());
        request.jobId = 1;
        request.output = m_dir / "bid.pdf";
    }

    std::vector<test::ShownMessage>& shown() { return m_host->messages->shown; }

    PrintService service;
    BidPackageRequest request;
};

TEST_P(BidPackage, EachReportHasItsBookmarkAndOwnPageNumbersAndTheDocumentNamesTheJob) {
    printBidPackage(service, request);
    EXPECT_TRUE(shown().empty());

    const std::vector<std::string> pages = test::pdfPageTexts(request.output);
    const std::vector<Bookmark> bookmarks = bookmarksOf(request.output);
    std::vector<std::string> titles;
    for (const auto& bookmark : bookmarks)
        titles.push_back(bookmark.title);
    EXPECT_EQ(titles, (std::vector<std::string>{"Estimate", "Final Summary", "Glass List",
                                                "Labor Report"}));

    // Walk the sections: each starts at its bookmark with page 1 of its own count, numbers its
    // pages on, and the next one starts right after its last page.
    int expectedStart = 1;
    for (const Bookmark& bookmark : bookmarks) {
        SCOPED_TRACE(bookmark.title);
        ASSERT_EQ(bookmark.page, expectedStart);
        ASSERT_LE(bookmark.page, static_cast<int>(pages.size()));
        const auto [first, count] = printedPageNumber(pages[bookmark.page - 1]);
        ASSERT_EQ(first, 1);
        ASSERT_GE(count, 1);
        for (int n = 1; n <= count; ++n) {
            ASSERT_LE(bookmark.page - 1 + n, static_cast<int>(pages.size()));
            EXPECT_EQ(printedPageNumber(pages[bookmark.page - 2 + n]), std::make_pair(n, count));
        }
        expectedStart += count;
    }
    EXPECT_EQ(static_cast<int>(pages.size()), expectedStart - 1);
    EXPECT_GT(pages.size(), bookmarks.size()); // the glass list runs over more than one page

    // The document names the job and the firm.
    const std::string jobName =
        firstText(vendor(), "SELECT sJobName FROM JobSummary WHERE JobID=1", "sJobName");
    std::unique_ptr<poppler::document> doc(
        poppler::document::load_from_file(request.output.string()));
    ASSERT_TRUE(doc);
    EXPECT_EQ(utf8(doc->get_title()), "Bid Package - " + jobName);
    EXPECT_EQ(utf8(doc->get_author()), firstText(master(), "SELECT sName FROM Company", "sName"));
    EXPECT_EQ(utf8(doc->get_subject()), jobName);

    // Printed headless: nothing exported into the job's folder.
    EXPECT_FALSE(fs::exists(reportsFolder(jobName)));
}

TEST_P(BidPackage, ReportsNamedRunInTheGivenOrder) {
    request.reports = {"finallaborar", "armarkup2"};
    printBidPackage(service, request);
    const std::vector<Bookmark> bookmarks = bookmarksOf(request.output);
    ASSERT_EQ(bookmarks.size(), 2u);
    EXPECT_EQ(bookmarks[0].title, "Labor Report");
    EXPECT_EQ(bookmarks[1].title, "Estimate");
    const std::vector<std::string> pages = test::pdfPageTexts(request.output);
    EXPECT_NE(pages.front().find("Labor"), std::string::npos);
    EXPECT_NE(pages.back().find("Job Estimate"), std::string::npos);
}

// A report that fails, or a name no report has, leaves the file of an earlier package as it
// was and no temporary beside it.
TEST_P(BidPackage, AFailureWritesNothingAndNamesWhatFailed) {
    struct Case {
        const char* what;
        const char* dropTable; // made to fail by a missing table
        std::vector<std::string> reports;
        int errorNumber;
        const char* named;
        const char* shownTitle; // how the failing report shows its error
    };
    const Case cases[] = {
        {"request route", "LaborReport1", {}, 999, "'finallaborar'", "Error Encountered"},
        {"final summary's job size",
         "GlassOrderReport1",
         {},
         999,
         "'finalsummaryar'",
         "Error Encountered"},
        {"final glass report", "JobGlass", {}, 999, "'finalglassar'", "Quarvex Error"},
        {"unknown name", nullptr, {"armarkup2", "glasslist"}, 5, "'glasslist'", nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        test::TempDir out;
        const fs::path earlier = out / "bid.pdf";
        std::ofstream(earlier, std::ios::binary) << "the package sent yesterday";
        data::sample::writeSample(vendor(), master());
        if (c.dropTable)
            vendor().execute(std::string("DROP TABLE ") + c.dropTable);
        shown().clear();

        BidPackageRequest failing = request;
        failing.output = earlier;
        failing.reports = c.reports;
        try {
            printBidPackage(service, failing);
            ADD_FAILURE() << "the package was written";
        } catch (const Error& e) {
            EXPECT_EQ(e.number(), c.errorNumber);
            EXPECT_NE(e.description().find(c.named), std::string::npos) << e.description();
        }
        EXPECT_EQ(test::fileBytes(earlier), "the package sent yesterday");
        EXPECT_EQ(std::distance(fs::directory_iterator(out.path()), fs::directory_iterator()), 1);
        if (c.shownTitle) {
            ASSERT_EQ(shown().size(), 1u);
            EXPECT_EQ(shown()[0].title, c.shownTitle);
        } else {
            EXPECT_TRUE(shown().empty());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, BidPackage,
                         ::testing::Values(test::CostBackend::SQLite,
                                           test::CostBackend::PostgreSQL),
                         test::costBackendName);

} // namespace
} // namespace qr::service
