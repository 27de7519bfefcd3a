// quarvex-reports call METHOD --data FILE.json [--vendor-path DIR] [--preview | --no-preview]
//                      [--excel] [--pdf]
// quarvex-reports call --list
// Runs one typed print method of PrintService with report data read from JSON.

#include "cli/cli_host.hpp"
#include "cli/commands.hpp"
#include "platform/core/error.hpp"
#include "platform/host/report_data_json.hpp"
#include "service/print_service.hpp"

#include <fstream>
#include <functional>
#include <iostream>
#include <optional>
#include <sstream>

namespace qr::cli {

namespace {

struct CallOptions {
    std::string dataJson;
    std::string vendorPath;
    std::optional<bool> preview;
    bool excel = false;
    bool pdf = false;
};

using Invoke = std::function<void(service::PrintService&, const CallOptions&)>;

struct Method {
    const char* name;
    const char* parameters; // as the interface declares them
    bool needsData; // the report data must come from --data
    Invoke invoke;
};

bool previewOr(const CallOptions& o, bool fallback) { return o.preview.value_or(fallback); }

host::FinalGlassReportData glassData(const CallOptions& o) {
    return host::finalGlassReportDataFromJson(o.dataJson);
}

template <class Data>
Data headingData(const CallOptions& o) {
    Data data;
    static_cast<host::ReportHeading&>(data) =
        o.dataJson.empty() ? host::ReportHeading{} : host::reportHeadingFromJson(o.dataJson);
    return data;
}

using S = service::PrintService;

// The final glass methods share their parameters (the vendor path by value).
Method glassMethod(const char* name, void (S::*method)(host::FinalGlassReportData&, std::string,
                                                        bool, bool, bool)) {
    return {name,
            "ReportData, VendorPath, bPreview = True, ShouldExportToExcel = False, "
            "ShouldExportToPdf = False",
            true, [method](S& s, const CallOptions& o) {
                auto data = glassData(o);
                (s.*method)(data, o.vendorPath, previewOr(o, true), o.excel, o.pdf);
            }};
}

Method finalPartsMethod(const char* name,
                        void (S::*method)(host::FinalPartsReportData&, std::string&,
                                          host::UserDefaults&, bool, bool, bool)) {
    return {name,
            "oReportData, sVendorPath, oUserDefaults, bExportToExcel = False, "
            "bExportToPdf = False, bPreview = True",
            false, [method](S& s, const CallOptions& o) {
                auto data = headingData<host::FinalPartsReportData>(o);
                host::UserDefaults defaults;
                std::string vendorPath = o.vendorPath;
                (s.*method)(data, vendorPath, defaults, o.excel, o.pdf, previewOr(o, true));
            }};
}

template <class Data>
Method dataAndPreview(const char* name, void (S::*method)(Data&, bool)) {
    return {name, "oReportData, bPreview = True", false, [method](S& s, const CallOptions& o) {
                auto data = headingData<Data>(o);
                (s.*method)(data, previewOr(o, true));
            }};
}

const std::vector<Method>& methods() {
    static const std::vector<Method> table = {
        {"PrintMultipleElevationPartsReports", "oElevationPartsReportDataList, bPreview", false,
         [](S& s, const CallOptions& o) {
             host::ElevationPartsReportDataList list;
             bool preview = previewOr(o, true);
             s.PrintMultipleElevationPartsReports(list, preview);
         }},
        {"PrintMultipleElevationGlassReports", "oElevationGlassReportDataList, ReportFormat, bPreview",
         false,
         [](S& s, const CallOptions& o) {
             host::ElevationGlassReportDataList list;
             std::string format;
             bool preview = previewOr(o, true);
             s.PrintMultipleElevationGlassReports(list, format, preview);
         }},
        {"PrintElevationPartsReport",
         "oUser, oElevation, oPartsReportListItems, sVendorPath, bPreview = True", false,
         [](S& s, const CallOptions& o) {
             auto heading = headingData<host::ReportHeading>(o);
             host::ElevationData elevation;
             host::PartsReportListItems items;
             std::string vendorPath = o.vendorPath;
             s.PrintElevationPartsReport(heading.User, elevation, items, vendorPath,
                                         previewOr(o, true));
         }},
        {"PrintLinealReport", "oReportData, sVendorPath, ExportToExcel, ExportToPDF, bPreview = True",
         false,
         [](S& s, const CallOptions& o) {
             auto data = headingData<host::LinealReportData>(o);
             std::string vendorPath = o.vendorPath;
             bool excel = o.excel, pdf = o.pdf;
             s.PrintLinealReport(data, vendorPath, excel, pdf, previewOr(o, true));
         }},
        dataAndPreview<host::MetalRecapReportData>("PrintMetalRecapReport", &S::PrintMetalRecapReport),
        {"PrintOptimizedCutListReport",
         "oReportData, sVendorPath, bPreview = True, bExportToExcel = False, bExportToPdf = False",
         false,
         [](S& s, const CallOptions& o) {
             auto data = headingData<host::OptimizedCutListReportData>(o);
             std::string vendorPath = o.vendorPath;
             s.PrintOptimizedCutListReport(data, vendorPath, previewOr(o, true), o.excel, o.pdf);
         }},
        finalPartsMethod("PrintFinalPartsReportLandscape", &S::PrintFinalPartsReportLandscape),
        finalPartsMethod("PrintFinalPartsReportPortrait", &S::PrintFinalPartsReportPortrait),
        finalPartsMethod("PrintFinalPartsReportWithNoPrices", &S::PrintFinalPartsReportWithNoPrices),
        dataAndPreview<host::JobPartsReportData>("PrintJobPartsReport", &S::PrintJobPartsReport),
        dataAndPreview<host::JobPartsReportData>("PrintJobPartsReportByElevation",
                                                 &S::PrintJobPartsReportByElevation),
        dataAndPreview<host::CutLabelsReportData>("PrintCutLabelsLarge", &S::PrintCutLabelsLarge),
        dataAndPreview<host::CutLabelsReportData>("PrintCutLabelsSmallA", &S::PrintCutLabelsSmallA),
        dataAndPreview<host::CutLabelsReportData>("PrintCutLabelsSmallB", &S::PrintCutLabelsSmallB),
        dataAndPreview<host::CutLabelsReportData>("PrintCutLabelsSmallC", &S::PrintCutLabelsSmallC),
        dataAndPreview<host::CutLabelsReportData>("PrintMetalCutListing", &S::PrintMetalCutListing),
        glassMethod("PrintFinalGlassReportWithoutPrices", &S::PrintFinalGlassReportWithoutPrices),
        glassMethod("PrintFinalGlassLandscapeReportWithoutPrices",
                    &S::PrintFinalGlassLandscapeReportWithoutPrices),
        glassMethod("PrintFinalGlassLandscapeReport", &S::PrintFinalGlassLandscapeReport),
        glassMethod("PrintFinalGlassPortraitReport", &S::PrintFinalGlassPortraitReport),
    };
    return table;
}

void printUsage(std::ostream& out) {
    out << "Usage: quarvex-reports call METHOD --data FILE.json [--vendor-path DIR]\n"
           "                            [--preview | --no-preview] [--excel] [--pdf]\n"
           "       quarvex-reports call --list\n\n"
           "Runs a typed print method. --data holds the report data as JSON keyed by the host's\n"
           "member names (User.Name, Job.JobID, GlassQuery, Connection, ...). --vendor-path is\n"
           "the vendor folder exports go under; --preview/--no-preview set bPreview (printing\n"
           "goes to the default printer, or as QUARVEX_PRINTER says); --excel and --pdf ask for\n"
           "the exports. Exit code 0: the report ran with no error shown; 1: an error was shown\n"
           "(also on standard error); 2: usage error.\n";
}

bool readFile(const std::string& path, std::string& content) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::ostringstream buffer;
    buffer << in.rdbuf();
    content = buffer.str();
    return true;
}

} // namespace

int runCall(const Args& args) {
    if (args.empty()) {
        printUsage(std::cerr);
        return 2;
    }
    if (args[0] == "--help" || args[0] == "-h") {
        printUsage(std::cout);
        return 0;
    }
    if (args[0] == "--list") {
        for (const auto& m : methods()) std::cout << m.name << "(" << m.parameters << ")\n";
        return 0;
    }
    const Method* method = nullptr;
    for (const auto& m : methods()) {
        if (args[0] == m.name) method = &m;
    }
    if (!method) {
        std::cerr << "quarvex-reports call: no method named '" << args[0]
                  << "' (see 'quarvex-reports call --list')\n";
        return 2;
    }
    CallOptions options;
    std::string dataFile;
    for (size_t i = 1; i < args.size(); ++i) {
        const std::string& a = args[i];
        auto value = [&](const char* option) -> std::optional<std::string> {
            if (i + 1 >= args.size()) {
                std::cerr << "quarvex-reports call: " << option << " needs a value\n";
                return std::nullopt;
            }
            return args[++i];
        };
        if (a == "--data") {
            auto v = value("--data");
            if (!v) return 2;
            dataFile = *v;
        } else if (a == "--vendor-path") {
            auto v = value("--vendor-path");
            if (!v) return 2;
            options.vendorPath = *v;
        } else if (a == "--preview") {
            options.preview = true;
        } else if (a == "--no-preview") {
            options.preview = false;
        } else if (a == "--excel") {
            options.excel = true;
        } else if (a == "--pdf") {
            options.pdf = true;
        } else {
            std::cerr << "quarvex-reports call: unknown option '" << a << "'\n";
            printUsage(std::cerr);
            return 2;
        }
    }
    if (method->needsData && dataFile.empty()) {
        std::cerr << "quarvex-reports call: " << method->name << " needs --data FILE.json\n";
        return 2;
    }
    if (!dataFile.empty() && !readFile(dataFile, options.dataJson)) {
        std::cerr << "quarvex-reports call: cannot read " << dataFile << "\n";
        return 2;
    }

    CliHost cliHost(host::StandaloneConfig{});
    try {
        service::PrintService service;
        service.setContainer(cliHost.host());
        method->invoke(service, options);
    } catch (const Error& e) {
        // Only the report data itself can fail here; the methods trap everything else.
        std::cerr << "quarvex-reports call: " << e.description() << "\n";
        return 1;
    }
    return exitCodeFor(cliHost);
}

} // namespace qr::cli
