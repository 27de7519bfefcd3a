#pragma once
// The page footer of a report as the footer of a worksheet: Excel prints it at the foot of each
// page it prints, so the footer stands there and not between the rows of the sheet.

#include "platform/engine/page/items.hpp"

#include <string>
#include <vector>

namespace qr::output {

/// The sheet's footer, and the footer texts it had no room for.
struct SheetFooter {
    std::string text;                  ///< in Excel's header and footer syntax
    std::vector<std::size_t> leftOver; ///< indexes into the texts given, in order
};

/// The footer texts of one printed page (page `pageNumber` of `pageCount`, `pageWidth` twips
/// wide) in Excel's header and footer syntax. Texts standing in the left, middle and right
/// thirds of the page (by their left edge, centre or right edge, as they are aligned) go to
/// the left ("&L"), centre ("&C") and right ("&R") parts, a line break between texts on
/// different lines and a space between texts on one line. An ampersand is written "&&". A
/// page-number or page-count box (a text with a number behind it) gives its numbers as page
/// codes, so each printed page shows its own: the last number that is the page count becomes
/// "&N" when the box counts pages, and the first that is the page's number becomes "&P".
/// Excel keeps 255 characters of a footer: page numbers come first, then the other texts
/// from the top while they fit; those that do not fit are left over.
SheetFooter sheetFooter(const std::vector<page::TextItem>& items, int pageWidth, int pageNumber,
                        int pageCount);

} // namespace qr::output
