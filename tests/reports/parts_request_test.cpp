// The request names of the parts reports that read host data: a request hands them none, so
// their start handler reports the missing data, the run fails into the dispatcher's message
// box, no file is written, and the next request on the thread runs as usual.
#include "reports/support/cost_fixture.hpp"
#include "service/print_service.hpp"
#include "service/report_objects.hpp"

namespace qr::test {
namespace {

constexpr const char* kSampleJob = "Riverside Medical Office Building";
constexpr const char* kNotSet = "Object variable or With block variable not set";

class PartsRequestTest : public CostSampleTest {};

TEST_P(PartsRequestTest, ARequestWithoutReportDataFailsThroughTheErrorPathAndWritesNothing) {
    const std::pair<const char*, const char*> requests[] = {
        {"jobpartsar", "JobPartsAR"},
        {"jobelevar", "JobElevAR"},
        {"ar2cutlist", "AR2CutList"},
        {"ar2metalcutlistings", "AR2MetalCutListings"},
        {"elevpartsar", "ElevPartsAR"}};
    for (const auto& [name, className] : requests) {
        SCOPED_TRACE(name);
        m_host->messages->shown.clear();
        const auto printed =
            printRequest(std::string(name) + " MarkupReport1 false 1 1 true true false |x |");
        const auto messages = shownMessages();
        ASSERT_GE(messages.size(), 2u);
        EXPECT_EQ(messages[0], std::string("Quarvex Error: Description: ") + kNotSet +
                                   "\r\nModule: " + className +
                                   "\r\nFunction: ActiveReport_ReportStart");
        EXPECT_EQ(messages[1], std::string("Error Encountered: ") + kNotSet);
        EXPECT_FALSE(std::filesystem::exists(printed));
        EXPECT_FALSE(std::filesystem::exists(reportsFolder(kSampleJob)));
        // The dispatcher still records the request.
        EXPECT_EQ(m_host->host->usageEntries().back().label, std::string("PrintReport-") + name);
    }

    m_host->messages->shown.clear();
    const auto printed = printRequest("armarkup MarkupReport1 false 1 1 false true false |x |");
    EXPECT_TRUE(m_host->messages->shown.empty());
    EXPECT_TRUE(std::filesystem::exists(printed));
    EXPECT_TRUE(std::filesystem::exists(reportsFolder(kSampleJob) /
                                        (std::string(kSampleJob) + "-Markup.pdf")));
}

TEST_P(PartsRequestTest, ATypedMethodThatFailedLeavesNoReportDataBehindForTheNextRequest) {
    {
        // The cut list fails at its end (no vendor folder for its PDF); its data goes away.
        host::OptimizedCutListReportData data;
        data.JobName = kSampleJob;
        std::string noVendorPath;
        service::PrintService service;
        service.PrintOptimizedCutListReport(data, noVendorPath, false, false, true);
    }
    m_host->messages->shown.clear();
    printRequest("ar2cutlist MarkupReport1 false 1 1 false false false |x |");
    const auto messages = shownMessages();
    ASSERT_GE(messages.size(), 2u);
    EXPECT_EQ(messages[0], std::string("Quarvex Error: Description: ") + kNotSet +
                               "\r\nModule: AR2CutList\r\nFunction: ActiveReport_ReportStart");
}

INSTANTIATE_TEST_SUITE_P(Backends, PartsRequestTest,
                         ::testing::Values(CostBackend::SQLite, CostBackend::PostgreSQL),
                         costBackendName);

} // namespace
} // namespace qr::test
