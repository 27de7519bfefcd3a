#include "service/run_sequence.hpp"

#include "platform/host/module_state.hpp"
#include "platform/output/pdf_writer.hpp"
#include "platform/output/printer.hpp"
#include "platform/preview/preview.hpp"
#include "service/component.hpp"

#include <string_view>

namespace qr::service {

namespace {

// The print job is named after the document and the job it belongs to, so a print queue
// shows which estimate each job came from.
std::string printJobName(const engine::Report& report) {
    std::string name = report.pages().title.empty() ? report.className() : report.pages().title;
    const auto& job = host::moduleState().currentJobName;
    if (!job.empty())
        name += " - " + job;
    return name;
}

} // namespace

void runSequence(engine::Report& report, bool preview) {
    initializeComponent();
    // The PDF export at the report's end and the print job are the same document.
    output::PdfReuseScope drawOnce;
    report.run();
    if (preview) {
        const auto& pages = report.pages();
        output::makePreviewPresenter()->show(pages, pages.title.empty() ? report.className()
                                                                        : pages.title);
    } else {
        output::printPages(report.pages(), printJobName(report));
    }
}

void reportTypedMethodFailure(const char* methodName) {
    if (std::string_view(methodName) == "PrintElevationPartsReport") {
        host::messageBox().show(host::currentErrorDescription(), host::MessageIcon::Information,
                                "Error Encountered");
        return;
    }
    host::showError(host::currentErrorDescription(), "PrintService", methodName);
}

} // namespace qr::service
