// The design tables of the three final parts reports: page, heading block, the columns of the
// line with their captions, and the grand total under the total column.
#include "platform/core/error.hpp"
#include "reports/parts/final_parts_report.hpp"
#include "reports/parts/parts_layout.hpp"

#include <algorithm>

namespace qr::reports {

namespace {

using engine::ControlDesign;
using page::Align;
using parts::Column;

constexpr const char* kMoney = "$#,##0.00";

struct Layout {
    const char* name;
    engine::PageSettings page;
    const char* subheading; ///< the pricing note under the title, if any
    const char* subheadingText;
    /// The landscape note shows only once a line priced by unit says so, so a list without
    /// lines makes no claim about its pricing.
    bool subheadingShown;
    std::vector<Column> columns;
    const char* grandTotal;  ///< the grand total box, nullptr for none
    const char* totalColumn; ///< the column it stands under
};

const Column& columnNamed(const Layout& layout, const char* control) {
    auto it = std::find_if(layout.columns.begin(), layout.columns.end(),
                           [&](const Column& c) { return c.control == control; });
    if (it == layout.columns.end())
        throw Error::component(layout.name, std::string(layout.name) + ": no column " + control);
    return *it;
}

engine::SectionDesign reportHeaderOf(const Layout& layout, CaptionMaker& captions) {
    const int width = layout.page.printWidth;
    std::vector<ControlDesign> controls;
    const int headingHeight = parts::addHeadingBlock(
        controls,
        {.title = "Job Parts Report",
         .width = width,
         .userName = true,
         .left = {{"Vendor:", "lVendor"}, {"Job  Name:", "lJobName"}, {"Finish Color:", "lColor"}},
         .right = {{"Phone:", "lPhone"}, {"Email:", "lEmail"}},
         .subheading = layout.subheading,
         .subheadingText = layout.subheadingText,
         .subheadingShown = layout.subheadingShown},
        captions);
    parts::addColumnCaptions(controls, layout.columns, headingHeight, captions);
    const int rule = headingHeight + parts::kCaptionRows * parts::kCaptionRowHeight + 40;
    controls.push_back(engine::line("Line1", 0, rule, width, rule).weight(20));
    return engine::reportHeader("ReportHeader", rule + 80, std::move(controls));
}

engine::SectionDesign reportFooterOf(const Layout& layout, CaptionMaker& captions) {
    const int width = layout.page.printWidth;
    std::vector<ControlDesign> controls{engine::line("Line2", 0, 40, width, 40).weight(20)};
    if (layout.grandTotal) {
        const Column& total = columnNamed(layout, layout.totalColumn);
        controls.push_back(
            captions.bold({0, 120, total.x - 120, 240}, "Parts Grand Total").alignRight());
        controls.push_back(
            engine::textBox(layout.grandTotal, {total.x, 120, total.width, 240}, "TotalPrice")
                .format(kMoney)
                .sum()
                .bold()
                .alignRight()
                .size(parts::kHeadingTextSize));
    }
    return engine::reportFooter("ReportFooter", layout.grandTotal ? 420 : 120, std::move(controls));
}

engine::ReportDesign designOf(const Layout& layout) {
    engine::ReportDesign design{layout.name, "Job Parts Summary Report", layout.page, {}};
    CaptionMaker captions(parts::kHeadingTextSize);
    design.sections = {
        reportHeaderOf(layout, captions), engine::pageHeader("PageHeader", 0, {}),
        parts::lineOf(layout.columns),    parts::partsPageFooter(layout.page.printWidth),
        reportFooterOf(layout, captions),
    };
    return design;
}

const Column kDescription{"DescriptionField", "Description",           "", 0, 0,
                          Align::Left,        {"Description | Finish"}};

Column at(Column column, int x, int width) {
    column.x = x;
    column.width = width;
    return parts::growing(column);
}

Layout landscape() {
    return {
        .name = "FinalPartsAR",
        .page = {.orientation = page::Orientation::Landscape,
                 .marginLeft = 720,
                 .marginTop = 720,
                 .marginRight = 720,
                 .marginBottom = 720,
                 .printWidth = 14400},
        .subheading = "NoteUnderTitleLabel",
        .subheadingText = "(Priced by Unit Quantity)",
        .subheadingShown = false,
        .columns =
            {
                {"QuantityField", "Quantity", "", 0, 700, Align::Right, {"Units"}},
                {"PartNumberField", "PartNumber", "", 850, 1900, Align::Left, {"Part #"}},
                at(kDescription, 2850, 4500),
                {"PartTypeField", "PartType", "", 7450, 1300, Align::Left, {"Part", "Type"}},
                {"PackageQuantityField",
                 "PackageQuantity",
                 "",
                 8850,
                 900,
                 Align::Right,
                 {"Units", "Per Pkg"}},
                {"PackagesToOrderField",
                 "PackagesToOrder",
                 "",
                 9850,
                 1000,
                 Align::Right,
                 {"Packages", "To Order"}},
                {"UnitPriceField",
                 "UnitPrice",
                 kMoney,
                 10950,
                 1150,
                 Align::Right,
                 {"Pkg Price"},
                 "LineItemPriceLabel"},
                {"MultiplierField", "Multiplier", "", 12200, 900, Align::Right, {"Multiplier"}},
                {"TotalPriceField", "TotalPrice", kMoney, 13200, 1200, Align::Right, {"Total"}},
            },
        .grandTotal = "GrandTotalField",
        .totalColumn = "TotalPriceField",
    };
}

Layout portrait() {
    return {
        .name = "FinalPartsAR2",
        // With 720 on both sides the stored width runs 90 twips past Letter; the right margin
        // gives way, so the line keeps its width and the page its paper.
        .page = {.marginLeft = 720,
                 .marginTop = 720,
                 .marginRight = 630,
                 .marginBottom = 1080,
                 .printWidth = 10890},
        .subheading = "ByPackageSubheading",
        .subheadingText = "(By Package)",
        .subheadingShown = true,
        .columns =
            {
                {"PackageQuantityField",
                 "PackagesToOrder",
                 "",
                 0,
                 900,
                 Align::Right,
                 {"Packages", "To Order"},
                 "PackagesToOrderLabel"},
                {"PartNumberField", "PartNumber", "", 1000, 1700, Align::Left, {"Part #"}},
                at(kDescription, 2800, 3500),
                {"PartTypeField",
                 "PartType",
                 "",
                 6400,
                 1100,
                 Align::Left,
                 {"Part Type"},
                 "PartTypeLabel"},
                {"PackagePriceField",
                 "UnitOrPackagePrice",
                 kMoney,
                 7550,
                 1100,
                 Align::Right,
                 {"Pkg Price"},
                 "PricePerPackageLabel"},
                {"MultiplierField", "Multiplier", "", 8750, 850, Align::Right, {"Multiplier"}},
                {"TotalField", "TotalPrice", kMoney, 9700, 1190, Align::Right, {"Total"}},
            },
        .grandTotal = "Field8",
        .totalColumn = "TotalField",
    };
}

Layout withoutPrices() {
    return {
        .name = "FinalPartsARNP",
        .page = {.marginLeft = 500,
                 .marginTop = 720,
                 .marginRight = 500,
                 .marginBottom = 720,
                 .printWidth = 10980},
        .subheading = nullptr,
        .subheadingText = "",
        .subheadingShown = false,
        .columns =
            {
                {"QuantityField", "Quantity", "#,##0", 0, 800, Align::Right, {"Units"}},
                {"PartNumberField", "PartNumber", "", 950, 1800, Align::Left, {"Part #"}},
                at(kDescription, 2850, 4300),
                {"PartTypeField", "PartType", "", 7250, 1250, Align::Left, {"Part Type"}},
                {"PackagesToOrderField",
                 "PackagesToOrder",
                 "",
                 8600,
                 1100,
                 Align::Right,
                 {"Packages To Order"},
                 "",
                 2},
                {"PackageQuantityField",
                 "PackageQuantity",
                 "#,##0",
                 9800,
                 1100,
                 Align::Right,
                 {"Units Per Pkg"},
                 "",
                 2},
            },
        .grandTotal = nullptr,
        .totalColumn = nullptr,
    };
}

} // namespace

FinalPartsAR::FinalPartsAR()
    : FinalPartsReport(designOf(landscape()), FinalPartsLayout::Landscape, kExportSuffixes) {}

FinalPartsAR2::FinalPartsAR2()
    : FinalPartsReport(designOf(portrait()), FinalPartsLayout::Portrait, kExportSuffixes) {}

FinalPartsARNP::FinalPartsARNP()
    : FinalPartsReport(designOf(withoutPrices()), FinalPartsLayout::NoPrices, kExportSuffixes) {}

} // namespace qr::reports
