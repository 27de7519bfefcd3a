// The request route: request strings parsed into module state, the heading look-ups through
// the host services, the job lookup, and what the user sees when a request is wrong. The
// databases are the sample jobs; the report the requests name is replaced by a probe that
// records the module state it runs with.

#include "data/sample/sample_writer.hpp"
#include "platform/db/connection.hpp"
#include "platform/engine/report.hpp"
#include "service/dispatcher.hpp"
#include "service/print_service.hpp"
#include "service/report_objects.hpp"
#include "service/report_registry.hpp"
#include "support/host/recording_host.hpp"
#include "support/temp_dir.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

namespace qr::service {
namespace {

engine::ReportDesign probeDesign() {
    return {"ProbeReport", "Probe", engine::PageSettings{},
            {engine::detail("Detail", 240, {engine::label("lProbe", {0, 0, 2000, 240}, "probe")})}};
}

// Stands in for the markup report: records the module state it was run with.
class ProbeReport : public engine::Report {
  public:
    ProbeReport() : Report(probeDesign()) {}
    static inline std::optional<host::ModuleState> seen;
    static inline int runs = 0;

  protected:
    void reportStart() override {
        seen = host::moduleState();
        ++runs;
    }
};

class Dispatcher : public ::testing::Test {
  protected:
    void SetUp() override {
        vendor = std::make_shared<db::Connection>("sqlite:" + (dir / "vendor.db").string());
        master = std::make_shared<db::Connection>("sqlite:" + (dir / "master.db").string());
        data::sample::writeSample(*vendor, *master);
        recording.host->setLogConnection(nullptr);
        service.setContainer(recording.host);
        service.setVendorConnection(vendor);
        service.setMasterConnection(master);
        addReportClass("ARMarkup", [] { return std::make_unique<ProbeReport>(); });
        ProbeReport::seen.reset();
        ProbeReport::runs = 0;
        ::setenv("QUARVEX_PRINTER", ("file:" + (dir / "printed.pdf").string()).c_str(), 1);
        ::setenv("QUARVEX_PREVIEW_DIR", (dir / "preview").c_str(), 1);
    }
    void TearDown() override {
        ProbeReport::seen.reset(); // it holds the request connections: close them with the test
        // The real markup report again, for the suites that run after this one.
        releaseReportObject("ARMarkup");
        addReportClass("ARMarkup", registrationOfClass("ARMarkup")->factory);
        ::unsetenv("QUARVEX_PRINTER");
        ::unsetenv("QUARVEX_PREVIEW_DIR");
    }

    void request(std::string args) { service.PrintReport(args); }
    std::vector<std::string> shownTexts() const {
        std::vector<std::string> texts;
        for (const auto& m : recording.messages->shown) texts.push_back(m.text);
        return texts;
    }
    std::vector<std::string> usageLabels() const {
        std::vector<std::string> labels;
        for (const auto& e : recording.host->usageEntries())
            if (e.error.empty()) labels.push_back(e.outcome + " " + e.label);
        return labels;
    }

    test::TempDir dir;
    test::RecordingHost recording;
    host::ConnectionRef vendor, master;
    PrintService service;
};

TEST_F(Dispatcher, AWellFormedRequestFillsModuleStateAndRunsTheReport) {
    request("ARMarkup MarkupReport1 TRUE 1 1 false true false |X Y |A;B");
    ASSERT_TRUE(ProbeReport::seen) << (shownTexts().empty() ? "" : shownTexts()[0]);
    const auto& s = *ProbeReport::seen;
    EXPECT_EQ(s.requestTable, "markupreport1");
    EXPECT_EQ(s.requestUserId, "1");
    EXPECT_EQ(s.requestJobId, "1");
    EXPECT_FALSE(s.requestExcel);
    EXPECT_TRUE(s.requestPdf);
    EXPECT_FALSE(s.requestSpareFlag);
    EXPECT_EQ(s.requestSpareText, "x y");
    EXPECT_EQ(s.requestTail, "a;b");
    EXPECT_EQ(s.currentJobName, "Riverside Medical Office Building");
    EXPECT_EQ(s.userName, "Dana Whitfield");
    EXPECT_EQ(s.firmPhone, "(360) 555-0148");
    EXPECT_EQ(s.userEmail, "dana.whitfield@cascadeglazing.example");
    EXPECT_EQ(s.firmName, "Cascade Glass & Glazing, Inc.");
    EXPECT_EQ(s.firmFax, "(360) 555-0101");
    EXPECT_EQ(s.vendorPath, dir.path().string());
    EXPECT_TRUE(shownTexts().empty());
    EXPECT_EQ(usageLabels(), std::vector<std::string>{"Previewed PrintReport-armarkup"});
    EXPECT_TRUE(s.requestVendorConnection) << "the report runs with the request connections";
}

TEST_F(Dispatcher, RequestsThatAreWrongShowWhatIsWrong) {
    struct Case {
        const char* request;
        std::vector<std::string> shown;
        bool runs;
        std::vector<std::string> usage;
    };
    const std::string tolmar =
        "Error in Main subroutine in the PrintReports Project, please call Tolmar";
    const Case cases[] = {
        {"", {"Invalid input string passed to PrintReport procedure"}, false, {}},
        {"armarkup markupreport1 false 1 1 false false false |x |", {}, true,
         {"Printed (No Preview) PrintReport-armarkup"}},
        // Field 8 without its space: empty text is not Boolean text; the report still runs.
        {"armarkup markupreport1 false 1 1 false false false", {"Type mismatch"}, true,
         {"Printed (No Preview) PrintReport-armarkup"}},
        // A name alone: every field is empty text, so the name is empty and nothing runs.
        {"armarkup",
         {"Invalid table name in request: ", "Type mismatch", "Invalid user id in request: ",
          "Invalid job id in request: ", "Type mismatch", "Type mismatch", "Type mismatch", tolmar},
         false, {"Printed (No Preview) PrintReport-"}},
        {"nosuchreport markupreport1 false 1 1 false false false |x |", {tolmar}, false,
         {"Printed (No Preview) PrintReport-nosuchreport"}},
        {"armarkup markupreport1 false abc 1 false false false |x |",
         {"Invalid user id in request: abc"}, false, {}},
        {"armarkup markupreport1 false 1 1;delete false false false |x |",
         {"Invalid job id in request: 1;delete"}, false, {}},
        {"armarkup jobsummary;drop false 1 1 false false false |x |",
         {"Invalid table name in request: jobsummary;drop"}, false, {}},
        {"armarkup markupreport1 maybe 1 1 false false false |x |", {"Type mismatch"}, true,
         {"Printed (No Preview) PrintReport-armarkup"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.request);
        recording.messages->shown.clear();
        ProbeReport::runs = 0;
        const auto before = recording.host->usageEntries().size();
        request(c.request);
        std::vector<std::string> shown = shownTexts();
        EXPECT_EQ(shown, c.shown) << "field errors come in the order of the fields";
        EXPECT_EQ(ProbeReport::runs, c.runs ? 1 : 0);
        auto labels = usageLabels();
        labels.erase(labels.begin(), labels.begin() + static_cast<long>(std::min(before, labels.size())));
        EXPECT_EQ(labels, c.usage);
        for (const auto& m : recording.messages->shown) {
            if (m.text != tolmar && m.text != "Invalid input string passed to PrintReport procedure") {
                EXPECT_EQ(m.title, "Error Encountered");
            }
        }
    }
    // The database tables are all still there after the injection attempts.
    EXPECT_TRUE(vendor->tableExists("JobSummary"));
}

TEST_F(Dispatcher, ARefusedValueKeepsItsEarlierSetting) {
    request("armarkup markupreport1 false 1 2 true false false |x |");
    request("armarkup laborreport1 false 1 2;x false false false |x |");
    const auto& s = host::moduleState();
    EXPECT_EQ(s.requestJobId, "2");
    EXPECT_EQ(s.requestTable, "laborreport1") << "the valid fields of the request are stored";
    EXPECT_FALSE(s.requestExcel);
}

TEST_F(Dispatcher, LookupsFallBackToTheFirmAndKeepThePreviousJobName) {
    request("armarkup markupreport1 false 2 2 false false false |x |");
    ASSERT_TRUE(ProbeReport::seen);
    EXPECT_EQ(ProbeReport::seen->userName, "Marcus Lee");
    EXPECT_EQ(ProbeReport::seen->firmPhone, "(360) 555-0100") << "user without a phone";
    EXPECT_EQ(ProbeReport::seen->userEmail, "bids@cascadeglazing.example");
    EXPECT_EQ(ProbeReport::seen->currentJobName, "Maple Street Dental");

    request("armarkup markupreport1 false 1 99 false false false |x |");
    EXPECT_EQ(ProbeReport::seen->currentJobName, "Maple Street Dental")
        << "a job id with no row keeps the previous job name";
    EXPECT_EQ(ProbeReport::seen->userName, "Dana Whitfield");
}

TEST_F(Dispatcher, LabelRequestsLoadTheUsersOffsetsWithAnOverflowCheck) {
    addReportClass("arAvery5260GlassLabels", [] { return std::make_unique<ProbeReport>(); });
    request("aravery5260glasslabels glasscutreport1 false 1 1 false false false |x |");
    ASSERT_TRUE(ProbeReport::seen);
    EXPECT_EQ(ProbeReport::seen->labelTopOffset, 120);
    EXPECT_EQ(ProbeReport::seen->labelLeftOffset, -60);

    master->execute("UPDATE UserSettings SET iValue=40000 WHERE UserID=1 AND sName='LblTop'");
    recording.messages->shown.clear();
    request("aravery5260glasslabels glasscutreport1 false 1 1 false false false |x |");
    EXPECT_EQ(shownTexts(), std::vector<std::string>{"Overflow"});
    EXPECT_EQ(host::moduleState().labelTopOffset, 120) << "keeps its earlier setting";
}

} // namespace
} // namespace qr::service
