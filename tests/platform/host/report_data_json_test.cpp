#include "platform/core/error.hpp"
#include "platform/host/report_data_json.hpp"

#include <gtest/gtest.h>

namespace qr::host {
namespace {

const std::string kGood = R"({
  "User": {"Name": "Dana Reyes", "Phone": "", "Email": "dana@example.com"},
  "Company": {"Name": "Northwind Glass", "Phone": "555-0100"},
  "Job": {"JobID": 1, "JobName": "Medical Office"},
  "ReportTitle": "  ",
  "GlassQuery": "SELECT * FROM JobGlass WHERE JobID=1",
  "ShowSupplier": true,
  "Connection": "sqlite::memory:"
})";

TEST(FinalGlassReportDataJson, ReadsEveryMember) {
    auto data = finalGlassReportDataFromJson(kGood);
    EXPECT_EQ(data.User.name, "Dana Reyes");
    EXPECT_EQ(data.User.phone, "");
    EXPECT_EQ(data.Company.phone, "555-0100");
    EXPECT_EQ(data.Job.JobID, 1);
    EXPECT_EQ(data.Job.JobName, "Medical Office");
    EXPECT_EQ(data.ReportTitle, "  ");
    EXPECT_TRUE(data.ShowSupplier);
    EXPECT_TRUE(data.Connection);
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

TEST(FinalGlassReportDataJson, NamesTheKeyPathOfWhatIsWrong) {
    struct Case {
        std::string json;
        std::string message;
    };
    const Case cases[] = {
        {replaced(kGood, R"("JobID": 1, )", ""), "Report data: missing key Job.JobID"},
        {replaced(kGood, R"("JobID": 1)", R"("JobId": 1)"), "Report data: missing key Job.JobID"},
        {replaced(kGood, R"("JobID": 1)", R"("JobID": "1")"),
         "Report data: Job.JobID must be a whole number"},
        {replaced(kGood, R"("JobID": 1)", R"("JobID": 1.5)"),
         "Report data: Job.JobID must be a whole number"},
        {replaced(kGood, R"("ShowSupplier": true)", R"("ShowSupplier": "yes")"),
         "Report data: ShowSupplier must be true or false"},
        {replaced(kGood, R"("ReportTitle": "  ",)", ""), "Report data: missing key ReportTitle"},
        {replaced(kGood, R"("User": {)", R"("User": 3, "X": {)"),
         "Report data: User must be an object"},
        {"[1]", "Report data: the document must be a JSON object"},
    };
    for (const auto& c : cases) {
        try {
            finalGlassReportDataFromJson(c.json);
            ADD_FAILURE() << "accepted: " << c.json;
        } catch (const Error& e) {
            EXPECT_EQ(e.description(), c.message);
            EXPECT_EQ(e.number(), 999);
        }
    }
}

TEST(FinalGlassReportDataJson, KeysTheReportDoesNotReadAreIgnored) {
    const auto data = finalGlassReportDataFromJson(
        replaced(kGood, R"("Phone": "", )", R"("Phone": "", "Fax": "", "Extension": 12, )"));
    EXPECT_EQ(data.User.name, "Dana Reyes");
}

TEST(FinalGlassReportDataJson, ABadConnectionStringIsRefusedByName) {
    try {
        finalGlassReportDataFromJson(replaced(kGood, "sqlite::memory:", "mysql://x"));
        ADD_FAILURE();
    } catch (const Error& e) {
        EXPECT_NE(e.description().find("mysql://x"), std::string::npos) << e.description();
    }
}

} // namespace
} // namespace qr::host
