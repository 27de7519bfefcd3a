// quarvex-reports call METHOD --data FILE.json [--vendor-path DIR] [--preview | --no-preview]
//                      [--excel] [--pdf]
// quarvex-reports call --list
// Runs one typed print method of PrintService with report data read from JSON.

#include "cli/cli_host.hpp"
#include "cli/commands.hpp"
#include "platform/core/error.hpp"
#include "service/print_service.hpp"
#include "service/report_registry.hpp"

#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>

namespace qr::cli {

namespace {

// The typed methods, in the registry's order.
std::vector<const service::TypedMethod*> methods() {
    std::vector<const service::TypedMethod*> found;
    for (const auto& entry : service::reportRegistry()) {
        if (entry.method)
            found.push_back(&*entry.method);
    }
    return found;
}

void printUsage(std::ostream& out) {
    out << "Usage: quarvex-reports call METHOD --data FILE.json [--vendor-path DIR]\n"
           "                            [--preview | --no-preview] [--excel] [--pdf]\n"
           "                            [--report-format TEXT]\n"
           "       quarvex-reports call --list\n\n"
           "Runs a typed print method. --data holds the report data as JSON keyed by the host's\n"
           "member names (User.Name, Job.JobID, GlassQuery, Connection, ...). --vendor-path is\n"
           "the vendor folder exports go under; --preview/--no-preview set bPreview (printing\n"
           "goes to the default printer, or as QUARVEX_PRINTER says); --excel and --pdf ask for\n"
           "the exports; --report-format sets ReportFormat. Exit code 0: the report ran with no\n"
           "error shown; 1: an error was shown\n"
           "(also on standard error); 2: usage error.\n";
}

bool readFile(const std::string& path, std::string& content) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
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
        for (const auto* m : methods())
            std::cout << m->name << "(" << m->parameters << ")\n";
        return 0;
    }
    const service::ReportRegistration* entry = service::registrationOfMethod(args[0]);
    const service::TypedMethod* method = entry ? &*entry->method : nullptr;
    if (!method) {
        std::cerr << "quarvex-reports call: no method named '" << args[0]
                  << "' (see 'quarvex-reports call --list')\n";
        return 2;
    }
    service::TypedCallArguments options;
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
            if (!v)
                return 2;
            dataFile = *v;
        } else if (a == "--vendor-path") {
            auto v = value("--vendor-path");
            if (!v)
                return 2;
            options.vendorPath = *v;
        } else if (a == "--report-format") {
            auto v = value("--report-format");
            if (!v)
                return 2;
            options.reportFormat = *v;
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
        method->call(service, options);
    } catch (const Error& e) {
        // Only the report data itself can fail here; the methods trap everything else.
        std::cerr << "quarvex-reports call: " << e.description() << "\n";
        return 1;
    }
    return exitCodeFor(cliHost);
}

} // namespace qr::cli
