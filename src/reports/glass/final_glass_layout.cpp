#include "reports/glass/final_glass_layout.hpp"

#include "platform/core/error.hpp"
#include "reports/common/heading.hpp"
#include "reports/common/page_footer.hpp"

#include <algorithm>

namespace qr::reports::final_glass {

namespace {

using engine::ControlDesign;
using engine::ControlKind;
using engine::SectionDesign;

constexpr int kMargin = 720;
constexpr int kPortraitWidth = 10800;
constexpr int kLandscapeWidth = 14400;

// Column headings: up to three stacked rows under the heading block, then the rule. The
// landscape heading block is shorter (its user block stands beside the title).
constexpr int kPortraitHeadingTop = 1920;
constexpr int kLandscapeHeadingTop = 1480;
constexpr int kHeadingRow = 190;
constexpr int kHeadingRows = 3;
constexpr int kRuleBelowHeadings = kHeadingRows * kHeadingRow + 60;

constexpr int kLineHeight = 230;
constexpr int kCheckSide = 200;

// The job totals block: one row per figure, caption, area (or count), cost.
constexpr int kTotalsRowHeight = 250;
constexpr int kTotalsCaptionX = 240;
constexpr int kTotalsCaptionWidth = 2300;
constexpr int kTotalsAreaX = 2600;
constexpr int kTotalsAreaWidth = 1200;
constexpr int kTotalsCostX = 3900;
constexpr int kTotalsCostWidth = 1400;

page::FontSpec arial(double size, bool bold = false, bool italic = false) {
    page::FontSpec font;
    font.sizePoints = size;
    font.bold = bold;
    font.italic = italic;
    return font;
}

const Column& columnNamed(const Layout& layout, const std::string& control) {
    auto it = std::find_if(layout.columns.begin(), layout.columns.end(),
                           [&](const Column& c) { return c.control == control; });
    if (it == layout.columns.end()) {
        throw Error(errc::kComponent, layout.name,
                    layout.name + ": the glass line has no column " + control +
                        " for its totals to stand under.");
    }
    return *it;
}

// ---- Report header --------------------------------------------------------------------------

/// Title, date and time, the user's block and the job name on a portrait page: the title and
/// the user's block on the left, date and time on the right.
std::vector<ControlDesign> portraitHeading(int width) {
    std::vector<ControlDesign> controls = {
        engine::label("Label1", {0, 0, 7000, 420}, "Job Glass Report").withFont(arial(16, true)),
        engine::label("lUserName", {0, 760, 7000, 240}, "").size(9),
        engine::label("lGlassfirm", {0, 480, 7000, 280}, "").withFont(arial(12, true)),
        engine::label("Label6", {0, 1000, 720, 240}, "Phone:").size(9),
        engine::label("lPhone", {720, 1000, 4000, 240}, "").size(9),
        engine::label("Label7", {0, 1240, 720, 240}, "Email:").size(9),
        engine::label("lEmail", {720, 1240, 6000, 240}, "").size(9),
        engine::label("Label8", {0, 1540, 1200, 280}, "Job  Name:").withFont(arial(10, true)),
        engine::label("lJobName", {1260, 1540, width - 1260, 280}, "").withFont(arial(10, true)),
    };
    for (auto& c : dateTimeLabels({width - 2400, 0, 2400, 240}, 9))
        controls.push_back(std::move(c));
    return controls;
}

/// The same on a landscape page: the title, date, time and job name on the left, the user's
/// block at the right; the e-mail comes last.
std::vector<ControlDesign> landscapeHeading(int width) {
    const int block = width - 4800;
    std::vector<ControlDesign> controls = {
        engine::label("Label1", {0, 0, 8400, 420}, "Job Glass Report").withFont(arial(16, true)),
        engine::label("lUserName", {block, 300, 4800, 240}, "").size(9),
        engine::label("lGlassfirm", {block, 0, 4800, 280}, "").withFont(arial(12, true)),
        engine::label("Label6", {block, 540, 720, 240}, "Phone:").size(9),
        engine::label("lPhone", {block + 720, 540, 4080, 240}, "").size(9),
        engine::label("Label8", {0, 1100, 1200, 280}, "Job  Name:").withFont(arial(10, true)),
        engine::label("lJobName", {1260, 1100, block - 1360, 280}, "").withFont(arial(10, true)),
        engine::label("Label7", {block, 780, 720, 240}, "Email:").size(9),
        engine::label("lEmail", {block + 720, 780, 4080, 240}, "").size(9),
    };
    for (auto& c : dateTimeLabels({0, 480, 3000, 240}, 9, page::Align::Left))
        controls.push_back(std::move(c));
    return controls;
}

int headingTop(const Layout& layout) {
    return layout.landscape ? kLandscapeHeadingTop : kPortraitHeadingTop;
}

/// The heading words over each column, bottom-aligned, numbered Label30 on.
void addColumnHeadings(const Layout& layout, std::vector<ControlDesign>& controls) {
    const int top = headingTop(layout);
    int number = 30;
    for (const Column& column : layout.columns) {
        const int rows = static_cast<int>(column.headings.size());
        for (int i = 0; i < rows; ++i) {
            const int y = top + (kHeadingRows - rows + i) * kHeadingRow;
            ControlDesign heading =
                engine::label("Label" + std::to_string(number++), {column.x, y, column.width, 200},
                              column.headings[i])
                    .withFont(arial(kLineTextSize, true));
            heading.align = column.align;
            controls.push_back(std::move(heading));
        }
    }
    const int rule = top + kRuleBelowHeadings;
    const int width = layout.landscape ? kLandscapeWidth : kPortraitWidth;
    controls.push_back(engine::line("Line1", 0, rule, width, rule).weight(20));
}

SectionDesign reportHeaderOf(const Layout& layout, int width) {
    std::vector<ControlDesign> controls =
        layout.landscape ? landscapeHeading(width) : portraitHeading(width);
    addColumnHeadings(layout, controls);
    return engine::reportHeader("ReportHeader", headingTop(layout) + kRuleBelowHeadings + 60,
                                std::move(controls));
}

/// The caption over the line's last column at the top of every page, so a page that opens in
/// the middle of the list still says which column totals.
SectionDesign pageHeaderOf(const Layout& layout) {
    if (layout.columns.empty())
        columnNamed(layout, "Field1"); // refuses the layout
    const Column& last = layout.columns.back();
    return engine::pageHeader("PageHeader", 200,
                              {engine::label("Label15", {last.x, 0, last.width, 200}, "Total")
                                   .alignRight()
                                   .withFont(arial(kLineTextSize, true))});
}

// ---- Groups and line ------------------------------------------------------------------------

std::vector<SectionDesign> groupHeaders(const Layout& layout, int width) {
    ControlDesign description =
        layout.descriptionLabel
            ? engine::label("lDescriptionSupplier", {0, 80, width, 260}, "DescriptionSupplier")
            : engine::textBox("DescriptionSupplierField", {0, 80, width, 260}, "sDescription");
    description.withFont(arial(10, true));
    return {
        engine::groupHeader("ghOrderGroup", "sDescription", 360, {std::move(description)}),
        engine::groupHeader(
            "ThicknessGroup", "pThickness", 230,
            {engine::label("ThicknessLabel", {240, 0, 1000, 230}, "Thickness:").size(9),
             engine::textBox(layout.thicknessControl, {1260, 0, 1500, 230}, "pThickness")
                 .format("0.#####\"")
                 .withFont(arial(9, true))}),
        engine::groupHeader("TypeHeader", "sGlassType", 230,
                            {engine::textBox("Field18", {480, 0, 5000, 230}, "sGlassType")
                                 .withFont(arial(9, true))}),
        engine::groupHeader("ghTypeLabel", "sTypeLabel", 220,
                            {engine::textBox("Field19", {720, 0, 5000, 220}, "sTypeLabel")
                                 .withFont(arial(kLineTextSize, false, true))}),
    };
}

ControlDesign lineControl(const Column& column) {
    ControlDesign control;
    switch (column.kind) {
    case ControlKind::CheckBox:
        // The square centred under its heading.
        return engine::checkBox(
            column.control,
            {column.x + (column.width - kCheckSide) / 2, 0, kCheckSide, kLineHeight}, column.field);
    case ControlKind::Label:
        control = engine::label(column.control, {column.x, 0, column.width, kLineHeight}, "");
        break;
    default:
        control =
            engine::textBox(column.control, {column.x, 0, column.width, kLineHeight}, column.field);
        if (!column.format.empty())
            control.format(column.format);
        break;
    }
    control.size(kLineTextSize);
    control.align = column.align;
    return control;
}

SectionDesign detailOf(const Layout& layout) {
    std::vector<ControlDesign> controls;
    for (const Column& column : layout.columns)
        controls.push_back(lineControl(column));
    return engine::detail("Detail", kLineHeight, std::move(controls));
}

/// A total standing under a line column, in bold.
ControlDesign under(const Column& column, ControlDesign control) {
    control.rect.x = column.x;
    control.rect.width = column.width;
    control.align = page::Align::Right;
    return control;
}

SectionDesign typeSubtotals(const Layout& layout, int width) {
    constexpr int y = 70;
    constexpr int h = 220;
    const page::FontSpec font = arial(kLineTextSize, true);
    std::vector<ControlDesign> controls{
        under(
            columnNamed(layout, "Field1"),
            engine::textBox("Field3", {0, y, 0, h}, "iQuantity").sum("TypeHeader").withFont(font)),
        under(columnNamed(layout, "lAreaSubTotal"),
              engine::label("lTypeAreaTotal", {0, y, 0, h}, "").withFont(font)),
    };
    if (layout.prices) {
        controls.push_back(under(columnNamed(layout, "Field10"),
                                 engine::textBox("Field11", {0, y, 0, h}, "pPriceTotal")
                                     .format("$#,##0.00")
                                     .sum("TypeHeader")
                                     .withFont(font)));
    }
    controls.push_back(engine::line("Line5", 0, 30, width, 30).weight(10));
    return engine::groupFooter("GroupFooter1", "TypeHeader", 340, std::move(controls));
}

// ---- Page footer and job totals -------------------------------------------------------------

SectionDesign pageFooterOf(int width) {
    return pageNumberFooter({0, 80, width, 220}, kLineTextSize, page::Align::Center);
}

/// One row of the totals block: caption, area (or count) and, when given, cost.
void totalsRow(std::vector<ControlDesign>& controls, int& y, const char* captionName,
               const char* caption, ControlDesign area, const char* costName = nullptr) {
    controls.push_back(
        engine::label(captionName, {kTotalsCaptionX, y, kTotalsCaptionWidth, 240}, caption)
            .size(9));
    area.rect = {kTotalsAreaX, y, kTotalsAreaWidth, 240};
    controls.push_back(std::move(area.alignRight().size(9)));
    if (costName) {
        controls.push_back(engine::label(costName, {kTotalsCostX, y, kTotalsCostWidth, 240}, "")
                               .alignRight()
                               .size(9));
    }
    y += kTotalsRowHeight;
}

SectionDesign jobTotals(const Layout& layout, int width) {
    const Column& areaColumn = columnNamed(layout, "lAreaSubTotal");
    const page::FontSpec bold = arial(9, true);
    std::vector<ControlDesign> controls{
        engine::label("Label62", {0, 120, areaColumn.x - 120, 240}, layout.grandTotalCaption)
            .alignRight()
            .withFont(bold),
        under(areaColumn, engine::label("lGrandAreaTotal", {0, 120, 0, 240}, "").withFont(bold)),
    };
    if (layout.prices) {
        controls.push_back(under(columnNamed(layout, "Field10"),
                                 engine::textBox("Field14", {0, 120, 0, 240}, "pPriceTotal")
                                     .format("$#,##0.00")
                                     .sum()
                                     .withFont(bold)));
    }
    controls.push_back(engine::line("Line4", 0, 420, width, 420).weight(20));
    controls.push_back(engine::label("Label61", {0, 500, 4000, 260}, "Misc. Glass Totals:")
                           .withFont(arial(10, true)));

    int y = 800;
    const bool cost = layout.prices;
    totalsRow(controls, y, "Label63",
              "All Lites:", engine::textBox("Field15", {}, "iQuantity").sum());
    totalsRow(controls, y, "Label80",
              "Perimeter of All Glass:", engine::label("lTotalPerimeter", {}, ""));
    totalsRow(controls, y, "Label64", "Lites without Doors:", engine::label("lOtherLites", {}, ""));
    struct Row {
        const char* captionName;
        const char* caption;
        const char* area;
        const char* cost;
    };
    static constexpr Row kCategoryRows[] = {
        {"Label65", "Area Annealed:", "lSqrAnneal", "lAnnDlr"},
        {"Label81", "Area Heat Strengthened:", "lSqrHeatStrengthened", "lHeatStrengthenedCost"},
        {"Label66", "Area Tempered:", "lSqrTempered", "lTempDlr"},
        {"Label67", "Area Spandrel:", "lSqrSpecial", "lSpecDlr"},
        {"Label70", "Area Panels:", "lSqrPanels", "lPanelDlr"},
        {"Label73", "Area Vent:", "lSqrVent", "lVentDlr"},
        {"Label68", "Area Miscellaneous:", "lSqrMisc", "lMiscDlr"},
        {"Label79", "Area Door Lites:", "lDoorLites", "lDoorDlr"},
    };
    for (const Row& row : kCategoryRows) {
        totalsRow(controls, y, row.captionName, row.caption, engine::label(row.area, {}, ""),
                  cost ? row.cost : nullptr);
    }
    if (layout.prices) {
        controls.push_back(engine::label("Label69", {0, y + 120, 6000, 240},
                                         "Note:  Glass is priced by Block Size.")
                               .withFont(arial(9, false, true)));
        y += 120 + 240;
    }
    // The job totals are read as one block: never split across pages.
    return engine::reportFooter("ReportFooter", y + 60, std::move(controls)).keepTogetherOnPage();
}

} // namespace

engine::ReportDesign buildDesign(const Layout& layout) {
    const int width = layout.landscape ? kLandscapeWidth : kPortraitWidth;
    engine::ReportDesign design;
    design.name = layout.name;
    design.title = "Job Glass Report";
    design.page.orientation =
        layout.landscape ? page::Orientation::Landscape : page::Orientation::Portrait;
    design.page.marginLeft = design.page.marginTop = kMargin;
    design.page.marginRight = design.page.marginBottom = kMargin;
    design.page.printWidth = width;

    std::vector<SectionDesign> sections{reportHeaderOf(layout, width), pageHeaderOf(layout)};
    for (SectionDesign& header : groupHeaders(layout, width))
        sections.push_back(std::move(header));
    sections.push_back(detailOf(layout));
    sections.push_back(engine::groupFooter("GroupFooter2", "ghTypeLabel", 0, {}));
    sections.push_back(typeSubtotals(layout, width));
    sections.push_back(engine::groupFooter("GroupFooter3", "ThicknessGroup", 0, {}));
    sections.push_back(engine::groupFooter("gfOrderGroup", "ghOrderGroup", 160, {}));
    sections.push_back(pageFooterOf(width));
    sections.push_back(jobTotals(layout, width));
    design.sections = std::move(sections);
    return design;
}

} // namespace qr::reports::final_glass
