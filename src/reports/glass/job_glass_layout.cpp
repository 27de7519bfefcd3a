#include "reports/glass/job_glass_layout.hpp"

#include "platform/core/error.hpp"
#include "reports/common/design_helpers.hpp"
#include "reports/common/heading.hpp"
#include "reports/common/page_footer.hpp"

#include <algorithm>

namespace qr::reports::job_glass {

namespace {

using engine::ControlDesign;
using engine::SectionDesign;

constexpr int kPortraitWidth = 10800;
constexpr int kWideWidth = 14430;
constexpr double kSize = 8;
constexpr int kLine = 230;

// Totals bands: captions over figures, each pair standing under the column it adds up.
constexpr int kCaptionY = 30;
constexpr int kFigureY = 240;
constexpr int kTotalsHeight = 520;
constexpr int kCaptionMinWidth = 1300;

int printWidth(const Layout& layout) {
    return layout.wide ? kWideWidth : kPortraitWidth;
}

const Column& columnNamed(const Layout& layout, const char* control) {
    auto it = std::find_if(layout.columns.begin(), layout.columns.end(),
                           [&](const Column& c) { return c.control == control; });
    if (it == layout.columns.end()) {
        throw Error(errc::kComponent, layout.name,
                    layout.name + ": the glass line has no column " + control +
                        " for its totals to stand under.");
    }
    return *it;
}

// ---- Heading --------------------------------------------------------------------------------

SectionDesign reportHeader(const Layout& layout) {
    const int width = printWidth(layout);
    std::vector<ControlDesign> controls{
        engine::label("Label1", {0, 0, 3300, 360}, "Glass Report for Job:").size(14).bold(),
        textLabel("lJobName", {3350, 0, width - 3350 - 2500, 360}, 14).bold(),
        textLabel("lGlassfirm", {0, 480, 6000, 280}, 11).bold(),
        engine::label("Label6", {0, 780, 700, 240}, "Phone:").size(9),
        textLabel("lPhone", {720, 780, 3500, 240}, 9),
        engine::label("Label7", {0, 1020, 700, 240}, "Fax:").size(9),
        textLabel("lFax", {720, 1020, 3500, 240}, 9),
        engine::label("Label8", {width - 5000, 1020, 5000, 240}, layout.groupedBy)
            .size(9)
            .alignRight(),
        // Left over in the design from an earlier layout; it never prints.
        engine::label("lRepeated", {4400, 1020, 600, 240}, "xx").size(9).hidden(),
    };
    for (auto& c : dateTimeLabels({width - 2400, 0, 2400, 240}, 9))
        controls.push_back(std::move(c));
    return engine::reportHeader("ReportHeader", 1340, std::move(controls));
}

/// The column headings, numbered Label10 on, and the rule under them.
SectionDesign pageHeader(const Layout& layout) {
    std::vector<ControlDesign> controls;
    int number = 10;
    for (const Column& column : layout.columns) {
        for (const auto& [text, y] : {std::pair{&column.headingTop, 0}, {&column.heading, 220}}) {
            if (text->empty())
                continue;
            auto heading = engine::label("Label" + std::to_string(number++),
                                         {column.x, y, column.width, 220}, *text)
                               .size(kSize)
                               .bold();
            heading.align = column.align;
            controls.push_back(std::move(heading));
        }
    }
    const int width = printWidth(layout);
    controls.push_back(engine::line("Line1", 0, 480, width, 480).weight(20));
    return engine::pageHeader("PageHeader", 540, std::move(controls));
}

// ---- Groups and line ------------------------------------------------------------------------

SectionDesign elevationHeader(const Layout& layout) {
    // The wide design numbered its caption differently.
    const char* caption = layout.wide ? "Label66" : "Label77";
    return engine::groupHeader(
        "ghElevHeader", "iElevSort", 380,
        {engine::label(caption, {0, 80, 1100, 280}, "Elevation:").size(11).bold(),
         engine::textBox("Field20", {1150, 80, 7000, 280}, "sElevName").size(11).bold()});
}

std::vector<SectionDesign> groupHeaders(const Layout& layout) {
    std::vector<SectionDesign> headers;
    if (layout.byElevation)
        headers.push_back(elevationHeader(layout));
    headers.push_back(engine::groupHeader(
        "ghOrderHeader", "sDesc", 320,
        {engine::textBox("Field13", {0, 70, 6000, 250}, "sDesc").size(10).bold(),
         engine::textBox("Field19", {6100, 70, 2000, 250}, "sTypeLabel").size(10).bold()}));
    headers.push_back(engine::groupHeader(
        "ghTypeHeader", "sPNum", 240,
        {engine::textBox("Field18", {360, 0, 4000, 230}, "sPNum").size(9).bold()}));
    return headers;
}

SectionDesign detail(const Layout& layout) {
    std::vector<ControlDesign> controls;
    for (const Column& column : layout.columns) {
        const page::Rect box{column.x, 0, column.width, kLine};
        ControlDesign control = column.field.empty() ? figureLabel(column.control, box, kSize, "")
                                                     : boundFigure(column.control, box, kSize,
                                                                   column.field, column.format);
        control.align = column.align;
        controls.push_back(std::move(control));
    }
    return engine::detail("Detail", kLine, std::move(controls));
}

// ---- Part and elevation totals --------------------------------------------------------------

/// The names of one totals band: its title, and caption and figure of each total.
struct TotalsNames {
    const char* section;
    const char* header; ///< the group header the band closes, and its quantity sums over
    const char* title;
    const char* titleText;
    const char* qtyCaption;
    const char* qty;
    const char* areaCaption;
    const char* area;
    const char* priceCaption;
    const char* price;
    const char* blockAreaCaption;
    const char* blockArea;
    const char* blockPriceCaption;
    const char* blockPrice;
};

constexpr TotalsNames kPartTotals{"ghTypeFooter", "ghTypeHeader",  "Label59", "- Type Totals -",
                                  "Label61",      "Field11",       "Label62", "lSqrFtSubTot",
                                  "Label65",      "lActualSubTot", "Label63", "lBlkAreaSub",
                                  "Label64",      "lBlkDollarSub"};
constexpr TotalsNames kElevationTotals{
    "ghElevFooter", "ghElevHeader",      "Label68", "- Elevation Totals -",
    "Label69",      "Field21",           "Label70", "lElevSqrFtSubTot",
    "Label76",      "lElevActualSubTot", "Label73", "lElevBlkAreaSub",
    "Label74",      "lElevBlkDollarSub"};

/// A caption over the figure under `column`, as wide as the caption needs, right-aligned.
void addTotal(std::vector<ControlDesign>& controls, const Column& column, const char* caption,
              const char* captionText, ControlDesign figure) {
    const int right = column.x + column.width;
    const int width = std::min(std::max(column.width, kCaptionMinWidth), right);
    controls.push_back(engine::label(caption, {right - width, kCaptionY, width, 200}, captionText)
                           .size(kSize)
                           .alignRight());
    figure.rect = {column.x, kFigureY, column.width, 220};
    controls.push_back(std::move(figure.size(kSize).bold().alignRight()));
}

/// A part or elevation totals band; `rule` names its closing line ("" for none).
SectionDesign totalsBand(const Layout& layout, const TotalsNames& names, const char* rule) {
    const Column& units = columnNamed(layout, "fUnits");
    std::vector<ControlDesign> controls{
        engine::label(names.title, {units.x + units.width + 100, kFigureY, 3000, 220},
                      names.titleText)
            .size(kSize)
            .bold()};
    addTotal(controls, units, names.qtyCaption,
             "Qty:", engine::textBox(names.qty, {}, "iGqty").sum(names.header));
    addTotal(controls, columnNamed(layout, "lSquareFt"), names.areaCaption,
             "Actual x Qty:", engine::label(names.area, {}, ""));
    addTotal(controls, columnNamed(layout, "lTotal"), names.priceCaption,
             "Actual Price:", engine::label(names.price, {}, ""));
    if (layout.wide) {
        addTotal(controls, columnNamed(layout, "fBlkArea"), names.blockAreaCaption,
                 "Block x Qty:", engine::label(names.blockArea, {}, ""));
        addTotal(controls, columnNamed(layout, "lBlockTotal"), names.blockPriceCaption,
                 "Block Price:", engine::label(names.blockPrice, {}, ""));
    }
    int height = kTotalsHeight;
    if (*rule != '\0') {
        controls.push_back(engine::line(rule, 0, height, printWidth(layout), height));
        height += 60;
    }
    return engine::groupFooter(names.section, names.header, height, std::move(controls))
        .keepTogetherOnPage();
}

std::vector<SectionDesign> groupFooters(const Layout& layout) {
    // The wide elevation design rules off each description instead of each part.
    const bool partRule = layout.wide && !layout.byElevation;
    std::vector<SectionDesign> footers{totalsBand(layout, kPartTotals, partRule ? "Line5" : "")};
    if (layout.byElevation) {
        const int width = printWidth(layout);
        footers.push_back(engine::groupFooter("ghOrderFooter", "ghOrderHeader", 100,
                                              {engine::line("Line5", 0, 50, width, 50)}));
        footers.push_back(totalsBand(layout, kElevationTotals, layout.wide ? "Line6" : "Line4"));
    } else {
        footers.push_back(engine::groupFooter("ghOrderFooter", "ghOrderHeader", 0, {}));
    }
    return footers;
}

// ---- Job totals -----------------------------------------------------------------------------

/// The portrait footer: how the report prices, the no-price warning, and the job's quantity,
/// area and price with their captions beside them.
SectionDesign portraitFooter(const Layout& layout) {
    const Column& totals = columnNamed(layout, "lTotal");
    const auto caption = [&](const char* name, int y, const char* text) {
        return engine::label(name, {totals.x - 2900, y, 2850, 240}, text)
            .size(9)
            .bold()
            .alignRight();
    };
    const auto figure = [&](ControlDesign control, int y) {
        control.rect = {totals.x, y, totals.width, 240};
        return std::move(control.size(9).bold().alignRight());
    };
    return engine::reportFooter(
               "ReportFooter", 960,
               {engine::line("Line2", 0, 40, kPortraitWidth, 40).weight(20),
                engine::label("Label52", {0, 120, 700, 220}, "NOTE:").size(kSize).bold(),
                engine::label("Label53", {720, 120, 5400, 220},
                              "The pricing on this report is based on actual size.")
                    .size(kSize),
                engine::label("Label54", {720, 340, 5400, 220},
                              "The Final Glass Report calculates pricing from block sizes.")
                    .size(kSize),
                engine::label("lWarning", {0, 640, 6200, 240},
                              "Warning: There were some items on this report with no price!")
                    .size(kSize)
                    .bold(),
                caption("Label78", 120, "Total Qty:"),
                figure(engine::textBox("fTotalPieces", {}, "iGqty").sum(), 120),
                caption("Label66", 380, "Total SqFt:"),
                figure(engine::label("lAreaGrandTotal", {}, ""), 380),
                caption("Label51", 640, "Total for this Job:"),
                figure(engine::label("lGrandTotal", {}, ""), 640)})
        .keepTogetherOnPage();
}

/// The wide footer: the job's figures under the columns they add up, no notes.
SectionDesign wideFooter(const Layout& layout) {
    const auto under = [&](const char* column, ControlDesign figure) {
        const Column& c = columnNamed(layout, column);
        figure.rect = {c.x, 120, c.width, 240};
        return std::move(figure.size(9).bold().alignRight());
    };
    const Column& units = columnNamed(layout, "fUnits");
    return engine::reportFooter(
               "ReportFooter", 460,
               {engine::line("Line2", 0, 40, kWideWidth, 40).weight(20),
                engine::label("Label60", {units.x + units.width + 100, 120, 3000, 240},
                              "- Totals for this Job -")
                    .size(9)
                    .bold(),
                under("fUnits", engine::textBox("fTotalPieces", {}, "iGqty").sum()),
                under("lSquareFt", engine::label("lAreaGrandTotal", {}, "")),
                under("lTotal", engine::label("lGrandTotal", {}, "")),
                under("fBlkArea", engine::label("lBlkAreaGTot", {}, "")),
                under("lBlockTotal", engine::label("lBlockGTotal", {}, ""))})
        .keepTogetherOnPage();
}

} // namespace

engine::ReportDesign buildDesign(const Layout& layout) {
    engine::ReportDesign d;
    d.name = layout.name;
    d.title = "Job Glass Report";
    if (layout.wide) {
        d.page.orientation = page::Orientation::Landscape;
        d.page.marginLeft = 600;
        d.page.marginRight = 500;
        d.page.marginTop = d.page.marginBottom = 720;
    } else {
        d.page.marginLeft = d.page.marginRight = d.page.marginTop = 720;
        d.page.marginBottom = 1080;
    }
    d.page.printWidth = printWidth(layout);
    d.sections.push_back(reportHeader(layout));
    d.sections.push_back(pageHeader(layout));
    for (auto& header : groupHeaders(layout))
        d.sections.push_back(std::move(header));
    d.sections.push_back(detail(layout));
    for (auto& footer : groupFooters(layout))
        d.sections.push_back(std::move(footer));
    const int width = printWidth(layout);
    d.sections.push_back(pageNumberFooter({width - 3000, 60, 3000, 240}, kSize));
    d.sections.push_back(layout.wide ? wideFooter(layout) : portraitFooter(layout));
    return d;
}

} // namespace qr::reports::job_glass
