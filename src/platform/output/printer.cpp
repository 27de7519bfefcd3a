#include "platform/output/printer.hpp"

#include "platform/core/error.hpp"
#include "platform/output/output_error.hpp"
#include "platform/output/pdf_writer.hpp"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <cups/cups.h>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace qr::output {

namespace {

constexpr std::string_view kFilePrefix = "file:";

[[noreturn]] void printerError(const std::string& description) {
    throw Error(kPrinterError, kPrinterSource, description);
}

struct DestDeleter {
    void operator()(cups_dest_t* dest) const { cupsFreeDests(1, dest); }
};
using Destination = std::unique_ptr<cups_dest_t, DestDeleter>;

// The CUPS queue the job goes to: the named one, or the system's default (which CUPS takes from
// PRINTER, LPDEST, the user's lpoptions or the server, in that order).
Destination choosePrinter(const PrintDestination& destination) {
    // The server is read again from the environment (CUPS_SERVER) for every job, so a host that
    // changes it between jobs is heard.
    cupsSetServer(nullptr);
    if (destination.kind == PrintDestination::Kind::NamedPrinter) {
        Destination dest(cupsGetNamedDest(CUPS_HTTP_DEFAULT, destination.target.c_str(), nullptr));
        if (!dest) {
            printerError("The printer \"" + destination.target + "\" named by " + kPrinterVariable +
                         " was not found.");
        }
        return dest;
    }
    Destination dest(cupsGetNamedDest(CUPS_HTTP_DEFAULT, nullptr, nullptr));
    if (!dest) {
        printerError(std::string("No printer is available: install a printer or set ") +
                     kPrinterVariable + ".");
    }
    return dest;
}

// A file of its own in the system's temporary folder, removed when this goes out of scope.
class TemporaryPdf {
  public:
    TemporaryPdf(const std::string& printer, const std::string& jobName) {
        std::error_code error;
        const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
        std::string name =
            (error ? std::filesystem::path("/tmp") : folder) / "quarvex-print-XXXXXX.pdf";
        const int fd = ::mkstemps(name.data(), 4);
        if (fd < 0) {
            printerError("The printer \"" + printer + "\" could not start the job \"" + jobName +
                         "\": no temporary file for it (" + std::strerror(errno) + ").");
        }
        ::close(fd);
        m_path = name;
    }
    ~TemporaryPdf() {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    TemporaryPdf(const TemporaryPdf&) = delete;
    TemporaryPdf& operator=(const TemporaryPdf&) = delete;

    const std::filesystem::path& path() const { return m_path; }

  private:
    std::filesystem::path m_path;
};

} // namespace

PrintDestination parsePrinterOverride(const char* value) {
    const std::string_view text = value ? value : "";
    if (text.empty())
        return {};
    if (text.substr(0, kFilePrefix.size()) == kFilePrefix) {
        std::string path(text.substr(kFilePrefix.size()));
        if (path.empty()) {
            printerError(std::string(kPrinterVariable) + " asks for a file but names none "
                                                         "(write file:PATH).");
        }
        return {PrintDestination::Kind::PdfFile, std::move(path)};
    }
    return {PrintDestination::Kind::NamedPrinter, std::string(text)};
}

void printPages(const page::Pages& pages, const std::string& jobName) {
    const PrintDestination destination = parsePrinterOverride(std::getenv(kPrinterVariable));
    if (destination.kind == PrintDestination::Kind::PdfFile) {
        writePdf(pages, destination.target);
        return;
    }
    const Destination printer = choosePrinter(destination);
    if (pages.pages.empty())
        return;
    const std::string printerName = printer->name;

    TemporaryPdf job(printerName, jobName);
    try {
        writePdf(pages, job.path());
    } catch (const Error& e) {
        printerError("The printer \"" + printerName + "\" could not start the job \"" + jobName +
                     "\": " + e.description());
    }

    // Letter paper and one copy; each PDF page carries its own size, so a landscape page is
    // turned onto the paper by the print system.
    int optionCount = 0;
    cups_option_t* options = nullptr;
    optionCount = cupsAddOption(CUPS_MEDIA, CUPS_MEDIA_LETTER, optionCount, &options);
    optionCount = cupsAddOption(CUPS_COPIES, "1", optionCount, &options);
    const int jobId = cupsPrintFile2(CUPS_HTTP_DEFAULT, printer->name, job.path().c_str(),
                                     jobName.c_str(), optionCount, options);
    cupsFreeOptions(optionCount, options);
    if (jobId <= 0) {
        const char* reason = cupsLastErrorString();
        printerError("The printer \"" + printerName + "\" failed to print the job \"" + jobName +
                     "\"" + (reason && *reason ? std::string(": ") + reason : std::string()) + ".");
    }
}

} // namespace qr::output
