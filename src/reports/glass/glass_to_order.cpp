#include "reports/glass/glass_to_order.hpp"

#include "data/statements.hpp"
#include "platform/core/number_format.hpp"
#include "platform/host/module_state.hpp"
#include "reports/common/design_helpers.hpp"
#include "reports/common/heading.hpp"
#include "reports/common/page_footer.hpp"

#include <vector>

namespace qr::reports {

namespace {

using engine::ControlDesign;
using page::Align;

// ---- Design ---------------------------------------------------------------------------------

constexpr int kWidth = 10800; // 7.5 inches between half-inch margins
constexpr double kSize = 9;
constexpr int kLine = 230;
constexpr std::string_view kAreaFormat = "###,###.00";

/// One column of the order line, with the two heading rows over it (an empty top row for a
/// one-word heading).
struct Column {
    const char* control;
    const char* field; ///< bound column; nullptr for a label the detail handler fills
    const char* format;
    int x, width;
    Align align;
    const char* headingTop;
    const char* heading;
};

constexpr Column kUnits{"fUnits", "iElevQty", "", 0, 600, Align::Right, "", "Units"};
constexpr Column kRightHeight{"lRHeight", nullptr, "", 3150, 1100, Align::Right, "", "R-Height"};
constexpr Column kAreaEach{"Field20", "psqrft",     "#,##0.00", 4400,
                           1100,      Align::Right, "Area",     "Each"};
constexpr Column kBlockEach{"Field21", "pBlockSize", "#,##0.00",   5650,
                            1200,      Align::Right, "Block Area", "Each"};

/// The columns left to right; the right height only where the design has it.
std::vector<Column> columns(bool rightHeight) {
    std::vector<Column> list{
        kUnits,
        {"lWidth", nullptr, "", 750, 1100, Align::Right, "", "Width"},
        {"lLHeight", nullptr, "", 1950, 1100, Align::Right, "", "L-Height"},
    };
    if (rightHeight)
        list.push_back(kRightHeight);
    list.push_back(kAreaEach);
    list.push_back(kBlockEach);
    list.push_back({"lPosition", nullptr, "", 7100, kWidth - 7100, Align::Left, "Location Code",
                    "(Elev Code - Glass Position)"});
    return list;
}

engine::SectionDesign reportHeader() {
    std::vector<ControlDesign> controls{
        engine::label("Label1", {0, 0, 3700, 360}, "Glass to Order for Job:").size(14).bold(),
        textLabel("lJobName", {3750, 0, 4500, 360}, 14).bold(),
        textLabel("lGlassfirm", {0, 480, 6000, 280}, 11).bold(),
        textLabel("lUserName", {0, 760, 6000, 240}, kSize),
        engine::label("Label6", {0, 1000, 700, 240}, "Phone:").size(kSize),
        textLabel("lPhone", {720, 1000, 5000, 240}, kSize),
        engine::label("Label7", {0, 1240, 700, 240}, "Email:").size(kSize),
        textLabel("lEmail", {720, 1240, 5000, 240}, kSize),
        engine::label("Label8", {6000, 1240, kWidth - 6000, 240},
                      "Sorted by:  Description, Glass Type, SqFt")
            .size(kSize)
            .alignRight(),
        // Left over in the design from an earlier layout; it never prints.
        engine::label("lRepeated", {6000, 1000, 600, 240}, "xx").size(kSize).hidden(),
    };
    for (auto& c : dateTimeLabels({kWidth - 2400, 0, 2400, 240}, kSize))
        controls.push_back(std::move(c));
    return engine::reportHeader("ReportHeader", 1560, std::move(controls));
}

engine::SectionDesign pageHeader(const std::vector<Column>& line) {
    std::vector<ControlDesign> controls;
    int number = 20;
    for (const Column& column : line) {
        for (const auto& [text, y] : {std::pair{column.headingTop, 0}, {column.heading, 220}}) {
            if (*text == '\0')
                continue;
            auto heading = engine::label("Label" + std::to_string(number++),
                                         {column.x, y, column.width, 220}, text)
                               .size(8)
                               .bold();
            heading.align = column.align;
            controls.push_back(std::move(heading));
        }
    }
    controls.push_back(engine::line("Line3", 0, 480, kWidth, 480).weight(20));
    return engine::pageHeader("PageHeader", 540, std::move(controls));
}

engine::SectionDesign detail(const std::vector<Column>& line) {
    std::vector<ControlDesign> controls;
    for (const Column& column : line) {
        const page::Rect box{column.x, 0, column.width, kLine};
        ControlDesign control =
            column.field ? boundFigure(column.control, box, kSize, column.field, column.format)
                         : figureLabel(column.control, box, kSize, "");
        control.align = column.align;
        controls.push_back(std::move(control));
    }
    return engine::detail("Detail", kLine, std::move(controls));
}

/// A caption right-aligned against the figure that follows it at `figureX`.
ControlDesign captionBefore(const char* name, int figureX, int y, const char* text) {
    return engine::label(name, {figureX - 2700, y, 2650, 220}, text)
        .size(kSize)
        .bold()
        .alignRight();
}

engine::SectionDesign typeFooter() {
    const int qtyX = 500;
    return engine::groupFooter(
               "ghTypeFooter", "ghTypeHeader", 560,
               {engine::label("Label61", {0, 40, qtyX - 50, 220}, "Qty:").size(kSize).bold(),
                boundFigure("Field11", {qtyX, 40, 700, 220}, kSize, "iElevQty", "")
                    .sum("ghTypeHeader")
                    .bold(),
                captionBefore("Label62", kAreaEach.x, 40, "Actual SqrFt x Qty:"),
                figureLabel("lSqrFtSubTot", {kAreaEach.x, 40, kAreaEach.width, 220}, kSize, "")
                    .bold(),
                captionBefore("Label84", kBlockEach.x, 280, "Block x Qty:"),
                figureLabel("lBlockSubTot", {kBlockEach.x, 280, kBlockEach.width, 220}, kSize, "")
                    .bold()})
        .keepTogetherOnPage();
}

engine::SectionDesign reportFooter() {
    const int qtyX = 1400;
    return engine::reportFooter(
               "ReportFooter", 900,
               {engine::line("Line2", 0, 40, kWidth, 40).weight(20),
                engine::label("Label78", {0, 120, qtyX - 50, 240}, "Total Quantity")
                    .size(10)
                    .bold(),
                boundFigure("fTotalPieces", {qtyX, 120, 800, 240}, 10, "iElevQty", "").sum().bold(),
                engine::label("Label66", {kAreaEach.x - 2700, 120, 2650, 240}, "Total Actual")
                    .size(10)
                    .bold()
                    .alignRight(),
                figureLabel("lAreaGrandTotal", {kAreaEach.x, 120, kAreaEach.width, 240}, 10, "")
                    .bold(),
                engine::label("Label85", {kBlockEach.x - 2700, 400, 2650, 240}, "Total Block")
                    .size(10)
                    .bold()
                    .alignRight(),
                figureLabel("lBlockGrandTotal", {kBlockEach.x, 400, kBlockEach.width, 240}, 10, "")
                    .bold()})
        .keepTogetherOnPage();
}

engine::ReportDesign design(const char* name, bool rightHeight) {
    const std::vector<Column> line = columns(rightHeight);
    engine::ReportDesign d;
    d.name = name;
    d.title = "Job Glass Report";
    d.page.marginLeft = d.page.marginRight = d.page.marginTop = 720;
    d.page.marginBottom = 1080;
    d.page.printWidth = kWidth;
    d.sections = {
        reportHeader(),
        pageHeader(line),
        engine::groupHeader(
            "ghOrderHeader", "sDescription", 340,
            {engine::textBox("Field13", {0, 80, 6000, 260}, "sDescription").size(10).bold(),
             engine::textBox("Field19", {6100, 80, 2500, 260}, "sTypeLabel").size(10).bold()}),
        engine::groupHeader(
            "ghTypeHeader", "sGlassType", 250,
            {engine::textBox("Field18", {240, 0, 6000, 240}, "sGlassType").size(kSize).bold()}),
        detail(line),
        typeFooter(),
        engine::groupFooter("ghOrderFooter", "ghOrderHeader", 80,
                            {engine::line("Line5", 0, 40, kWidth, 40)}),
        pageNumberFooter({kWidth - 3000, 60, 3000, 240}, kSize),
        reportFooter(),
    };
    return d;
}

} // namespace

// ---- Handlers, in the order the engine raises them ------------------------------------------

GlassToOrderReport::GlassToOrderReport(engine::ReportDesign design, bool rightHeight)
    : RequestReport(std::move(design), JobGlassToOrder::kExportSuffixes),
      m_rightHeight(rightHeight) {
    onFormat("Detail", &GlassToOrderReport::detailFormat);
    onFormat("ghTypeFooter", &GlassToOrderReport::ghTypeFooterFormat);
    onFormat("PageFooter", [this] { pageFooterFormat(); });
    onFormat("ReportFooter", &GlassToOrderReport::reportFooterFormat);
}

JobGlassToOrder::JobGlassToOrder() : GlassToOrderReport(design("JobGlassToOrder", true), true) {}

JobGlassToOrder2::JobGlassToOrder2()
    : GlassToOrderReport(design("JobGlassToOrder2", false), false) {}

void GlassToOrderReport::reportStart() {
    restoreDesignCaptions();
    db::Connection& vendor = vendorConnection();
    openDataSource(data::sql::glassToOrder(host::moduleState().requestTable, vendor.dialect()));
    showHeading(*this, requestHeading(), HeadingControls{});
    showReportDateTime(*this);
    m_actualArea = 0;
    m_blockArea = 0;
    m_totalActualArea = 0;
    m_totalBlockArea = 0;
}

void GlassToOrderReport::detailFormat() {
    label("lWidth").setCaption(rowText("sWidth"));
    label("lLHeight").setCaption(rowText("sLeftHeight"));
    if (m_rightHeight)
        label("lRHeight").setCaption(rowText("sRightHeight"));
    label("lPosition").setCaption(rowText("Code") + "-" + rowText("sLabel"));
    const double units = rowNumber("iElevQty");
    m_actualArea += units * rowNumber("pSqrFt");
    m_blockArea += units * rowNumber("pBlockSize");
}

void GlassToOrderReport::ghTypeFooterFormat() {
    m_totalActualArea += m_actualArea;
    m_totalBlockArea += m_blockArea;
    label("lSqrFtSubTot").setNumber(m_actualArea, kAreaFormat);
    label("lBlockSubTot").setNumber(m_blockArea, kAreaFormat);
    m_actualArea = 0;
    m_blockArea = 0;
}

void GlassToOrderReport::reportFooterFormat() {
    label("lAreaGrandTotal").setNumber(m_totalActualArea, kAreaFormat);
    label("lBlockGrandTotal").setNumber(m_totalBlockArea, kAreaFormat);
}

void GlassToOrderReport::reportEnd() {
    // The rows are done with once the pages are, whatever the exports do.
    try {
        exportRequestedFiles();
    } catch (...) {
        dataControl().close();
        throw;
    }
    dataControl().close();
}

} // namespace qr::reports
