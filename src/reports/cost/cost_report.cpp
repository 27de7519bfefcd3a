#include "reports/cost/cost_report.hpp"

#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/core/system_formats.hpp"
#include "platform/host/module_state.hpp"
#include "reports/common/page_footer.hpp"

namespace qr::reports::cost {

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

float pricePerSquareFoot(double amount, double area) {
    return static_cast<float>(roundHalfEven(amount / area, 2));
}

Variant requiredValue(const RowCursor& row, std::string_view column, std::string_view where,
                      const std::string& source) {
    Variant value = row.value(column);
    if (value.isNull()) {
        throw Error(errc::kInvalidUseOfNull, source,
                    "Invalid use of Null: " + std::string(column) + " of " + std::string(where) +
                        " is empty (Null).");
    }
    return value;
}

double requiredNumber(const RowCursor& row, std::string_view column, std::string_view where,
                      const std::string& source) {
    return toDouble(requiredValue(row, column, where, source));
}

std::string requiredText(const RowCursor& row, std::string_view column, std::string_view where,
                         const std::string& source) {
    return toText(requiredValue(row, column, where, source));
}

std::string textOrEmpty(const RowCursor& row, std::string_view column) {
    const Variant value = row.value(column);
    return value.isNull() ? std::string() : toText(value);
}

CostReport::CostReport(engine::ReportDesign design, ExportSuffixes suffixes)
    : Report(design), m_suffixes(suffixes), m_designCaptions(labelCaptions(design)) {}

db::Connection& CostReport::vendorConnection() const {
    return requestConnection(host::moduleState().requestVendorConnection, className(), "vendor");
}

db::Connection& CostReport::masterConnection() const {
    return requestConnection(host::moduleState().requestMasterConnection, className(), "master");
}

void CostReport::restoreDesignCaptions() {
    for (const auto& [name, caption] : m_designCaptions)
        label(name).setCaption(caption);
}

void CostReport::openDataSource(const std::string& source) {
    dataControl().setConnection(&vendorConnection());
    dataControl().setCursorType(CursorType::Static);
    dataControl().setLockType(LockType::Optimistic);
    dataControl().setSource(source);
    dataControl().refresh();
}

void CostReport::showReportDateTime() {
    const Date now = Clock::now();
    label("RptDate").setCaption(systemFormats().shortDate(now));
    label("RptTime").setCaption(systemFormats().shortTime(now));
}

void CostReport::pageFooterFormat() {
    showPageOfPages(textBox("txtPageNumber"), pageNumber());
}

void CostReport::reportEnd() {
    const auto& state = host::moduleState();
    exportAtReportEnd(pages(), state.currentJobName, state.requestExcel, state.requestPdf,
                      m_suffixes);
}

} // namespace qr::reports::cost
