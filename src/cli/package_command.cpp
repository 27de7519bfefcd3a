// quarvex-reports package --vendor CONN --master CONN --job ID --out FILE.pdf [--user ID]
//                         [REPORT ...]
// Prints a job's bid package: several of its reports in one PDF, a bookmark per report.

#include "cli/cli_host.hpp"
#include "cli/commands.hpp"
#include "cli/option_reader.hpp"
#include "data/statements.hpp"
#include "platform/core/error.hpp"
#include "platform/db/connection.hpp"
#include "service/bid_package.hpp"

#include <iostream>
#include <optional>

namespace qr::cli {

namespace {

void printUsage(std::ostream& out) {
    out << "Usage: quarvex-reports package --vendor CONN --master CONN --job ID --out FILE.pdf\n"
           "                               [--user ID] [REPORT ...]\n\n"
           "Prints the bid package of a job: its reports, one after another, in one PDF with a\n"
           "bookmark per report, each report numbering its own pages; the document's title is\n"
           "\"Bid Package - <job name>\", its author the firm. The reports read the job's report\n"
           "tables (MarkupReport<job>, FramingReport<job>, LaborReport<job>, "
           "GlassOrderReport<job>)\n"
           "and its glass rows. --user is the estimator the headings show (default 1). The file\n"
           "is written only when every report printed.\n\n"
           "Reports (default:";
    for (const auto& name : service::defaultBidPackage())
        out << " " << name;
    out << "):\n";
    for (const auto& report : service::bidPackageReports())
        out << "  " << report.name << std::string(18 - std::string(report.name).size(), ' ')
            << report.description << " (bookmark \"" << report.title << "\")\n";
    out << "\nExit code 0: the package was written; 1: a report or the file failed (the error\n"
           "is shown, also on standard error); 2: usage error.\n";
}

struct PackageOptions {
    std::string vendor, master;
    service::BidPackageRequest request;
};

/// The options; none (after saying why) for a usage error.
std::optional<PackageOptions> parseOptions(const Args& args) {
    PackageOptions options;
    std::string job, user, out;
    const ValuedOption valued[] = {
        {"--vendor", &options.vendor},
        {"--master", &options.master},
        {"--job", &job},
        {"--user", &user},
        {"--out", &out},
    };
    const auto report = [&](const std::string& a) -> std::optional<int> {
        if (!a.empty() && a[0] == '-')
            return unknownOption("package", a, printUsage);
        if (!service::bidPackageReport(a)) {
            std::cerr << "quarvex-reports package: unknown report '" << a
                      << "' (see 'quarvex-reports package --help')\n";
            return 2;
        }
        options.request.reports.push_back(a);
        return std::nullopt;
    };
    if (readOptions(args, "package", valued, report))
        return std::nullopt;
    if (options.vendor.empty() || options.master.empty() || job.empty() || out.empty()) {
        printUsage(std::cerr);
        return std::nullopt;
    }
    const auto parseId = [](const std::string& text, const char* field, std::int32_t& id) {
        try {
            id = std::stoi(data::checkedId(text, field));
            return true;
        } catch (const std::exception&) {
            std::cerr << "quarvex-reports package: invalid " << field << ": " << text << "\n";
            return false;
        }
    };
    if (!parseId(job, "job id", options.request.jobId) ||
        (!user.empty() && !parseId(user, "user id", options.request.userId)))
        return std::nullopt;
    options.request.output = out;
    return options;
}

} // namespace

int runPackage(const Args& args) {
    for (const auto& a : args) {
        if (a == "--help" || a == "-h") {
            printUsage(std::cout);
            return 0;
        }
    }
    std::optional<PackageOptions> options = parseOptions(args);
    if (!options)
        return 2;

    host::ConnectionRef vendorConnection, masterConnection;
    try {
        vendorConnection = std::make_shared<db::Connection>(options->vendor);
        masterConnection = std::make_shared<db::Connection>(options->master);
    } catch (const Error& e) {
        std::cerr << "quarvex-reports package: " << e.description() << "\n";
        return 1;
    }
    CliHost cliHost(host::StandaloneConfig{});
    cliHost.host()->setLogConnection(masterConnection);
    try {
        service::PrintService service;
        service.setContainer(cliHost.host());
        service.setVendorConnection(vendorConnection);
        service.setMasterConnection(masterConnection);
        service::printBidPackage(service, options->request);
    } catch (const Error& e) {
        std::cerr << "quarvex-reports package: " << e.description() << "\n";
        return 1;
    }
    std::cout << options->request.output.string() << "\n";
    return exitCodeFor(cliHost);
}

} // namespace qr::cli
