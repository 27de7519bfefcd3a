// quarvex-reports label-calibration --sheet 5260|5267 [--top TWIPS] [--left TWIPS] [--pdf FILE]
//                                   [--master CONN --user ID [--save]]
// Prints one calibration sheet of a label stock (or writes it as a PDF), moved by the label
// offsets given or stored for the user, and with --save stores the offsets as the user's
// "LblTop" and "LblLeft" settings, which every label request applies from then on.

#include "cli/cli_host.hpp"
#include "cli/commands.hpp"
#include "platform/core/error.hpp"
#include "platform/db/connection.hpp"
#include "platform/output/pdf_writer.hpp"
#include "platform/output/printer.hpp"
#include "reports/common/label_calibration.hpp"
#include "service/component.hpp"

#include <charconv>
#include <cstdint>
#include <iostream>
#include <optional>

namespace qr::cli {

namespace {

constexpr const char* kCommand = "quarvex-reports label-calibration: ";
/// An offset of more than an inch is not a printer's misalignment but a wrong sheet.
constexpr int kMaxOffset = 1440;

void printUsage(std::ostream& out) {
    out << "Usage: quarvex-reports label-calibration --sheet 5260|5267 [--top TWIPS]\n"
           "           [--left TWIPS] [--pdf FILE] [--master CONN --user ID [--save]]\n\n"
           "Prints one calibration sheet of the label stock: every label's outline, centre\n"
           "cross, row and column, and two scales in the top margin numbered in twips\n"
           "(1/1440 inch). The sheet is moved by --top (down) and --left (right), which default\n"
           "to the user's stored LblTop and LblLeft settings when --master and --user are given,\n"
           "else to 0; offsets reach at most 1440 twips either way.\n\n"
           "  --pdf FILE   write the sheet to FILE instead of printing it\n"
           "  --save       after printing, store the offsets as the user's LblTop and LblLeft,\n"
           "               which the label reports then apply\n\n"
           "Printing goes to the default printer, or where QUARVEX_PRINTER says. Exit code 0:\n"
           "done; 1: the sheet could not be printed or the settings not read or stored;\n"
           "2: usage error.\n";
}

struct Options {
    const reports::LabelSheet* sheet = nullptr;
    std::optional<int> top;
    std::optional<int> left;
    std::string pdf;
    std::string master;
    std::optional<int> user;
    bool save = false;
};

/// A usage error: the message says what was wrong.
struct UsageError {
    std::string message;
};

int wholeNumber(const std::string& option, const std::string& text, long low, long high,
                const char* what) {
    // "+50" reads as 50, as a user writes a move down or right.
    const std::string digits = text.size() > 1 && text[0] == '+' ? text.substr(1) : text;
    long value = 0;
    const auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (digits.empty() || ec != std::errc() || end != digits.data() + digits.size())
        throw UsageError{option + " must be " + what + ", not '" + text + "'"};
    if (value < low || value > high)
        throw UsageError{option + " " + text + " is out of range (" + std::to_string(low) + " to " +
                         std::to_string(high) + ")"};
    return static_cast<int>(value);
}

Options parse(const Args& args) {
    Options o;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--save") {
            o.save = true;
            continue;
        }
        if (a != "--sheet" && a != "--top" && a != "--left" && a != "--pdf" && a != "--master" &&
            a != "--user")
            throw UsageError{"unknown option '" + a + "'"};
        if (i + 1 >= args.size())
            throw UsageError{a + " needs a value"};
        const std::string& value = args[++i];
        if (a == "--sheet") {
            o.sheet = reports::labelSheetNamed(value);
            if (!o.sheet)
                throw UsageError{"--sheet must be 5260 or 5267, not '" + value + "'"};
        } else if (a == "--top" || a == "--left") {
            (a == "--top" ? o.top : o.left) =
                wholeNumber(a, value, -kMaxOffset, kMaxOffset, "a whole number of twips");
        } else if (a == "--pdf") {
            o.pdf = value;
        } else if (a == "--master") {
            o.master = value;
        } else {
            o.user = wholeNumber(a, value, INT32_MIN, INT32_MAX, "a user id (a whole number)");
        }
    }
    if (!o.sheet)
        throw UsageError{"--sheet 5260 or --sheet 5267 is needed"};
    if (o.master.empty() != !o.user)
        throw UsageError{"--master and --user go together"};
    if (o.save && o.master.empty())
        throw UsageError{"--save needs --master and --user"};
    if (o.save && !o.top && !o.left)
        throw UsageError{"--save needs --top or --left"};
    return o;
}

// The user's stored offset; the label requests narrow it to 16 bits and refuse one that does
// not fit, and so does the calibration.
int storedOffset(host::UserSettingService& settings, int user, const char* name) {
    const std::int32_t value = settings.getSetting(user, name, 0);
    if (value < INT16_MIN || value > INT16_MAX)
        throw Error(errc::kOverflow, "label-calibration",
                    "Overflow: user " + std::to_string(user) + "'s " + name + " setting " +
                        std::to_string(value) + " does not fit in 16 bits");
    return value;
}

void printSheet(const Options& o, int top, int left) {
    service::initializeComponent();
    reports::LabelCalibrationSheet sheet(*o.sheet, top, left);
    sheet.run();
    if (!o.pdf.empty())
        output::writePdf(sheet.pages(), o.pdf);
    else
        output::printPages(sheet.pages(), sheet.title());
    std::cout << sheet.title() << (o.pdf.empty() ? " printed" : " written to " + o.pdf)
              << " with top offset " << top << " and left offset " << left << " twips\n";
}

int run(const Options& o) {
    std::optional<CliHost> cliHost;
    std::unique_ptr<host::UserSettingService> settings;
    int top = o.top.value_or(0);
    int left = o.left.value_or(0);
    if (!o.master.empty()) {
        cliHost.emplace(host::StandaloneConfig{});
        settings = host::hostClasses().createUserSettingService();
        settings->setConnection(std::make_shared<db::Connection>(o.master));
        top = o.top ? *o.top : storedOffset(*settings, *o.user, "LblTop");
        left = o.left ? *o.left : storedOffset(*settings, *o.user, "LblLeft");
    }
    printSheet(o, top, left);
    if (o.save) {
        settings->saveSetting(*o.user, "LblTop", top);
        settings->saveSetting(*o.user, "LblLeft", left);
        std::cout << "saved LblTop=" << top << " and LblLeft=" << left << " for user " << *o.user
                  << "\n";
    }
    return 0;
}

} // namespace

int runLabelCalibration(const Args& args) {
    for (const std::string& a : args) {
        if (a == "--help" || a == "-h") {
            printUsage(std::cout);
            return 0;
        }
    }
    Options options;
    try {
        options = parse(args);
    } catch (const UsageError& e) {
        std::cerr << kCommand << e.message << "\n";
        printUsage(std::cerr);
        return 2;
    }
    try {
        return run(options);
    } catch (const Error& e) {
        std::cerr << kCommand << e.description() << "\n";
        return 1;
    }
}

} // namespace qr::cli
