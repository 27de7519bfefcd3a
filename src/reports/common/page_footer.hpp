#pragma once
// The page-number footer every report shares: the page-count box prints "Page  ", the page
// number, " of  " and the page count.

#include "platform/engine/controls.hpp"

namespace qr::reports {

/// Sets the page-count box's output format for the page being closed: the literal
/// "Page  <n> of  " in quotes, then "#" for the total page count.
void showPageOfPages(engine::TextBox& pageCountBox, int pageNumber);

} // namespace qr::reports
