#include "reports/glass/elev_glass_report.hpp"

#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/host/error_log.hpp"
#include "reports/common/design_helpers.hpp"
#include "reports/common/heading.hpp"
#include "reports/common/page_footer.hpp"

#include <string_view>
#include <vector>

namespace qr::reports {

namespace {

using engine::ControlDesign;
using engine::SectionDesign;
using page::Align;

// ---- Designs --------------------------------------------------------------------------------

constexpr double kSize = 8;
constexpr int kLine = 230;
constexpr int kPortraitWidth = 10785;
constexpr int kWideWidth = 14415;

/// One column of the glass line: the detail box and the one or two heading rows over it.
struct Column {
    const char* control;
    const char* field; ///< bound report field; nullptr for a label the detail handler fills
    const char* format;
    int x, width;
    Align align;
    const char* headingTop; ///< "" for a one-row heading
    const char* heading;
    bool grows = false; ///< long texts wrap onto more lines
};

const std::vector<Column> kPortraitColumns{
    {"QuantityField", "Quantity", "", 0, 550, Align::Right, "", "Units"},
    {"DescriptionField", "Description", "", 650, 2700, Align::Left, "", "Description", true},
    {"ThicknessField", "Thickness", "", 3400, 550, Align::Right, "", "Thick."},
    {"GlassTypeField", "GlassType", "", 4050, 1350, Align::Left, "", "Type", true},
    {"WidthField", "Width", "", 5450, 800, Align::Right, "", "Width"},
    {"LeftHeightField", "LeftHeight", "", 6300, 800, Align::Right, "", "L-Height"},
    {"RightHeightField", "RightHeight", "", 7150, 800, Align::Right, "", "R-Height"},
    {"PricePerSqFtField", "PricePerSqFt", "$#,##0.00", 8000, 800, Align::Right, "Area", "Price"},
    {"lSquareFt", nullptr, "", 8850, 800, Align::Right, "Area", "Each"},
    {"lTotal", nullptr, "", 9700, 1085, Align::Right, "", "Totals"},
};

const std::vector<Column> kWideColumns{
    {"QuantityField", "Quantity", "", 0, 600, Align::Right, "", "Units"},
    {"DescriptionField2", "Description", "", 700, 2800, Align::Left, "", "Description", true},
    {"GlassTypeField2", "GlassType", "", 3600, 1500, Align::Left, "", "Type", true},
    {"WidthField", "Width", "", 5200, 850, Align::Right, "", "Width"},
    {"LeftHeightField", "LeftHeight", "", 6100, 850, Align::Right, "", "L-Height"},
    {"RightHeightField", "RightHeight", "", 7000, 850, Align::Right, "", "R-Height"},
    {"PricePerSqFtField", "PricePerSqFt", "$#,##0.00", 7900, 850, Align::Right, "Area", "Price"},
    {"AreaField", "Area", "#,##0.00", 8800, 900, Align::Right, "Actual", "SqFt"},
    {"AreaTotalPriceField", "AreaTotalPrice", "$#,##0.00", 9750, 1300, Align::Right, "Actual Size",
     "Totals"},
    {"BlockSizeField", "BlockSize", "", 11150, 900, Align::Right, "Block", "Size"},
    {"BlockAreaField", "BlockArea", "#,##0.00", 12100, 900, Align::Right, "Block", "SqFt"},
    {"BlockTotalPriceField", "BlockTotalPrice", "$###,##0.00", 13050, 1365, Align::Right, "Total",
     "Block Price"},
};

const Column& columnOf(const std::vector<Column>& columns, std::string_view control) {
    for (const Column& column : columns) {
        if (control == column.control)
            return column;
    }
    throw Error::component("ElevGlassReport",
                           "The glass line has no column " + std::string(control) + ".");
}

/// Firm, phone, fax and job under the report's title; RptDate and RptTime go in the page
/// footer of these reports.
SectionDesign reportHeader(const char* titleName, const char* title, int width) {
    return engine::reportHeader(
        "ReportHeader", 1300,
        {engine::label(titleName, {0, 0, width, 380}, title).size(14).bold(),
         textLabel("lGlassfirm", {0, 440, 6000, 280}, 11).bold(),
         engine::label("Label6", {0, 740, 700, 240}, "Phone:").size(9),
         textLabel("lPhone", {720, 740, 3500, 240}, 9),
         engine::label("Label7", {0, 980, 700, 240}, "Fax:").size(9),
         textLabel("lFax", {720, 980, 3500, 240}, 9),
         engine::label("Label8", {width - 5200, 980, 1100, 240}, "Job  Name:").size(9).bold(),
         textLabel("lJobName", {width - 4050, 980, 4050, 240}, 9).bold()});
}

/// The elevation heading, the repetition line and the column headings (Label10 on) of the one
/// group over the whole report.
SectionDesign elevationHeader(const std::vector<Column>& columns) {
    std::vector<ControlDesign> controls{
        textLabel("ElevationNameLabel", {0, 60, 9000, 300}, 12).bold(),
        textLabel("lRepeated", {0, 380, 9000, 240}, 9),
    };
    int number = 10;
    for (const Column& column : columns) {
        for (const auto& [text, y] : {std::pair{column.headingTop, 680}, {column.heading, 880}}) {
            if (*text == '\0')
                continue;
            auto heading = engine::label("Label" + std::to_string(number++),
                                         {column.x, y, column.width, 200}, text)
                               .size(kSize)
                               .bold();
            heading.align = column.align;
            controls.push_back(std::move(heading));
        }
    }
    return engine::groupHeader("GroupHeader1", "", 1120, std::move(controls));
}

SectionDesign glassLine(const std::vector<Column>& columns) {
    std::vector<ControlDesign> controls;
    for (const Column& column : columns) {
        const page::Rect box{column.x, 0, column.width, kLine};
        ControlDesign control =
            column.field == nullptr
                ? figureLabel(column.control, box, kSize, "")
                : boundFigure(column.control, box, kSize, column.field, column.format);
        control.align = column.align;
        if (column.grows)
            control.grow();
        controls.push_back(std::move(control));
    }
    return engine::detail("Detail", kLine + 20, std::move(controls));
}

engine::ReportDesign portraitDesign() {
    const int width = kPortraitWidth;
    SectionDesign pageFooter =
        pageNumberFooter({width - 3000, 60, 3000, 240}, kSize, Align::Right, 540);
    for (auto& control : dateTimeLabels({0, 60, 2000, 220}, kSize, Align::Left))
        pageFooter.controls.push_back(std::move(control));

    const Column& total = columnOf(kPortraitColumns, "lTotal");
    engine::ReportDesign d{"ElevGlassAR",
                           "Glass Report By Elevation",
                           engine::PageSettings{.marginLeft = 720,
                                                .marginTop = 720,
                                                .marginRight = 720,
                                                .marginBottom = 1080,
                                                .printWidth = width},
                           {}};
    d.sections = {
        reportHeader("Label1", "Glass Report By Elevation", width),
        engine::pageHeader("PageHeader", 60,
                           {engine::line("HeadingLine", 0, 30, width, 30).weight(20)}),
        elevationHeader(kPortraitColumns),
        glassLine(kPortraitColumns),
        engine::groupFooter("GroupFooter1", "GroupHeader1", 0, {}),
        std::move(pageFooter),
        engine::reportFooter(
            "ReportFooter", 1500,
            {engine::line("Line2", 0, 40, width, 40),
             engine::label("Label51", {total.x - 3300, 100, 3200, 260}, "Total for Elevation -")
                 .size(10)
                 .bold()
                 .alignRight(),
             figureLabel("lGrandTotal", {total.x - 300, 100, total.width + 300, 260}, 10, "")
                 .bold(),
             engine::label("Label52", {0, 480, 800, 220}, "NOTE:").size(kSize).bold(),
             engine::label("Label53", {850, 480, 6000, 220},
                           "The pricing on this report is based on actual size.")
                 .size(kSize),
             engine::label("Label54", {850, 700, 6000, 220},
                           "The Final Glass Report calculates pricing from block sizes.")
                 .size(kSize),
             engine::label("lWarning", {850, 1000, 7000, 260},
                           "Warning: There were some items on this report with no price!")
                 .size(10)
                 .bold()}),
    };
    return d;
}

/// One figure of the totals bands: a sum of `field` (over `group`, or the whole report when
/// empty) in the box `figure`, with its caption over it when it has one. The box stands under
/// the glass line from the column `from` to the right edge of the column `to`, so it lines up
/// with the figures it adds and has room for its caption.
struct Total {
    const char* caption; ///< nullptr: none
    const char* captionText;
    const char* figure;
    const char* field;
    const char* format;
    const char* from;
    const char* to;
};

void addTotals(std::vector<ControlDesign>& controls, const std::vector<Total>& totals,
               const char* group) {
    for (const Total& total : totals) {
        const Column& from = columnOf(kWideColumns, total.from);
        const Column& to = columnOf(kWideColumns, total.to);
        const int width = to.x + to.width - from.x;
        if (total.caption != nullptr)
            controls.push_back(
                engine::label(total.caption, {from.x, 30, width, 200}, total.captionText)
                    .size(kSize)
                    .alignRight());
        auto figure =
            boundFigure(total.figure, {from.x, 240, width, kLine}, kSize, total.field, total.format)
                .bold();
        figure.sum(group);
        controls.push_back(std::move(figure));
    }
}

SectionDesign typeTotals() {
    constexpr const char* kGroup = "GlassTypeGroupHeader";
    std::vector<ControlDesign> controls{
        engine::label("Label59", {1200, 30, 2400, kLine}, "- Type Totals -").size(kSize).bold(),
    };
    addTotals(controls,
              {{"Label61", "Qty:", "GlassTypeQuantitySumField", "Quantity", "", "QuantityField",
                "QuantityField"},
               {"Label62", "Actual x Qty:", "TotalAreaSumField", "TotalArea", "#,##0.00",
                "PricePerSqFtField", "AreaField"},
               {"Label65", "Actual Price:", "Field1", "AreaTotalPrice", "$#,##0.00",
                "AreaTotalPriceField", "AreaTotalPriceField"},
               {"Label63", "Block x Qty:", "BlockAreaSubTotalField", "TotalBlockArea", "#,##0.00",
                "BlockSizeField", "BlockAreaField"},
               {"Label64", "Block Price:", "BlockTotalPriceSumField", "BlockTotalPrice",
                "$#,##0.00", "BlockTotalPriceField", "BlockTotalPriceField"}},
              kGroup);
    controls.push_back(engine::line("Line5", 0, 540, kWideWidth, 540));
    return engine::groupFooter("GlassTypeGroupFooter", kGroup, 600, std::move(controls));
}

SectionDesign elevationTotals() {
    std::vector<ControlDesign> controls{
        engine::line("Line2", 0, 20, kWideWidth, 20).weight(20),
        engine::label("Label60", {1200, 30, 3400, kLine}, "- Totals for this Elevation -")
            .size(kSize)
            .bold(),
    };
    addTotals(
        controls,
        {{nullptr, "", "TotalLitesSumField", "Quantity", "", "QuantityField", "QuantityField"},
         {nullptr, "", "AreaGrandTotalField", "TotalArea", "#,##0.00", "PricePerSqFtField",
          "AreaField"},
         {nullptr, "", "Field2", "AreaTotalPrice", "$#,##0.00", "AreaTotalPriceField",
          "AreaTotalPriceField"},
         {nullptr, "", "BlockAreaGrandTotalField", "TotalBlockArea", "#,##0.00", "BlockSizeField",
          "BlockAreaField"},
         {nullptr, "", "Field3", "BlockTotalPrice", "$#,##0.00", "BlockTotalPriceField",
          "BlockTotalPriceField"}},
        "");
    return engine::reportFooter("ReportFooter", 560, std::move(controls));
}

engine::ReportDesign wideDesign() {
    const int width = kWideWidth;
    SectionDesign pageFooter = engine::pageFooter(
        "PageFooter", 560,
        {engine::shape("Shape1", {0, 40, width, 480}),
         engine::label("Label50", {width - 1600, 160, 600, 220}, "Page").size(kSize).alignRight(),
         engine::textBox("txtPageNumber", {width - 950, 160, 850, 220}).pageNumber().size(kSize)});
    for (auto& control : dateTimeLabels({120, 70, 2000, 210}, kSize, Align::Left))
        pageFooter.controls.push_back(std::move(control));

    engine::ReportDesign d{"ElevGlassAR2",
                           "Glass Report for Elevation",
                           engine::PageSettings{.orientation = page::Orientation::Landscape,
                                                .marginLeft = 600,
                                                .marginTop = 720,
                                                .marginRight = 600,
                                                .marginBottom = 720,
                                                .printWidth = width},
                           {}};
    d.sections = {
        reportHeader("TitleLabel", "Glass Report for Elevation", width),
        engine::pageHeader("PageHeader", 60, {engine::line("Line1", 0, 30, width, 30).weight(20)}),
        elevationHeader(kWideColumns),
        engine::groupHeader("DescriptionGroupHeader", "Description", 300,
                            {engine::textBox("DescriptionField", {0, 50, 9000, 250}, "Description")
                                 .size(10)
                                 .bold()}),
        engine::groupHeader(
            "GlassTypeGroupHeader", "GlassType", 250,
            {engine::textBox("GlassTypeField", {360, 10, 5000, 230}, "GlassType").size(9).bold()}),
        engine::groupHeader(
            "GlassLabelGroupHeader", "Label", 250,
            {engine::textBox("Type", {360, 10, 3000, 230}, "Label").size(9).bold()}),
        engine::groupHeader(
            "ThicknessGroupHeader", "Thickness", 250,
            {engine::label("ThicknessGroupLabel", {360, 10, 1000, 230}, "Thickness:").size(kSize),
             engine::textBox("ThicknessField", {1400, 10, 1500, 230}, "Thickness").size(kSize)}),
        glassLine(kWideColumns),
        engine::groupFooter("ThicknessGroupFooter", "ThicknessGroupHeader", 0, {}),
        engine::groupFooter("GlassLabelGroupFooter", "GlassLabelGroupHeader", 0, {}),
        typeTotals(),
        engine::groupFooter("DescriptionGroupFooter", "DescriptionGroupHeader", 0, {}),
        engine::groupFooter("GroupFooter1", "GroupHeader1", 0, {}),
        std::move(pageFooter),
        elevationTotals(),
    };
    return d;
}

// ---- Figures --------------------------------------------------------------------------------

constexpr std::string_view kAreaEachFormat = "##,##0.00";
constexpr std::string_view kMoneyFormat = "$###,##0.00";
/// Areas of the landscape totals, square feet written after the figure.
constexpr std::string_view kSquareFeetFormat = "#,##0.00\" ft\xC2\xB2\"";

/// Price of one line at actual size: price per square foot x area of one lite x lites.
double lineTotal(const host::ElevationGlassItem& item) {
    return item.PricePerSqFt.toDouble() * item.Area * item.Quantity;
}

/// A lite's block price times the lites, in currency arithmetic (exact, Overflow past its
/// range).
Currency blockTotal(const host::ElevationGlassItem& item) {
    std::int64_t ticks = 0;
    if (__builtin_mul_overflow(item.BlockPrice.ticks(), static_cast<std::int64_t>(item.Quantity),
                               &ticks))
        throw Error::overflow();
    return Currency::fromTicks(ticks);
}

/// The type label, or the glass type's first character when the label is empty.
std::string typeLabelOf(const host::ElevationGlassItem& item) {
    if (!item.TypeLabel.empty() || item.GlassType.empty())
        return item.TypeLabel;
    // One character, not one byte: a UTF-8 lead byte and its continuation bytes.
    std::size_t length = 1;
    while (length < item.GlassType.size() &&
           (static_cast<unsigned char>(item.GlassType[length]) & 0xC0) == 0x80)
        ++length;
    return item.GlassType.substr(0, length);
}

} // namespace

// ---- Handlers, in the order the engine raises them ------------------------------------------

ElevGlassReport::ElevGlassReport(engine::ReportDesign design, bool blockFigures)
    : Report(std::move(design)), m_blockFigures(blockFigures) {
    onFormat("Detail", &ElevGlassReport::detailFormat);
    onBeforePrint("Detail", &ElevGlassReport::detailBeforePrint);
    if (m_blockFigures) {
        onBeforePrint("ThicknessGroupHeader", &ElevGlassReport::thicknessGroupHeaderBeforePrint);
        onBeforePrint("GlassTypeGroupFooter", &ElevGlassReport::glassTypeGroupFooterBeforePrint);
        onBeforePrint("ReportFooter", &ElevGlassReport::reportFooterBeforePrint);
    } else {
        onFormat("PageFooter", [this] { formatPageNumberFooter(*this); });
        onFormat("ReportFooter", &ElevGlassReport::reportFooterFormat);
    }
}

ElevGlassAR::ElevGlassAR() : ElevGlassReport(portraitDesign(), false) {}

ElevGlassAR2::ElevGlassAR2() : ElevGlassReport(wideDesign(), true) {}

const host::ElevationGlassReportData& ElevGlassReport::data() const {
    if (ReportData == nullptr)
        throw Error::objectNotSet(className());
    return *ReportData;
}

void ElevGlassReport::initialize() {
    if (!m_fractions)
        m_fractions.emplace();
    const std::vector<const char*> names =
        m_blockFigures
            ? std::vector<const char*>{"Quantity",       "Description",       "Thickness",
                                       "Label",          "GlassType",         "Width",
                                       "LeftHeight",     "RightHeight",       "PricePerSqFt",
                                       "Area",           "TotalArea",         "TotalCost",
                                       "AreaTotalPrice", "GlassTypeQuantity", "BlockSize",
                                       "BlockArea",      "TotalBlockArea",    "BlockTotalPrice"}
            : std::vector<const char*>{"Quantity", "Description", "Thickness",   "GlassType",
                                       "Width",    "LeftHeight",  "RightHeight", "PricePerSqFt",
                                       "Area",     "TotalCost"};
    for (const char* name : names)
        fields().add(name);
}

void ElevGlassReport::reportStart() {
    // The figures restart before anything can fail, so a run never carries the last one's.
    m_rowIndex = 0;
    m_totalCost = 0;
    m_unpricedItems = false;
    host::runTrapped(className(), "ActiveReport_ReportStart", [this] { showElevationHeading(); });
}

void ElevGlassReport::showElevationHeading() {
    const host::ElevationGlassReportData& d = data();
    const host::GlassElevation& elevation = d.Elevation;
    label("ElevationNameLabel")
        .setCaption(elevation.Title != elevation.Name ? elevation.Name + " - " + elevation.Title
                                                      : elevation.Name);
    engine::Label& repeated = label("lRepeated");
    repeated.setVisible(elevation.Repetitions >= 2);
    if (elevation.Repetitions >= 2)
        repeated.setCaption("Elevation was repeated " + std::to_string(elevation.Repetitions) +
                            " times.");
    const HeadingTexts texts{.firm = d.Company.name,
                             .phone = d.User.phone.empty() ? d.Company.phone : d.User.phone,
                             .fax = d.Company.fax,
                             .job = elevation.Job.JobName};
    showHeading(
        *this, texts,
        HeadingControls{.user = nullptr, .email = nullptr, .fax = "lFax", .job = "lJobName"});
    showReportDateTime(*this);
}

void ElevGlassReport::fetchData(bool& eof) {
    const auto& items = data().GlassItems;
    eof = m_rowIndex >= static_cast<std::int64_t>(items.size());
    if (eof)
        return;
    const host::ElevationGlassItem& item = items[static_cast<std::size_t>(m_rowIndex)];
    engine::Fields& f = fields();
    f["Quantity"].setValue(item.Quantity);
    f["Description"].setValue(item.Description);
    f["Thickness"].setValue(item.Thickness);
    f["GlassType"].setValue(item.GlassType);
    f["PricePerSqFt"].setValue(item.PricePerSqFt);
    f["Width"].setValue(item.Width);
    f["LeftHeight"].setValue(item.LeftHeight);
    f["RightHeight"].setValue(item.RightHeight);
    if (!m_blockFigures)
        return;
    f["Label"].setValue(typeLabelOf(item));
    f["Area"].setValue(item.Area);
    f["TotalArea"].setValue(item.Quantity * item.Area);
    f["AreaTotalPrice"].setValue(lineTotal(item));
    f["GlassTypeQuantity"].setValue(std::int32_t{-1});
    f["BlockSize"].setValue(std::to_string(item.BlockWidth) + " x " +
                            std::to_string(item.BlockHeight));
    f["BlockArea"].setValue(item.BlockArea);
    f["TotalBlockArea"].setValue(item.Quantity * item.BlockArea);
    f["BlockTotalPrice"].setValue(blockTotal(item));
}

void ElevGlassReport::detailFormat() {
    const auto& items = data().GlassItems;
    if (!m_blockFigures && !items.empty()) {
        const host::ElevationGlassItem& item = items.at(static_cast<std::size_t>(m_rowIndex));
        const double total = lineTotal(item);
        label("lSquareFt").setNumber(item.Area, kAreaEachFormat);
        label("lTotal").setNumber(total, kMoneyFormat);
        m_totalCost += total;
        if (total == 0)
            m_unpricedItems = true;
    }
    ++m_rowIndex;
}

void ElevGlassReport::detailBeforePrint() {
    // The sizes as a glazier reads them: inches and a fraction down to 1/64.
    for (const char* name : {"WidthField", "LeftHeightField", "RightHeightField"}) {
        engine::TextBox& box = textBox(name);
        const double inches = toDouble(Variant(box.text()));
        box.setText(m_fractions->ToFractionString(inches, 0, 64));
    }
}

void ElevGlassReport::thicknessGroupHeaderBeforePrint() {
    engine::TextBox& thickness = textBox("ThicknessField");
    thickness.setText(thickness.text() + "\"");
}

void ElevGlassReport::glassTypeGroupFooterBeforePrint() {
    for (const char* name : {"TotalAreaSumField", "BlockAreaSubTotalField"}) {
        engine::TextBox& box = textBox(name);
        box.setNumber(box.value(), kSquareFeetFormat);
    }
}

void ElevGlassReport::reportFooterBeforePrint() {
    for (const char* name : {"AreaGrandTotalField", "BlockAreaGrandTotalField"}) {
        engine::TextBox& box = textBox(name);
        box.setNumber(box.value(), kSquareFeetFormat);
    }
}

void ElevGlassReport::reportFooterFormat() {
    label("lGrandTotal").setNumber(m_totalCost, kMoneyFormat);
    label("lWarning").setVisible(m_unpricedItems);
}

} // namespace qr::reports
