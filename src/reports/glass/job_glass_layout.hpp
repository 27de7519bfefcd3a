#pragma once
// The design builder the four job glass reports share. Each report states its table of line
// columns (control, binding, format, position, headings) and its grouping; the builder makes
// the whole design from it: the heading block, the column headings, the elevation,
// description and part group headers, the part and elevation totals standing under the
// columns they add up, the page-number footer and the job totals (with the pricing notes and
// the no-price warning on the portrait page).

#include "platform/engine/design/report_design.hpp"

#include <string>
#include <vector>

namespace qr::reports::job_glass {

/// One column of the glass line and the heading over it (`headingTop` over `heading`; empty
/// for a one-line heading).
struct Column {
    std::string control;
    std::string field;  ///< bound column; "" for a label the detail handler fills
    std::string format; ///< output format of a bound column; "" for none
    int x = 0;
    int width = 0;
    page::Align align = page::Align::Right;
    std::string headingTop;
    std::string heading;
};

struct Layout {
    std::string name; ///< the report's class name
    /// Landscape with the block figures; else portrait with the notes and the warning.
    bool wide = false;
    bool byElevation = false;
    std::string groupedBy; ///< the "Grouped by: ..." caption (Label8)
    std::vector<Column> columns;
};

/// The report's whole design. Raises qr::Error naming the report when a column the totals
/// stand under (fUnits, lSquareFt, lTotal and, wide, fBlkArea and lBlockTotal) is missing.
engine::ReportDesign buildDesign(const Layout& layout);

} // namespace qr::reports::job_glass
