// The handlers the four job glass reports share, in the order the engine raises them.
#include "reports/glass/job_glass_report.hpp"

#include "data/statements.hpp"
#include "platform/core/number_format.hpp"
#include "platform/host/module_state.hpp"
#include "reports/common/heading.hpp"

#include <string_view>

namespace qr::reports {

namespace {

/// One lite's area, and areas times units; ".00" for zero, no digit before the point below 1.
constexpr std::string_view kAreaEachFormat = "##,###.00";
constexpr std::string_view kAreaFormat = "###,###.00";
constexpr std::string_view kMoneyFormat = "$###,###.00";

/// The heading of these reports: the firm with its phone and fax, and the job.
constexpr HeadingControls kHeading{.firm = "lGlassfirm",
                                   .user = nullptr,
                                   .phone = "lPhone",
                                   .email = nullptr,
                                   .fax = "lFax",
                                   .job = "lJobName"};

} // namespace

JobGlassReport::Figures& JobGlassReport::Figures::operator+=(const Figures& other) {
    area += other.area;
    price += other.price;
    blockArea += other.blockArea;
    blockPrice += other.blockPrice;
    return *this;
}

JobGlassReport::JobGlassReport(Setup setup)
    : RequestReport(std::move(setup.design), {nullptr, nullptr}), m_options(setup.options) {
    onFormat("Detail", &JobGlassReport::detailFormat);
    onFormat("ghTypeFooter", &JobGlassReport::ghTypeFooterFormat);
    if (m_options.byElevation)
        onFormat("ghElevFooter", &JobGlassReport::ghElevFooterFormat);
    onFormat("PageFooter", [this] { pageFooterFormat(); });
    onFormat("ReportFooter", &JobGlassReport::reportFooterFormat);
}

void JobGlassReport::reportStart() {
    restoreDesignCaptions();
    const std::string& table = host::moduleState().requestTable;
    const db::Dialect dialect = vendorConnection().dialect();
    openDataSource(m_options.byElevation ? data::sql::glassByElevation(table, dialect)
                                         : data::sql::glassByPart(table, dialect));
    showHeading(*this, requestHeading(), kHeading);
    showReportDateTime(*this);
    m_part = {};
    m_elevation = {};
    m_job = {};
    m_unpricedItems = false;
}

void JobGlassReport::detailFormat() {
    // The units as fUnits shows them, so the areas add up what the line prints.
    const double units = printedNumber("fUnits", "iGqty");
    const double areaEach = rowNumber("pSqrFt");
    const double lineTotal = rowNumber("ptotals");
    label("lSquareFt").setNumber(areaEach, kAreaEachFormat);
    label("lTotal").setNumber(lineTotal, kMoneyFormat);
    Figures line{.area = areaEach * units, .price = lineTotal};
    if (m_options.blockFigures) {
        line.blockPrice = rowNumber("pblkpricetotal");
        line.blockArea = printedNumber("fBlkArea", "pblksqrft") * units;
        label("lBlockTotal").setNumber(line.blockPrice, kMoneyFormat);
    }
    m_part += line;
    if (m_options.byElevation)
        m_elevation += line;

    // An item without a price per square foot prices at nothing; the footer warns of it.
    const Variant price = fields()["pGprc"].value();
    if (price.isNull() || rowNumber("pGprc") == 0)
        m_unpricedItems = true;
}

void JobGlassReport::ghTypeFooterFormat() {
    m_job += m_part;
    showFigures(m_part, "lSqrFtSubTot", "lActualSubTot", "lBlkAreaSub", "lBlkDollarSub");
    m_part = {};
}

void JobGlassReport::ghElevFooterFormat() {
    showFigures(m_elevation, "lElevSqrFtSubTot", "lElevActualSubTot", "lElevBlkAreaSub",
                "lElevBlkDollarSub");
    m_elevation = {};
}

void JobGlassReport::reportFooterFormat() {
    showFigures(m_job, "lAreaGrandTotal", "lGrandTotal", "lBlkAreaGTot", "lBlockGTotal");
    if (!m_options.blockFigures)
        label("lWarning").setVisible(m_unpricedItems);
}

void JobGlassReport::reportEnd() {
    dataControl().close();
}

void JobGlassReport::showFigures(const Figures& figures, const char* area, const char* price,
                                 const char* blockArea, const char* blockPrice) {
    label(area).setNumber(figures.area, kAreaFormat);
    label(price).setNumber(figures.price, kMoneyFormat);
    if (m_options.blockFigures) {
        label(blockArea).setNumber(figures.blockArea, kAreaFormat);
        label(blockPrice).setNumber(figures.blockPrice, kMoneyFormat);
    }
}

} // namespace qr::reports
