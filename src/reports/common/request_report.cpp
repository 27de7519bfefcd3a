#include "reports/common/request_report.hpp"

#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/host/module_state.hpp"
#include "reports/common/page_footer.hpp"

namespace qr::reports {

namespace {

std::map<std::string, std::string> labelCaptions(const engine::ReportDesign& design) {
    std::map<std::string, std::string> captions;
    for (const auto& section : design.sections) {
        for (const auto& control : section.controls) {
            if (control.kind == engine::ControlKind::Label)
                captions.emplace(control.name, control.caption);
        }
    }
    return captions;
}

db::Connection& requestConnection(const host::ConnectionRef& connection, const std::string& report,
                                  const char* which) {
    if (!connection) {
        throw Error(errc::kObjectNotSet, report,
                    report + " needs the request's " + which +
                        " connection: it is printed through PrintReport only.");
    }
    return *connection;
}

} // namespace

RequestReport::RequestReport(engine::ReportDesign design, ExportSuffixes suffixes)
    : Report(design), m_suffixes(suffixes), m_designCaptions(labelCaptions(design)) {}

db::Connection& RequestReport::vendorConnection() const {
    return requestConnection(host::moduleState().requestVendorConnection, className(), "vendor");
}

db::Connection& RequestReport::masterConnection() const {
    return requestConnection(host::moduleState().requestMasterConnection, className(), "master");
}

void RequestReport::restoreDesignCaptions() {
    for (const auto& [name, caption] : m_designCaptions)
        label(name).setCaption(caption);
}

void RequestReport::openDataSource(const std::string& source) {
    dataControl().setConnection(&vendorConnection());
    dataControl().setCursorType(CursorType::Static);
    dataControl().setLockType(LockType::Optimistic);
    dataControl().setSource(source);
    dataControl().refresh();
}

void RequestReport::pageFooterFormat() {
    formatPageNumberFooter(*this);
}

void RequestReport::exportRequestedFiles() {
    if (m_suffixes.spreadsheet == nullptr && m_suffixes.pdf == nullptr)
        return;
    const auto& state = host::moduleState();
    exportAtReportEnd(pages(), state.currentJobName, state.requestExcel, state.requestPdf,
                      m_suffixes);
}

void RequestReport::reportEnd() {
    exportRequestedFiles();
}

void RequestReport::refuseValue(int number, std::string_view column,
                                const std::string& problem) const {
    const char* kind =
        number == errc::kInvalidUseOfNull ? "Invalid use of Null: " : "Type mismatch: ";
    throw Error(number, className(),
                kind + std::string(column) + " of the report table " +
                    host::moduleState().requestTable + " " + problem + ".");
}

double RequestReport::rowNumber(std::string_view column) {
    const Variant value = fields()[column].value();
    if (value.isNull())
        refuseValue(errc::kInvalidUseOfNull, column, "is empty (Null)");
    try {
        return toDouble(value);
    } catch (const Error&) {
        refuseValue(errc::kTypeMismatch, column, "is not a number (\"" + toText(value) + "\")");
    }
}

std::string RequestReport::rowText(std::string_view column) {
    const Variant value = fields()[column].value();
    if (value.isNull())
        refuseValue(errc::kInvalidUseOfNull, column, "is empty (Null)");
    return toText(value);
}

double RequestReport::printedNumber(std::string_view box, std::string_view column) {
    engine::TextBox& printed = textBox(box);
    if (printed.value().isNull())
        refuseValue(errc::kInvalidUseOfNull, column, "is empty (Null)");
    const std::optional<double> number = numberFromText(printed.text());
    if (!number) {
        refuseValue(errc::kTypeMismatch, column,
                    "printed as \"" + printed.text() + "\" in " + std::string(box) +
                        ", which is not a number");
    }
    return *number;
}

} // namespace qr::reports
