// quarvex-reports: runs the component outside the host application. Each subcommand lives in
// its own file; this one only picks it.

#include "cli/commands.hpp"

#include <cstring>
#include <iostream>
#include <string>

namespace {

struct Subcommand {
    const char* name;
    const char* summary;
    int (*run)(const qr::cli::Args&);
};

const Subcommand kSubcommands[] = {
    {"make-sample", "write the sample jobs into a vendor and a master database",
     qr::cli::runMakeSample},
    {"call", "run a typed print method with report data from a JSON file", qr::cli::runCall},
    {"request", "run a request string through PrintReport", qr::cli::runRequest},
    {"package", "print a job's bid package: several reports in one PDF", qr::cli::runPackage},
    {"label-calibration", "print a label sheet's calibration page, store the label offsets",
     qr::cli::runLabelCalibration},
};

void printHelp(std::ostream& out) {
    out << "Usage: quarvex-reports <command> [options]\n"
           "       quarvex-reports --help | --version\n\n"
           "Prints the job reports of the glazing estimator: previews, prints without a dialog,\n"
           "and exports PDF and Excel workbook files into the job's Reports folder.\n\n"
           "Commands:\n";
    for (const auto& command : kSubcommands) {
        out << "  " << command.name << std::string(19 - std::strlen(command.name), ' ')
            << command.summary << "\n";
    }
    out << "\nRun 'quarvex-reports <command> --help' for a command's options.\n"
           "Environment: QUARVEX_PRINTER (printer name, or file:PATH to print into a PDF file),\n"
           "QUARVEX_PREVIEW_DIR (where the headless preview writes), SOURCE_DATE_EPOCH (the clock\n"
           "report headings show), LC_ALL/LANG (date, time and currency formats).\n";
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        printHelp(std::cerr);
        return 2;
    }
    const std::string first = argv[1];
    if (first == "--help" || first == "-h") {
        printHelp(std::cout);
        return 0;
    }
    if (first == "--version") {
        std::cout << "quarvex-reports " << QR_VERSION << "\n";
        return 0;
    }
    for (const auto& command : kSubcommands) {
        if (first == command.name) {
            qr::cli::Args args(argv + 2, argv + argc);
            return command.run(args);
        }
    }
    std::cerr << "quarvex-reports: unknown command '" << first << "'\n";
    printHelp(std::cerr);
    return 2;
}
