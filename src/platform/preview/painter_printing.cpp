#include "platform/preview/painter_printing.hpp"

#include "platform/core/error.hpp"
#include "platform/output/output_error.hpp"
#include "platform/preview/painter_renderer.hpp"

#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPrinter>
#include <algorithm>

namespace qr::output {

namespace {

[[noreturn]] void printerError(const std::string& description) {
    throw Error(kPrinterError, kPrinterSource, description);
}

QPageLayout::Orientation orientationOf(const page::Page& page) {
    return page.width > page.height ? QPageLayout::Landscape : QPageLayout::Portrait;
}

} // namespace

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

} // namespace qr::output
