// The handlers the glass cut listing and the four glass label sheets share, in the order the
// engine raises them.
#include "data/statements.hpp"
#include "platform/core/error.hpp"
#include "platform/db/connection.hpp"
#include "platform/host/error_log.hpp"
#include "platform/host/module_state.hpp"
#include "reports/common/heading.hpp"
#include "reports/common/label_sheet.hpp"
#include "reports/common/page_footer.hpp"
#include "reports/glass/glass_cut_reports.hpp"

namespace qr::reports {

namespace {

bool hasSection(const engine::ReportDesign& design, const char* name) {
    for (const auto& section : design.sections) {
        if (section.name == name)
            return true;
    }
    return false;
}

} // namespace

GlassCutReport::GlassCutReport(engine::ReportDesign design, GlassCutRows rows)
    : Report(design), m_designPage(design.page), m_rows(rows),
      m_listing(hasSection(design, "PageFooter")) {
    if (m_listing)
        onFormat("PageFooter", &GlassCutReport::pageFooterFormat);
}

void GlassCutReport::reportStart() {
    // The margins move by the offsets on each run; each run starts from the design's own.
    pageSettings() = m_designPage;
    host::runTrapped(className(), "ActiveReport_ReportStart", [this] {
        openGlassRows();
        const host::ModuleState& state = host::moduleState();
        applyLabelOffsets(pageSettings(), state.labelTopOffset, state.labelLeftOffset);
        if (m_listing)
            showReportDateTime(*this);
    });
}

void GlassCutReport::openGlassRows() {
    engine::DataControl& rows = dataControl();
    // A run whose source fails to open prints no rows rather than the last request's.
    rows.close();
    const host::ModuleState& state = host::moduleState();
    if (!state.requestVendorConnection) {
        throw Error(errc::kObjectNotSet, className(),
                    className() + " needs the request's vendor connection: it is printed "
                                  "through PrintReport only.");
    }
    db::Connection& vendor = *state.requestVendorConnection;
    std::string source;
    switch (m_rows) {
    case GlassCutRows::TableOrder:
        source = data::sql::glassCutList(state.requestTable, vendor.dialect());
        break;
    case GlassCutRows::LabelOrder:
    case GlassCutRows::LabelOrderUpperSelect:
        source = data::sql::glassLabels(state.requestTable, vendor.dialect(),
                                        m_rows == GlassCutRows::LabelOrderUpperSelect);
        break;
    }
    rows.setConnection(&vendor);
    rows.setCursorType(CursorType::Static);
    rows.setLockType(LockType::Optimistic);
    rows.setSource(std::move(source));
    rows.refresh();
}

void GlassCutReport::pageFooterFormat() {
    formatPageNumberFooter(*this);
}

void GlassCutReport::reportEnd() {
    dataControl().close();
}

} // namespace qr::reports
