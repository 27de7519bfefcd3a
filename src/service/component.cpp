#include "service/component.hpp"

#include "platform/engine/page/export_filter.hpp"
#include "platform/engine/report.hpp"
#include "platform/output/cairo_text_measurer.hpp"
#include "platform/output/pdf_writer.hpp"
#include "platform/output/workbook.hpp"

#include <mutex>

namespace qr::service {

void initializeComponent() {
    static std::once_flag once;
    std::call_once(once, [] {
        engine::setTextMeasurer(std::make_shared<output::CairoTextMeasurer>());
        page::installExportFilter(page::ExportKind::Pdf, &output::makePdfExportFilter);
        page::installExportFilter(page::ExportKind::Spreadsheet, &output::makeWorkbookExportFilter);
    });
}

} // namespace qr::service
