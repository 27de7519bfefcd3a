// The eight parts and metal print methods end to end over the sample job's parts: printed to a
// file, the workbook and then the PDF exported under each report's own name and read back with
// poppler and libfreexl; export failures shown by the handler or the method that meets them;
// report data in JSON that cannot be read shown as the method's failure.
#include "data/sample/parts_report_data.hpp"
#include "platform/core/number_format.hpp"
#include "service/print_service.hpp"
#include "service/report_registry.hpp"
#include "support/export_journal.hpp"
#include "support/parts_fixture.hpp"
#include "support/readers/file_readers.hpp"

#include <functional>
#include <numeric>
#include <regex>

namespace qr::test {
namespace {

namespace fs = std::filesystem;
using S = service::PrintService;

constexpr const char* kSampleJob = "Riverside Medical Office Building";

/// Text with runs of white space as one blank.
std::string words(const std::string& text) {
    return std::regex_replace(text, std::regex("\\s+"), " ");
}

class PartsServiceTest : public PartsReportTest {
  protected:
    void SetUp() override {
        PartsReportTest::SetUp();
        const auto& job = data::sample::sampleJobs().at(0);
        const auto takeoff = data::sample::partsTakeoff(job);
        m_finalParts = data::sample::finalPartsData(takeoff);
        m_defaults = data::sample::userDefaultsFor(job);
        m_lineal = data::sample::linealData(takeoff);
        m_recap = data::sample::metalRecapData(takeoff);
        m_jobParts = data::sample::jobPartsData(takeoff, false);
        m_byElevation = data::sample::jobPartsData(takeoff, true);
        m_cutList = data::sample::cutListData(takeoff);
        ::setenv("QUARVEX_PRINTER", ("file:" + printedFile().string()).c_str(), 1);
    }
    void TearDown() override {
        ::unsetenv("QUARVEX_PRINTER");
        PartsReportTest::TearDown();
    }
    fs::path printedFile() const { return m_dir / "printed.pdf"; }
    fs::path reports() const { return m_dir / "Jobs" / kSampleJob / "Reports"; }

    /// A typed method called as the host calls it, without a preview, both files asked for.
    using Call = std::function<void(S&, std::string& vendorPath)>;
    std::vector<std::pair<const char*, Call>> methods() {
        return {
            {"PrintFinalPartsReportLandscape",
             [this](S& s, std::string& v) {
                 s.PrintFinalPartsReportLandscape(m_finalParts, v, m_defaults, true, true, false);
             }},
            {"PrintFinalPartsReportPortrait",
             [this](S& s, std::string& v) {
                 s.PrintFinalPartsReportPortrait(m_finalParts, v, m_defaults, true, true, false);
             }},
            {"PrintFinalPartsReportWithNoPrices",
             [this](S& s, std::string& v) {
                 s.PrintFinalPartsReportWithNoPrices(m_finalParts, v, m_defaults, true, true,
                                                     false);
             }},
            {"PrintLinealReport",
             [this](S& s, std::string& v) {
                 bool excel = true, pdf = true;
                 s.PrintLinealReport(m_lineal, v, excel, pdf, false);
             }},
            {"PrintMetalRecapReport",
             [this](S& s, std::string&) { s.PrintMetalRecapReport(m_recap, false); }},
            {"PrintJobPartsReport",
             [this](S& s, std::string&) { s.PrintJobPartsReport(m_jobParts, false); }},
            {"PrintJobPartsReportByElevation",
             [this](S& s, std::string&) {
                 s.PrintJobPartsReportByElevation(m_byElevation, false);
             }},
            {"PrintOptimizedCutListReport",
             [this](S& s, std::string& v) {
                 s.PrintOptimizedCutListReport(m_cutList, v, false, true, true);
             }},
        };
    }

    host::FinalPartsReportData m_finalParts;
    host::UserDefaults m_defaults;
    host::LinealReportData m_lineal;
    host::MetalRecapReportData m_recap;
    host::JobPartsReportData m_jobParts, m_byElevation;
    host::OptimizedCutListReportData m_cutList;
};

TEST_F(PartsServiceTest, EachMethodPrintsAndExportsTheWorkbookThenThePdfUnderItsOwnName) {
    const std::string grandTotal = formatNumber(
        std::accumulate(m_finalParts.Items.begin(), m_finalParts.Items.end(), 0.0,
                        [](double sum, const host::FinalPartsItem& i) { return sum + i.Total; }),
        "$#,##0.00");
    const std::map<std::string, Texts> shownTexts = {
        {"PrintFinalPartsReportLandscape", {"Job Parts Report", "Parts Grand Total", grandTotal}},
        {"PrintFinalPartsReportPortrait", {"(By Package)", "Packages To Order", grandTotal}},
        {"PrintFinalPartsReportWithNoPrices", {"Units Per Pkg", "Satin Stainless"}},
        {"PrintLinealReport", {"Lineal Final Parts Report", "Calc Method is by Lineal Foot"}},
        {"PrintMetalRecapReport", {"Final Metal Recap Report", "Stock Qty:", "288 in."}},
        {"PrintJobPartsReport", {"Sort Type", "Class I Clear Anodized"}},
        {"PrintJobPartsReportByElevation", {"Elevation: E1 - North Entrance", "C4 - Stair Tower"}},
        {"PrintOptimizedCutListReport", {"Cut Patterns for Stock Lengths", "Average Yield:"}},
    };
    for (auto& [method, call] : methods()) {
        SCOPED_TRACE(method);
        fs::remove_all(m_dir / "Jobs");
        fs::remove(printedFile());
        ExportJournal journal;
        S service;
        std::string vendorPath = m_dir.path().string();
        call(service, vendorPath);
        EXPECT_TRUE(shown().empty()) << shown().front();

        const std::string printedText = words(pdfText(printedFile()));
        for (const std::string& text : shownTexts.at(method))
            EXPECT_NE(printedText.find(text), std::string::npos) << text;
        EXPECT_NE(printedText.find("Job Name: " + std::string(kSampleJob)), std::string::npos);
        EXPECT_NE(printedText.find("Page 1 of"), std::string::npos);

        const auto* entry = service::registrationOfMethod(method);
        if (!entry->exports.pdf) {
            EXPECT_TRUE(journal.written.empty());
            continue;
        }
        const std::string stem = std::string(kSampleJob);
        EXPECT_EQ(journal.written,
                  (Texts{stem + entry->exports.spreadsheet, stem + entry->exports.pdf}));
        EXPECT_EQ(words(pdfText(reports() / (stem + entry->exports.pdf))), printedText);
        const auto sheets = readWorkbook(reports() / (stem + entry->exports.spreadsheet));
        ASSERT_FALSE(sheets.empty());
        const Texts cells = textsOf(sheets[0]);
        EXPECT_NE(std::find(cells.begin(), cells.end(), kSampleJob), cells.end());
    }
}

TEST_F(PartsServiceTest, TheExportSuffixesAreTheReportsOwn) {
    const std::map<std::string, std::pair<std::string, std::string>> suffixes = {
        {"FinalPartsAR", {"-FinalPartsReport.xls", "-FinalPartsReport.pdf"}},
        {"FinalPartsAR2", {"-FinalParts (Basic).xls", "-FinalParts (Basic).pdf"}},
        {"FinalPartsARNP", {"-FinalParts (No Prices).xls", "-FinalParts (No Prices).pdf"}},
        {"FinalPartsLineal", {"-FinalPartsLineal.xls", "-FinalPartsLineal.pdf"}},
        {"AR2CutList", {"-CutList.xls", "-CutList.pdf"}},
    };
    for (const char* name : {"FinalPartsAR", "FinalPartsAR2", "FinalPartsARNP", "FinalPartsLineal",
                             "AR2CutList", "ar2MetalRecap", "JobPartsAR", "JobElevAR"}) {
        const auto* entry = service::registrationOfClass(name);
        ASSERT_NE(entry, nullptr) << name;
        ASSERT_TRUE(entry->factory) << name;
        const auto found = suffixes.find(name);
        if (found == suffixes.end()) {
            EXPECT_EQ(entry->exports.pdf, nullptr) << name;
            continue;
        }
        EXPECT_EQ(entry->exports.spreadsheet, found->second.first);
        EXPECT_EQ(entry->exports.pdf, found->second.second);
    }
}

TEST_F(PartsServiceTest, AFailedPdfExportIsShownByTheEndHandlerOrByTheMethod) {
    // Without a vendor folder both exports fail. The final parts and lineal end handlers report
    // it and the report still prints; the cut list's end handler leaves it to its method.
    const std::string noFolder =
        "Developer error: Vendor path argument not set for exporting to the proper path.";
    const std::string excel =
        "Quarvex Error: Description: Issue exporting report to excel: " + noFolder +
        "\r\nModule: PrintReports\r\nFunction: ExportToExcel";
    struct Case {
        const char* method;
        const char* module;
        const char* function;
        bool prints;
    };
    const Case cases[] = {
        {"PrintFinalPartsReportPortrait", "FinalPartsAR2", "ActiveReport_ReportEnd", true},
        {"PrintLinealReport", "FinalPartsLineal", "ActiveReport_ReportEnd", true},
        {"PrintOptimizedCutListReport", "PrintService", "PrintOptimizedCutListReport", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.method);
        m_host.messages->shown.clear();
        fs::remove(printedFile());
        for (auto& [method, call] : methods()) {
            if (method != std::string(c.method))
                continue;
            S service;
            std::string vendorPath;
            call(service, vendorPath);
        }
        EXPECT_EQ(shown(),
                  (Texts{excel, "Quarvex Error: Description: " + noFolder +
                                    "\r\nModule: " + c.module + "\r\nFunction: " + c.function}));
        EXPECT_EQ(fs::exists(printedFile()), c.prints);
    }
}

TEST_F(PartsServiceTest, ReportDataThatCannotBeReadIsTheMethodsFailure) {
    struct Case {
        const char* method;
        std::string json;
        std::string description;
    };
    const Case cases[] = {
        {"PrintFinalPartsReportLandscape",
         R"({"oReportData": {"User": {"Name": "D", "Phone": "", "Email": ""},
             "Company": {"Name": "C", "Phone": ""}, "Vendor": {"Name": "V"}, "JobName": "J",
             "FinishColor": "", "PriceByUnit": true,
             "Items": [{"Quantity": 1, "PartNumber": "P", "StockLength": 0,
                        "Part": {"PartType": "T", "Description": "D", "PackageQuantity": 0,
                                 "Multiplier": "0.8"},
                        "PackageQuantity": 0, "PackagesToOrder": 1, "UnitPrice": 1,
                        "PackagePrice": 1, "Total": 1}]},
             "oUserDefaults": {"FinalPartsReportTitle": null}})",
         "Report data: oReportData.Items[0].Part.Multiplier must be a number"},
        {"PrintOptimizedCutListReport", R"({"JobName": "J"})", "Report data: missing key User"},
        {"PrintJobPartsReport", "[]", "Report data: the document must be a JSON object"},
        {"PrintCutLabelsSmallC",
         R"({"Job": {"JobName": "J"}, "TopOffset": 0, "LeftOffset": 0, "StockPieces": [
             {"Part": {"PartNumber": "P", "PartType": "T"}, "StockNumber": 1,
              "Cuts": [{"CutLength": "12", "ElevationName": "E", "CutLabel": "L"}]}]})",
         "Report data: StockPieces[0].Cuts[0].CutLength must be a number"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.method);
        m_host.messages->shown.clear();
        S service;
        service::TypedCallArguments arguments;
        arguments.dataJson = c.json;
        arguments.preview = false;
        service::registrationOfMethod(c.method)->method->call(service, arguments);
        EXPECT_EQ(shown(), Texts{"Quarvex Error: Description: " + c.description +
                                 "\r\nModule: PrintService\r\nFunction: " + c.method});
        EXPECT_FALSE(fs::exists(printedFile()));
    }
}

} // namespace
} // namespace qr::test
