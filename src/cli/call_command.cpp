// quarvex-reports call METHOD --data FILE.json [--vendor-path DIR] [--preview | --no-preview]
//                      [--excel] [--pdf] [--report-format TEXT] [--vendor CONN] [--master CONN]
// quarvex-reports call METHOD --example
// quarvex-reports call --list
// Runs one typed print method of PrintService with report data read from JSON.

#include "cli/cli_host.hpp"
#include "cli/commands.hpp"
#include "cli/option_reader.hpp"
#include "platform/core/error.hpp"
#include "platform/db/connection.hpp"
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
           "                            [--report-format TEXT] [--vendor CONN] [--master CONN]\n"
           "       quarvex-reports call METHOD --example\n"
           "       quarvex-reports call --list\n\n"
           "Runs a typed print method. --data holds the method's host objects as JSON keyed by\n"
           "the host's member names (User.Name, JobName, Items[0].Part.Multiplier, ...); a\n"
           "method with several host objects takes one object keyed by the parameter names\n"
           "({\"oReportData\": ..., \"oUserDefaults\": ...}). --example prints a small, valid\n"
           "data file for the method. --vendor-path is the vendor folder exports go under;\n"
           "--preview/--no-preview set bPreview (printing goes to the default printer, or as\n"
           "QUARVEX_PRINTER says); --excel and --pdf ask for the exports; --report-format sets\n"
           "ReportFormat; --vendor and --master set the service's two connections for the\n"
           "methods that read through them. Exit code 0: the report ran with no error shown;\n"
           "1: an error was shown (also on standard error), bad report data included;\n"
           "2: usage error.\n";
}

/// The service's connection from a --vendor or --master value; none when not given.
host::ConnectionRef openConnection(const std::string& connection) {
    return connection.empty() ? nullptr : std::make_shared<db::Connection>(connection);
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

/// What the command line asked of a typed method.
struct CallOptions {
    service::TypedCallArguments arguments;
    std::string dataFile, vendor, master;
    bool example = false;
};

/// The options after the method's name; none (after saying why) for a usage error.
std::optional<CallOptions> parseOptions(const Args& args) {
    CallOptions options;
    service::TypedCallArguments& call = options.arguments;
    const ValuedOption valued[] = {
        {"--data", &options.dataFile},           {"--vendor-path", &call.vendorPath},
        {"--report-format", &call.reportFormat}, {"--vendor", &options.vendor},
        {"--master", &options.master},
    };
    const auto flag = [&](const std::string& a) -> std::optional<int> {
        if (a == "--example")
            options.example = true;
        else if (a == "--preview" || a == "--no-preview")
            call.preview = a == "--preview";
        else if (a == "--excel")
            call.excel = true;
        else if (a == "--pdf")
            call.pdf = true;
        else
            return unknownOption("call", a, printUsage);
        return std::nullopt;
    };
    // The method's name comes first.
    if (readOptions(std::span(args).subspan(1), "call", valued, flag))
        return std::nullopt;
    return options;
}

/// Runs `method` with the standalone host; the exit code says whether an error was shown.
int callMethod(const service::TypedMethod& method, const CallOptions& options) {
    host::ConnectionRef vendorConnection, masterConnection;
    try {
        vendorConnection = openConnection(options.vendor);
        masterConnection = openConnection(options.master);
    } catch (const Error& e) {
        std::cerr << "quarvex-reports call: " << e.description() << "\n";
        return 1;
    }
    CliHost cliHost(host::StandaloneConfig{});
    if (masterConnection)
        cliHost.host()->setLogConnection(masterConnection);
    try {
        service::PrintService service;
        service.setContainer(cliHost.host());
        service.setVendorConnection(vendorConnection);
        service.setMasterConnection(masterConnection);
        // The method reads its report data and reports its own failures, bad data included.
        method.call(service, options.arguments);
    } catch (const Error& e) {
        std::cerr << "quarvex-reports call: " << e.description() << "\n";
        return 1;
    }
    return exitCodeFor(cliHost);
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
    std::optional<CallOptions> options = parseOptions(args);
    if (!options)
        return 2;
    if (options->example) {
        if (!method->example) {
            std::cerr << "quarvex-reports call: " << method->name << " has no example data yet\n";
            return 2;
        }
        std::cout << method->example();
        return 0;
    }
    if (method->needsData && options->dataFile.empty()) {
        std::cerr << "quarvex-reports call: " << method->name << " needs --data FILE.json\n";
        return 2;
    }
    if (!options->dataFile.empty() && !readFile(options->dataFile, options->arguments.dataJson)) {
        std::cerr << "quarvex-reports call: cannot read " << options->dataFile << "\n";
        return 2;
    }
    return callMethod(*method, *options);
}

} // namespace qr::cli
