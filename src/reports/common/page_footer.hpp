#pragma once
// The page-number footer every report shares, design and handler together: one text box,
// txtPageNumber, that prints "Page  ", the page number, " of  " and the page count.

#include "platform/engine/controls.hpp"
#include "platform/engine/design/report_design.hpp"
#include "platform/engine/report.hpp"

namespace qr::reports {

/// The footer section "PageFooter", `height` high, with txtPageNumber at `box` in `size` points.
engine::SectionDesign pageNumberFooter(page::Rect box, double size,
                                       page::Align align = page::Align::Right, int height = 320);

/// The footer's Format handler: numbers the page being closed. Register it with
/// onFormat("PageFooter", [this] { formatPageNumberFooter(*this); }).
void formatPageNumberFooter(engine::Report& report);

/// Sets the page-count box's output format for the page being closed: the literal
/// "Page  <n> of  " in quotes, then "#" for the total page count.
void showPageOfPages(engine::TextBox& pageCountBox, int pageNumber);

} // namespace qr::reports
