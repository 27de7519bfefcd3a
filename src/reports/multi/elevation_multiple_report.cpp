#include "reports/multi/elevation_multiple_report.hpp"

#include "platform/core/date.hpp"
#include "platform/core/error.hpp"
#include "platform/core/system_formats.hpp"
#include "reports/common/page_footer.hpp"
#include "reports/glass/elev_glass_report.hpp"
#include "reports/parts/elev_parts_report.hpp"

namespace qr::reports {

namespace {

// ---- Designs --------------------------------------------------------------------------------

using engine::ControlDesign;
using page::Align;

constexpr double kFooterTextSize = 8;

ControlDesign footerText(ControlDesign control, Align align) {
    control.size(kFooterTextSize);
    control.align = align;
    return control;
}

/// The date text box showing `designText` until the start handler fills it.
ControlDesign dateBox(page::Rect rect, const char* designText) {
    ControlDesign box = engine::textBox("lReportDate", rect);
    box.caption = designText;
    return footerText(std::move(box), Align::Left);
}

engine::ReportDesign partsDesign() {
    constexpr int kWidth = 10800;
    engine::ReportDesign d{"ElevPartsMultipleReport",
                           "Elevation Parts Reports",
                           {.marginLeft = 720,
                            .marginTop = 720,
                            .marginRight = 720,
                            .marginBottom = 720,
                            .printWidth = kWidth},
                           {}};
    d.sections = {
        engine::reportHeader("ReportHeader", 0, {}),
        engine::pageHeader("PageHeader", 0, {}),
        // The sub-report's lines grow the detail; what the box leaves below is the space
        // between two elevations.
        engine::detail("Detail", 400,
                       {engine::subReport("ElevationPartsReport", {0, 0, kWidth, 240})}),
        engine::pageFooter(
            "PageFooter", 520,
            {engine::line("Line1", 0, 60, kWidth, 60).weight(10),
             footerText(engine::textBox("Field1", {kWidth - 3000, 100, 3000, 220}).pageCount(),
                        Align::Right),
             dateBox({0, 100, 2400, 200}, "Date"),
             footerText(engine::label("lReportTime", {0, 300, 2400, 200}, ""), Align::Left),
             footerText(engine::label("Label1", {3000, 100, 4800, 220}, "Elevation Parts Report"),
                        Align::Center)}),
        engine::reportFooter("ReportFooter", 0, {}),
    };
    return d;
}

engine::ReportDesign glassDesign() {
    constexpr int kWidth = 10800;
    engine::ReportDesign d{"ElevGlassMultipleReport",
                           "Glass by Elevation Report",
                           {.marginLeft = 700,
                            .marginTop = 720,
                            .marginRight = 700,
                            .marginBottom = 720,
                            .printWidth = kWidth},
                           {}};
    // The page number box and the sub-report span the print width, so that the landscape
    // form widens them with it.
    d.sections = {
        engine::pageHeader("PageHeader", 0, {}),
        engine::detail("Detail", 400,
                       {engine::subReport("ElevationGlassReport", {0, 0, kWidth, 240})}),
        engine::pageFooter(
            "PageFooter", 460,
            {dateBox({0, 60, 2400, 200}, "<Date>"),
             footerText(engine::label("lReportTime", {0, 260, 2400, 200}, "<Time>"), Align::Left),
             footerText(engine::textBox("PageNumberField", {0, 60, kWidth, 220}).pageCount(),
                        Align::Right)}),
    };
    return d;
}

} // namespace

// ---- Shared handlers, in the order the engine raises them -----------------------------------

ElevationMultipleReport::ElevationMultipleReport(engine::ReportDesign design, Controls controls)
    : Report(std::move(design)), m_controls(controls) {
    onFormat("Detail", &ElevationMultipleReport::detailFormat);
    onFormat("PageFooter", &ElevationMultipleReport::pageFooterFormat);
}

void ElevationMultipleReport::initialize() {
    m_rowIndex = -1;
}

void ElevationMultipleReport::reportStart() {
    subReport(m_controls.subReport).setReport(makeElevationReport());
    const Date now = Clock::now();
    textBox("lReportDate").setText(systemFormats().shortDate(now));
    label("lReportTime").setCaption(systemFormats().shortTime(now));
}

void ElevationMultipleReport::fetchData(bool& eof) {
    ++m_rowIndex;
    eof = m_rowIndex >= elevationCount();
}

void ElevationMultipleReport::detailFormat() {
    setElevation(*subReport(m_controls.subReport).report(), m_rowIndex);
}

void ElevationMultipleReport::pageFooterFormat() {
    showPageOfPages(textBox(m_controls.pageNumber), pageNumber());
}

void ElevationMultipleReport::reportEnd() {
    subReport(m_controls.subReport).setReport(nullptr);
}

// ---- ElevPartsMultipleReport ----------------------------------------------------------------

ElevPartsMultipleReport::ElevPartsMultipleReport()
    : ElevationMultipleReport(partsDesign(), {"ElevationPartsReport", "Field1"}) {}

std::int32_t ElevPartsMultipleReport::elevationCount() const {
    if (ElevationPartsReportDataList == nullptr)
        throw Error::objectNotSet(className());
    return static_cast<std::int32_t>(ElevationPartsReportDataList->size());
}

std::unique_ptr<engine::Report> ElevPartsMultipleReport::makeElevationReport() {
    return std::make_unique<ElevPartsAR>();
}

void ElevPartsMultipleReport::setElevation(engine::Report& elevationReport, std::int32_t index) {
    static_cast<ElevPartsAR&>(elevationReport).ReportData =
        &ElevationPartsReportDataList->at(static_cast<std::size_t>(index));
}

// ---- ElevGlassMultipleReport ----------------------------------------------------------------

ElevGlassMultipleReport::ElevGlassMultipleReport()
    : ElevationMultipleReport(glassDesign(), {"ElevationGlassReport", "PageNumberField"}) {}

std::int32_t ElevGlassMultipleReport::elevationCount() const {
    if (ElevationGlassReportDataList == nullptr)
        throw Error::objectNotSet(className());
    return static_cast<std::int32_t>(ElevationGlassReportDataList->size());
}

std::unique_ptr<engine::Report> ElevGlassMultipleReport::makeElevationReport() {
    if (ReportFormat == kBasicFormat)
        return std::make_unique<ElevGlassAR>();
    setOrientation(page::Orientation::Landscape);
    setPrintWidth(kLandscapeWidth);
    control(controls().pageNumber).setWidth(kLandscapeWidth);
    control(controls().subReport).setWidth(kLandscapeWidth);
    return std::make_unique<ElevGlassAR2>();
}

void ElevGlassMultipleReport::setElevation(engine::Report& elevationReport, std::int32_t index) {
    static_cast<ElevGlassReport&>(elevationReport).ReportData =
        &ElevationGlassReportDataList->at(static_cast<std::size_t>(index));
}

} // namespace qr::reports
