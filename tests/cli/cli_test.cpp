// The quarvex-reports program as a host script runs it: a child process with arguments, judged
// by its exit code, its standard streams and the files it leaves.

#include "cli/program.hpp"
#include "support/readers/file_readers.hpp"
#include "support/temp_dir.hpp"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace qr::test {
namespace {

namespace fs = std::filesystem;

TEST(Cli, UsageErrorsExitWithTwoAndSayWhatWasWrong) {
    TempDir dir;
    struct Case {
        std::vector<std::string> args;
        const char* message;
    };
    const std::vector<Case> cases = {
        {{}, "Usage: quarvex-reports"},
        {{"print-everything"}, "unknown command 'print-everything'"},
        {{"call"}, "Usage: quarvex-reports call"},
        {{"call", "PrintNothing"}, "no method named 'PrintNothing'"},
        {{"call", "PrintFinalGlassPortraitReport"}, "needs --data FILE.json"},
        {{"call", "PrintFinalGlassPortraitReport", "--data"}, "--data needs a value"},
        {{"call", "PrintFinalGlassPortraitReport", "--data", (dir / "missing.json").string()},
         "cannot read"},
        {{"call", "PrintMetalRecapReport", "--colour"}, "unknown option '--colour'"},
        {{"call", "PrintMetalRecapReport"}, "needs --data FILE.json"},
        {{"call", "PrintFinalGlassPortraitReport", "--example"}, "has no example data yet"},
        {{"call", "PrintLinealReport", "--vendor"}, "--vendor needs a value"},
        {{"make-sample", "--vendor", "sqlite:v.db", "--master", "sqlite:m.db", "--data-dir"},
         "--data-dir needs a folder"},
        {{"request", "--vendor", "sqlite:v.db"}, "Usage: quarvex-reports request"},
        {{"package", "--vendor", "sqlite:v.db", "--master", "sqlite:m.db", "--job", "1"},
         "Usage: quarvex-reports package"},
        {{"package", "--vendor", "sqlite:v.db", "--master", "sqlite:m.db", "--job", "1 OR 1=1",
          "--out", "bid.pdf"},
         "invalid job id: 1 OR 1=1"},
    };
    for (const auto& c : cases) {
        const Outcome outcome = runProgram(dir, c.args);
        EXPECT_EQ(outcome.exitCode, 2) << c.message;
        EXPECT_NE(outcome.err.find(c.message), std::string::npos)
            << "expected '" << c.message << "' in: " << outcome.err;
    }
}

TEST(Cli, HelpVersionAndTheMethodListExitWithZero) {
    TempDir dir;
    EXPECT_EQ(runProgram(dir, {"--help"}).exitCode, 0);
    const Outcome version = runProgram(dir, {"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.out.rfind("quarvex-reports ", 0), 0u) << version.out;

    const Outcome list = runProgram(dir, {"call", "--list"});
    ASSERT_EQ(list.exitCode, 0);
    int methods = 0;
    std::istringstream lines(list.out);
    for (std::string line; std::getline(lines, line);)
        ++methods;
    EXPECT_EQ(methods, 20) << list.out;
    EXPECT_NE(
        list.out.find("PrintFinalGlassPortraitReport(ReportData, VendorPath, bPreview = True, "
                      "ShouldExportToExcel = False, ShouldExportToPdf = False)"),
        std::string::npos);
    EXPECT_NE(list.out.find("PrintMultipleElevationGlassReports(oElevationGlassReportDataList, "
                            "ReportFormat, bPreview)"),
              std::string::npos);
}

class CliOnSampleJobs : public ::testing::Test {
  protected:
    void SetUp() override {
        const Outcome made =
            runProgram(m_dir, {"make-sample", "--vendor", vendor(), "--master", master()});
        ASSERT_EQ(made.exitCode, 0) << made.err;
    }
    std::string vendor() const { return "sqlite:" + (m_dir / "vendor.db").string(); }
    std::string master() const { return "sqlite:" + (m_dir / "master.db").string(); }
    fs::path reports(const std::string& job) const { return m_dir / "Jobs" / job / "Reports"; }

    TempDir m_dir;
};

TEST_F(CliOnSampleJobs, ARequestPrintsAndExportsItsFiles) {
    const fs::path printed = m_dir / "printed.pdf";
    const Outcome outcome =
        runProgram(m_dir,
                   {"request", "--vendor", vendor(), "--master", master(), "--vendor-path",
                    m_dir.path().string(), "armarkup MarkupReport1 false 1 1 true true false |x |"},
                   "QUARVEX_PRINTER=" + quoted("file:" + printed.string()));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_GT(fs::file_size(printed), 1000u);
    const fs::path folder = reports("Riverside Medical Office Building");
    EXPECT_TRUE(fs::exists(folder / "Riverside Medical Office Building-Markup.xls"));
    EXPECT_TRUE(fs::exists(folder / "Riverside Medical Office Building-Markup.pdf"));
}

TEST_F(CliOnSampleJobs, AnUnknownRequestShowsItsMessageAndExitsWithOne) {
    const Outcome outcome =
        runProgram(m_dir, {"request", "--vendor", vendor(), "--master", master(),
                           "nosuchreport t false 1 1 false false false |x |"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.err.find("Error in Main subroutine in the PrintReports Project"),
              std::string::npos)
        << outcome.err;
}

TEST_F(CliOnSampleJobs, ATypedMethodReadsItsJsonPrintsAndExports) {
    const fs::path data = m_dir / "glass.json";
    std::ofstream(data) << R"({
      "User": {"Name": "Dana Whitfield", "Phone": "(360) 555-0148", "Email": "dana@example.com"},
      "Company": {"Name": "Cascade Glass & Glazing, Inc.", "Phone": "(360) 555-0100"},
      "Job": {"JobID": 1, "JobName": "Riverside Medical Office Building"},
      "ReportTitle": "",
      "GlassQuery": "SELECT * FROM JobGlass WHERE JobID=1 ORDER BY sDescription, pThickness, sGlassType, sTypeLabel",
      "ShowSupplier": true,
      "Connection": ")" + vendor() +
                               R"("})";
    const fs::path printed = m_dir / "glass-printed.pdf";
    const Outcome outcome =
        runProgram(m_dir,
                   {"call", "PrintFinalGlassPortraitReport", "--data", data.string(),
                    "--vendor-path", m_dir.path().string(), "--no-preview", "--pdf"},
                   "QUARVEX_PRINTER=" + quoted("file:" + printed.string()));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_GT(fs::file_size(printed), 1000u);
    EXPECT_TRUE(fs::exists(reports("Riverside Medical Office Building") /
                           "Riverside Medical Office Building-FinalGlass.pdf"));

    // Bad report data names the key path in the method's error dialog, and nothing runs.
    std::ofstream(data) << R"({"User": {"Name": 12}})";
    const Outcome bad = runProgram(
        m_dir, {"call", "PrintFinalGlassPortraitReport", "--data", data.string(), "--no-preview"});
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_NE(bad.err.find("Description: Report data: User.Name must be a text\r\nModule: "
                           "PrintService\r\nFunction: PrintFinalGlassPortraitReport"),
              std::string::npos)
        << bad.err;
}

TEST_F(CliOnSampleJobs, APackagePrintsTheJobsReportsIntoOnePdf) {
    const Outcome help = runProgram(m_dir, {"package", "--help"});
    EXPECT_EQ(help.exitCode, 0);
    for (const char* name : {"armarkup2", "finalsummaryar", "finalglassar", "finallaborar"})
        EXPECT_NE(help.out.find(name), std::string::npos) << name;

    const fs::path bid = m_dir / "bid.pdf";
    const Outcome outcome = runProgram(m_dir, {"package", "--vendor", vendor(), "--master",
                                               master(), "--job", "1", "--out", bid.string()});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::string text = pdfText(bid);
    std::size_t at = 0;
    for (const char* title :
         {"Job Estimate", "Final Summary", "Job Glass Report", "Final Labor Report"}) {
        at = text.find(title, at);
        EXPECT_NE(at, std::string::npos) << title << " not in order in:\n" << text;
    }

    // An unknown report name is a usage error naming it; a job the database does not have
    // fails the package; neither writes a file.
    const fs::path other = m_dir / "other.pdf";
    const Outcome unknown =
        runProgram(m_dir, {"package", "--vendor", vendor(), "--master", master(), "--job", "1",
                           "--out", other.string(), "armarkup2", "glasslist"});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_NE(unknown.err.find("unknown report 'glasslist'"), std::string::npos) << unknown.err;
    const Outcome missingJob = runProgram(m_dir, {"package", "--vendor", vendor(), "--master",
                                                  master(), "--job", "9", "--out", other.string()});
    EXPECT_EQ(missingJob.exitCode, 1);
    EXPECT_NE(missingJob.err.find("Job 9 is not in the JobSummary table"), std::string::npos)
        << missingJob.err;
    EXPECT_FALSE(fs::exists(other));
}

// The methods that print the parts of a job: the example of each runs as printed, and the data
// files of the sample jobs print and export.
const char* const kPartsMethods[] = {"PrintFinalPartsReportLandscape",
                                     "PrintFinalPartsReportPortrait",
                                     "PrintFinalPartsReportWithNoPrices",
                                     "PrintLinealReport",
                                     "PrintMetalRecapReport",
                                     "PrintJobPartsReport",
                                     "PrintJobPartsReportByElevation",
                                     "PrintOptimizedCutListReport",
                                     "PrintMetalCutListing",
                                     "PrintCutLabelsLarge",
                                     "PrintCutLabelsSmallA",
                                     "PrintCutLabelsSmallB",
                                     "PrintCutLabelsSmallC"};

TEST(Cli, EachPartsMethodsExampleRunsUnchanged) {
    TempDir dir;
    for (const char* method : kPartsMethods) {
        SCOPED_TRACE(method);
        const Outcome example = runProgram(dir, {"call", method, "--example"});
        ASSERT_EQ(example.exitCode, 0) << example.err;
        const fs::path data = dir / (std::string(method) + ".json");
        std::ofstream(data) << example.out;
        const fs::path printed = dir / (std::string(method) + ".pdf");
        const Outcome run = runProgram(dir,
                                       {"call", method, "--data", data.string(), "--vendor-path",
                                        dir.path().string(), "--no-preview", "--excel", "--pdf"},
                                       "QUARVEX_PRINTER=" + quoted("file:" + printed.string()));
        EXPECT_EQ(run.exitCode, 0) << run.err;
        // Variant C of the small metal labels is the one report without the job's name.
        const bool namesTheJob = method != std::string("PrintCutLabelsSmallC");
        EXPECT_NE(pdfText(printed).find(namesTheJob ? "Maple Street Dental" : "SF-4503"),
                  std::string::npos);
    }
    // The three final parts reports and the lineal report and cut list exported as well.
    const fs::path folder = dir / "Jobs" / "Maple Street Dental" / "Reports";
    for (const char* file :
         {"-FinalPartsReport.pdf", "-FinalParts (Basic).xls", "-FinalParts (No Prices).pdf",
          "-FinalPartsLineal.xls", "-CutList.pdf"})
        EXPECT_TRUE(fs::exists(folder / (std::string("Maple Street Dental") + file))) << file;
}

TEST_F(CliOnSampleJobs, MakeSampleWritesTheDataFilesOfThePartsMethodsAndEachPrints) {
    const fs::path folder = m_dir / "data";
    const Outcome made = runProgram(m_dir, {"make-sample", "--vendor", vendor(), "--master",
                                            master(), "--data-dir", folder.string()});
    ASSERT_EQ(made.exitCode, 0) << made.err;
    for (const char* method : kPartsMethods) {
        for (int job : {1, 3}) {
            const fs::path data =
                folder / (std::string(method) + "-job" + std::to_string(job) + ".json");
            ASSERT_TRUE(fs::exists(data)) << data;
            const fs::path printed = m_dir / "printed.pdf";
            const Outcome run =
                runProgram(m_dir, {"call", method, "--data", data.string(), "--no-preview"},
                           "QUARVEX_PRINTER=" + quoted("file:" + printed.string()));
            EXPECT_EQ(run.exitCode, 0) << data << run.err;
        }
    }
}

} // namespace
} // namespace qr::test
