#pragma once
// The design builder the four final glass reports share. Each report states its own table of
// line columns (control, binding, format, position, headings) and a few layout choices; the
// builder turns that into the whole design: the heading block, the column headings over the
// columns, the page header's caption over the last column, the four nested group headers, the
// type subtotal under each glass type, the page number footer and the job totals block.

#include "platform/engine/design/report_design.hpp"

#include <string>
#include <vector>

namespace qr::reports::final_glass {

/// One column of the glass line: the detail control, what it shows and where, and the
/// heading words stacked over it (top to bottom, bottom-aligned with the other headings).
struct Column {
    std::string control;
    engine::ControlKind kind = engine::ControlKind::TextBox; ///< TextBox, CheckBox or Label
    std::string field;                                       ///< bound column, "" for none
    std::string format;                                      ///< output format, "" for none
    int x = 0;
    int width = 0;
    page::Align align = page::Align::Left;
    std::vector<std::string> headings;
};

struct Layout {
    std::string name; ///< the report's class name
    bool landscape = false;
    bool prices = true;
    /// The description heading as the label lDescriptionSupplier (else the bound text box
    /// DescriptionSupplierField).
    bool descriptionLabel = false;
    /// Name of the thickness box of the thickness group header (the landscape lines use
    /// Field20 for the minimum block area).
    std::string thicknessControl = "Field20";
    /// Caption of the grand total row.
    std::string grandTotalCaption = "Final Glass Totals:";
    std::vector<Column> columns;
};

/// Heading and line text sizes, in points.
inline constexpr double kLineTextSize = 8;

/// The report's whole design from its layout. Raises qr::Error when a column the footers
/// stand under (Field1, lAreaSubTotal and, with prices, Field10) is missing.
engine::ReportDesign buildDesign(const Layout& layout);

} // namespace qr::reports::final_glass
