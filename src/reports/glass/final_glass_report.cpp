// The handlers the four final glass reports share, in the order the engine raises them.
#include "reports/glass/final_glass_report.hpp"

#include "data/statements.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/core/system_formats.hpp"
#include "platform/db/connection.hpp"
#include "reports/common/heading.hpp"
#include "reports/common/page_footer.hpp"

#include <string_view>

namespace qr::reports {

namespace {

/// Areas: no digit before the point below 1, ".00" for zero.
constexpr std::string_view kAreaFormat = "###,###.00";
constexpr std::string_view kCostFormat = "$###,###.00";

/// The category text that marks a door lite (compared exactly, letter case included).
constexpr std::string_view kDoorGlass = "door glass";

/// Text of a row value; Null and Empty give "".
std::string textOf(const Variant& value) {
    if (value.isNull() || value.isEmpty())
        return {};
    return value.type() == VarType::String ? value.asString() : toText(value);
}

} // namespace

FinalGlassReport::FinalGlassReport(engine::ReportDesign design, FinalGlassOptions options)
    : Report(std::move(design)), m_options(options) {
    if (m_options.descriptionLabel) {
        onFormat("ghOrderGroup", &FinalGlassReport::ghOrderGroupFormat);
    } else {
        onBeforePrint("ghOrderGroup", &FinalGlassReport::ghOrderGroupBeforePrint);
    }
    onFormat("Detail", &FinalGlassReport::detailFormat);
    onFormat("GroupFooter1", &FinalGlassReport::groupFooter1Format);
    onFormat("PageFooter", &FinalGlassReport::pageFooterFormat);
    onBeforePrint("ReportFooter", &FinalGlassReport::reportFooterBeforePrint);
}

host::FinalGlassReportData& FinalGlassReport::data() {
    if (ReportData == nullptr)
        throw Error::objectNotSet(className());
    return *ReportData;
}

// ---- Report start ---------------------------------------------------------------------------

void FinalGlassReport::reportStart() {
    openGlassRows();
    fillHeading();
    resetFigures();
}

void FinalGlassReport::openGlassRows() {
    host::FinalGlassReportData& report = data();
    engine::DataControl& rows = dataControl();
    rows.setConnection(report.Connection.get());
    rows.setCursorType(CursorType::Static);
    rows.setLockType(LockType::Optimistic);
    rows.setSource(report.GlassQuery);
    rows.refresh();
}

void FinalGlassReport::fillHeading() {
    const host::FinalGlassReportData& report = data();
    showHeading(*this, headingOf(report), HeadingControls{});
    showReportDateTime(*this);

    label("Label1").setCaption("Job Glass Report");
    const std::string& title = report.ReportTitle;
    if (title.find_first_not_of(' ') != std::string::npos)
        label("Label1").setCaption(title);
}

void FinalGlassReport::resetFigures() {
    m_area.fill(0);
    m_cost.fill(0);
    m_doorLiteCount = 0;
    m_doorArea = 0;
    m_doorCost = 0;
    m_lineArea = 0;
    m_typeArea = 0;
    m_grandArea = 0;
}

// ---- Description heading --------------------------------------------------------------------

std::string FinalGlassReport::withSupplier(std::string description, const char* gap) {
    if (!data().ShowSupplier)
        return description;
    const std::string supplier = textOf(fields()["sSupplier"].value());
    if (supplier.empty())
        return description;
    return description + gap + "(" + supplier + ")";
}

void FinalGlassReport::ghOrderGroupBeforePrint() {
    engine::TextBox& heading = textBox("DescriptionSupplierField");
    const std::string shown = withSupplier(heading.text(), " ");
    if (shown != heading.text())
        heading.setText(shown);
}

void FinalGlassReport::ghOrderGroupFormat() {
    label("lDescriptionSupplier")
        .setCaption(withSupplier(textOf(fields()["sDescription"].value()), "  "));
}

// ---- Lines ----------------------------------------------------------------------------------

double FinalGlassReport::numberOf(const char* column, const Variant& value) const {
    if (value.isNull() || value.isEmpty())
        return 0.0;
    try {
        return toDouble(value);
    } catch (const Error& error) {
        throw Error(error.number(), className(),
                    className() + ": the glass row's " + column + " is not a number (\"" +
                        textOf(value) + "\").");
    }
}

FinalGlassReport::Category FinalGlassReport::categoryOf(const std::string& glassType) const {
    // Exact, letter case included, in the order the types were always tried.
    struct Known {
        std::string_view type;
        Category category;
    };
    static constexpr Known kKnown[] = {
        {"Tempered", Tempered}, {"Heat Strengthened", HeatStrengthened},
        {"Annealed", Annealed}, {"Spandrel", Spandrel},
        {"Panel", Panel},       {"Vent", Vent},
    };
    for (const Known& known : kKnown) {
        if (glassType == known.type)
            return known.category;
    }
    if (m_options.prices)
        return Misc;
    // Without prices only a type named "Miscellaneous" counts as such; other unknown types
    // count in no category (they still count in the group and grand areas).
    return glassType == "Miscellaneous" ? Misc : kCount;
}

void FinalGlassReport::addDoorLites(double quantity) {
    // The count is a 16-bit integer: a job with more door lites overflows, as it always did.
    m_doorLiteCount = toInteger(Variant(m_doorLiteCount + quantity));
}

void FinalGlassReport::detailFormat() {
    const Variant areaEach = fields()["pSqrFt"].value();
    const Variant quantity = fields()["iQuantity"].value();
    const double lineArea = numberOf("pSqrFt", areaEach) * numberOf("iQuantity", quantity);
    const double lineCost =
        m_options.prices ? numberOf("pPriceTotal", fields()["pPriceTotal"].value()) : 0.0;

    if (textOf(fields()["sCategory"].value()) != kDoorGlass) {
        const Category category = categoryOf(textOf(fields()["sGlassType"].value()));
        if (category != kCount) {
            m_area[category] += lineArea;
            m_cost[category] += lineCost;
        }
    } else {
        try {
            addDoorLites(numberOf("iQuantity", quantity));
        } catch (const Error& error) {
            throw Error(error.number(), className(), error.description());
        }
        m_doorArea += lineArea;
        m_doorCost += lineCost;
    }
    m_lineArea = lineArea;
    m_typeArea += m_lineArea;

    // Area each through the box's "##,###.00", so the workbook gets the number itself.
    textBox("Field9").setValue(areaEach.isNull() ? Variant::null()
                                                 : Variant(numberOf("pSqrFt", areaEach)));
    const bool areaKnown = !areaEach.isNull() && !quantity.isNull();
    label("lAreaSubTotal").setNumber(areaKnown ? Variant(m_lineArea) : Variant(), kAreaFormat);
    if (m_options.minimumAreaCheck)
        checkMinimumArea(areaEach);
}

void FinalGlassReport::checkMinimumArea(const Variant& areaEach) {
    // A row without either figure fails the check, as a comparison with Null does.
    const Variant minimum = fields()["pminblockarea"].value();
    const bool known =
        !areaEach.isNull() && !areaEach.isEmpty() && !minimum.isNull() && !minimum.isEmpty();
    checkBox("chkMinArea")
        .setChecked(known && numberOf("pSqrFt", areaEach) >= numberOf("pminblockarea", minimum));
}

void FinalGlassReport::groupFooter1Format() {
    m_grandArea += m_typeArea;
    label("lTypeAreaTotal").setNumber(m_typeArea, kAreaFormat);
    m_typeArea = 0;
}

void FinalGlassReport::pageFooterFormat() {
    formatPageNumberFooter(*this);
}

// ---- Job totals -----------------------------------------------------------------------------

void FinalGlassReport::showPerimeter() {
    const host::FinalGlassReportData& report = data();
    if (!report.Connection)
        throw Error::objectNotSet(className());
    auto perimeter = report.Connection->openRecordset(data::sql::glassPerimeter(report.Job.JobID),
                                                      CursorType::Static, LockType::Unspecified);
    if (!perimeter->eof()) {
        // A job without elevations (or without perimeters) sums to Null: no perimeter, 0.
        const Variant sum = perimeter->value("GlassSum");
        label("lTotalPerimeter").setNumber(numberOf("GlassSum", sum), kAreaFormat);
    }
    perimeter->close();
}

void FinalGlassReport::reportFooterBeforePrint() {
    showPerimeter();
    label("lGrandAreaTotal").setNumber(m_grandArea, kAreaFormat);

    // All lites as the footer printed them, less the door lites.
    const double allLites = numberFromText(textBox("Field15").text()).value_or(0.0);
    label("lOtherLites").setNumber(allLites - m_doorLiteCount, "");

    struct Row {
        const char* area;
        const char* cost;
        double areaValue;
        double costValue;
    };
    const Row rows[] = {
        {"lSqrAnneal", "lAnnDlr", m_area[Annealed], m_cost[Annealed]},
        {"lSqrTempered", "lTempDlr", m_area[Tempered], m_cost[Tempered]},
        {"lSqrHeatStrengthened", "lHeatStrengthenedCost", m_area[HeatStrengthened],
         m_cost[HeatStrengthened]},
        {"lSqrSpecial", "lSpecDlr", m_area[Spandrel], m_cost[Spandrel]},
        {"lSqrPanels", "lPanelDlr", m_area[Panel], m_cost[Panel]},
        {"lSqrVent", "lVentDlr", m_area[Vent], m_cost[Vent]},
        {"lSqrMisc", "lMiscDlr", m_area[Misc], m_cost[Misc]},
        {"lDoorLites", "lDoorDlr", m_doorArea, m_doorCost},
    };
    for (const Row& row : rows) {
        label(row.area).setNumber(row.areaValue, kAreaFormat);
        if (m_options.prices)
            label(row.cost).setNumber(row.costValue, kCostFormat);
    }
}

// ---- Report end -----------------------------------------------------------------------------

void FinalGlassReport::reportEnd() {
    // The glass rows are done with once the pages are: let them go before the exports, which
    // see only the pages and need memory of their own for a long job.
    dataControl().close();
    exportAtReportEnd(pages(), data().Job.JobName, ShouldExportToExcel, ShouldExportToPdf,
                      m_options.suffixes);
}

} // namespace qr::reports
