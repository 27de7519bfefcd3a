#include "platform/host/error_log.hpp"

#include "support/host/recording_host.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace qr::host {
namespace {

size_t countOf(const std::string& text, const std::string& what) {
    size_t count = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        ++count;
    return count;
}

TEST(ShowError, ShowsTheThreeLineDialogAndLogsTheErrorEntry) {
    test::RecordingHost recording;
    showError("Type mismatch", "FinalPartsAR", "ActiveReport_ReportStart");

    ASSERT_EQ(recording.messages->shown.size(), 1u);
    const auto& dialog = recording.messages->shown[0];
    EXPECT_EQ(dialog.title, "Quarvex Error");
    EXPECT_EQ(dialog.text, "Description: Type mismatch\r\nModule: FinalPartsAR\r\n"
                           "Function: ActiveReport_ReportStart");
    EXPECT_EQ(countOf(dialog.text, "\r\n"), 2u);

    auto entries = recording.host->usageEntries();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].error, "Type mismatch\r\n in 'FinalPartsAR.ActiveReport_ReportStart'");
    EXPECT_EQ(countOf(entries[0].error, "\r\n"), 1u);
}

class NoMessageService : public ServiceContainer {
  public:
    std::shared_ptr<MessageService> messageService() override {
        throw Error(429, "ServiceContainer", "ActiveX component can't create object");
    }
};

TEST(ShowError, WithoutAMessageServiceStillLogs) {
    test::RecordingHost recording;
    for (auto container : {std::shared_ptr<ServiceContainer>(),
                           std::shared_ptr<ServiceContainer>(std::make_shared<NoMessageService>())}) {
        moduleState().sharedContainer = container;
        showError("Overflow", "PrintReports", "ExportToExcel");
    }
    EXPECT_TRUE(recording.messages->shown.empty());
    EXPECT_EQ(recording.host->usageEntries().size(), 2u);
}

TEST(ShowError, ReturnsNormallyWhenNoHostIsInstalled) {
    test::RecordingHost recording;
    installHostClasses(nullptr);
    EXPECT_NO_THROW(showError("x", "m", "p"));
    EXPECT_EQ(recording.messages->shown.size(), 1u);
}

TEST(RunTrapped, ReportsTheErrorWithModuleAndHandlerAndLeavesTheHandler) {
    test::RecordingHost recording;
    bool after = false;
    runTrapped("FinalPartsAR", "ActiveReport_ReportEnd", [&] {
        throw Error::component("PrintReports", "Job Name argument not set");
        after = true;
    });
    EXPECT_FALSE(after);
    ASSERT_EQ(recording.messages->shown.size(), 1u);
    EXPECT_EQ(recording.messages->shown[0].text,
              "Description: Job Name argument not set\r\nModule: FinalPartsAR\r\n"
              "Function: ActiveReport_ReportEnd");
}

} // namespace
} // namespace qr::host
