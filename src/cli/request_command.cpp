// quarvex-reports request --vendor CONN --master CONN [--vendor-path DIR] 'REQUEST STRING'
// Runs one request string through PrintService.PrintReport, with the standalone host reading
// users, the company, the vendor and settings from the databases and logging usage to the
// master database.

#include "cli/cli_host.hpp"
#include "cli/commands.hpp"
#include "cli/option_reader.hpp"
#include "platform/core/error.hpp"
#include "platform/db/connection.hpp"
#include "service/print_service.hpp"

#include <iostream>

namespace qr::cli {

namespace {

void printUsage(std::ostream& out) {
    out << "Usage: quarvex-reports request --vendor CONN --master CONN [--vendor-path DIR]\n"
           "                               'REQUEST STRING'\n\n"
           "Runs a request such as 'armarkup MarkupTable true 1 1 false true false |x |'.\n"
           "The vendor folder (where Jobs/<job>/Reports lies) is --vendor-path, else the folder\n"
           "of a SQLite vendor database, else the working folder. Exit code 0: no error or\n"
           "message shown; 1: one was shown (also on standard error); 2: usage error.\n";
}

} // namespace

int runRequest(const Args& args) {
    std::string vendor, master, vendorPath, request;
    bool haveRequest = false;
    const ValuedOption valued[] = {
        {"--vendor", &vendor},
        {"--master", &master},
        {"--vendor-path", &vendorPath},
    };
    const auto word = [&](const std::string& a) -> std::optional<int> {
        if (a == "--help" || a == "-h") {
            printUsage(std::cout);
            return 0;
        }
        if (!haveRequest && (a.empty() || a[0] != '-' || a.find(' ') != std::string::npos)) {
            request = a;
            haveRequest = true;
            return std::nullopt;
        }
        std::cerr << "quarvex-reports request: unexpected argument '" << a << "'\n";
        printUsage(std::cerr);
        return 2;
    };
    if (std::optional<int> exitCode = readOptions(args, "request", valued, word))
        return *exitCode;
    if (vendor.empty() || master.empty() || !haveRequest) {
        printUsage(std::cerr);
        return 2;
    }

    host::ConnectionRef vendorConnection, masterConnection;
    try {
        vendorConnection = std::make_shared<db::Connection>(vendor);
        masterConnection = std::make_shared<db::Connection>(master);
    } catch (const Error& e) {
        std::cerr << "quarvex-reports request: " << e.description() << "\n";
        return 1;
    }
    host::StandaloneConfig config;
    config.vendorPath = vendorPath;
    CliHost cliHost(config);
    cliHost.host()->setLogConnection(masterConnection);
    try {
        service::PrintService service;
        service.setContainer(cliHost.host());
        service.setVendorConnection(vendorConnection);
        service.setMasterConnection(masterConnection);
        service.PrintReport(request);
    } catch (const Error& e) {
        std::cerr << "quarvex-reports request: " << e.description() << "\n";
        return 1;
    }
    return exitCodeFor(cliHost);
}

} // namespace qr::cli
