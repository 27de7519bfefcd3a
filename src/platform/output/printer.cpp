#include "platform/output/printer.hpp"

#include "platform/core/error.hpp"
#include "platform/output/gui_application.hpp"
#include "platform/output/output_error.hpp"
#include "platform/output/painter_renderer.hpp"
#include "platform/output/pdf_writer.hpp"

#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace qr::output {

namespace {

constexpr std::string_view kFilePrefix = "file:";

[[noreturn]] void printerError(const std::string& description) {
    throw Error(kPrinterError, kPrinterSource, description);
}

QPrinterInfo choosePrinter(const PrintDestination& destination) {
    if (destination.kind == PrintDestination::Kind::NamedPrinter) {
        QPrinterInfo info = QPrinterInfo::printerInfo(QString::fromStdString(destination.target));
        if (info.isNull()) {
            printerError("The printer \"" + destination.target + "\" named by " + kPrinterVariable +
                         " was not found.");
        }
        return info;
    }
    QPrinterInfo info = QPrinterInfo::defaultPrinter();
    if (info.isNull()) {
        printerError(std::string("No printer is available: install a printer or set ") +
                     kPrinterVariable + ".");
    }
    return info;
}

QPageLayout::Orientation orientationOf(const page::Page& page) {
    return page.width > page.height ? QPageLayout::Landscape : QPageLayout::Portrait;
}

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

void setUpPrinter(QPrinter& printer, const page::Pages& pages, const std::string& jobName) {
    printer.setDocName(QString::fromStdString(jobName));
    printer.setFullPage(true);
    printer.setCopyCount(1);
    printer.setPageSize(QPageSize(QPageSize::Letter));
    printer.setPageOrientation(pages.orientation == page::Orientation::Landscape
                                   ? QPageLayout::Landscape
                                   : QPageLayout::Portrait);
    if (!pages.pages.empty())
        printer.setPageOrientation(orientationOf(pages.pages.front()));
    // Painting is full page, so the margins change no position; they tell the print system
    // where the report keeps its edges clear.
    const double perPoint = page::kTwipsPerPoint;
    printer.setPageMargins(QMarginsF(pages.marginLeft / perPoint, pages.marginTop / perPoint,
                                     pages.marginRight / perPoint, pages.marginBottom / perPoint),
                           QPageLayout::Point);
}

void printPageRange(QPrinter& printer, const page::Pages& pages, std::size_t first,
                    std::size_t last, const std::string& jobName) {
    if (pages.pages.empty())
        return;
    last = std::min(last, pages.pages.size() - 1);
    first = std::min(first, last);
    const std::string printerName = printer.printerName().toStdString();
    printer.setPageOrientation(orientationOf(pages.pages[first]));
    QPainter painter;
    if (!painter.begin(&printer)) {
        printerError("The printer \"" + printerName + "\" could not start the job \"" + jobName +
                     "\".");
    }
    PainterRenderer renderer;
    for (std::size_t i = first; i <= last; ++i) {
        const page::Page& page = pages.pages[i];
        if (i > first) {
            printer.setPageOrientation(orientationOf(page));
            if (!printer.newPage()) {
                painter.end();
                printerError("The printer \"" + printerName + "\" refused page " +
                             std::to_string(i + 1) + " of the job \"" + jobName + "\".");
            }
        }
        painter.setTransform(PainterRenderer::twipsToDevice(printer));
        try {
            renderer.paint(painter, page, pages.fonts);
        } catch (...) {
            printer.abort();
            painter.end();
            throw;
        }
    }
    if (!painter.end() || printer.printerState() == QPrinter::Error) {
        printerError("The printer \"" + printerName + "\" failed to print the job \"" + jobName +
                     "\".");
    }
}

void printPages(const page::Pages& pages, const std::string& jobName) {
    const PrintDestination destination = parsePrinterOverride(std::getenv(kPrinterVariable));
    if (destination.kind == PrintDestination::Kind::PdfFile) {
        writePdf(pages, destination.target);
        return;
    }
    ensureGuiApplication();
    const QPrinterInfo info = choosePrinter(destination);
    if (pages.pages.empty())
        return;

    QPrinter printer(info, QPrinter::HighResolution);
    setUpPrinter(printer, pages, jobName);
    printPageRange(printer, pages, 0, pages.pages.size() - 1, jobName);
}

} // namespace qr::output
