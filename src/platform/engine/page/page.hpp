#pragma once
// The print model: what a report run produces. Plain values, coordinates in twips (1/1440
// inch) from the top-left corner of the paper. Text is already broken into lines and each line
// already placed by the engine; renderers draw the runs where they stand and never measure,
// break or align text again, so every output shows the same lines at the same places.

#include "platform/engine/page/cut_text.hpp"
#include "platform/engine/page/item_list.hpp"
#include "platform/engine/page/items.hpp"

#include <string>
#include <vector>

namespace qr::page {

/// One printed page. Its items are packed (see ItemList): reading one decodes a copy, and
/// changing one goes through ItemList::set.
struct Page {
    int width = kLetterWidth;   // paper width in twips, after orientation
    int height = kLetterHeight; // paper height in twips, after orientation
    ItemList items;
};

enum class Orientation { Portrait = 1, Landscape = 2 };

/// The finished page collection of one run.
struct Pages {
    std::string title; // document title ("Job Glass Report")
    Orientation orientation = Orientation::Portrait;
    int marginLeft = 1440, marginTop = 1440, marginRight = 1440, marginBottom = 1440;
    std::vector<FontSpec> fonts; // fonts referenced by TextItem::font
    std::vector<Page> pages;
    /// Texts cut to their boxes, page by page as the bands were printed (page counts, known
    /// at the end of the run, last).
    std::vector<CutText> cutTexts;

    /// Index of `font` in `fonts`, added when new.
    int fontIndex(const FontSpec& font);
};

/// A readable dump of one page (or all), one item a line in drawing order, for tests:
///   text  Detail/Field9 [5040,3600 900x240] R ".50"
///   line  ReportHeader/Line1 (720,2160)-(11520,2160)
///   rect  PageFooter/Shape1 [720,14400 10800x480]
///   check Detail/CheckBox1 [6480,3630 180x180] x
/// Text is quoted with line breaks as \n, quotes and backslashes escaped; a check box shows x
/// when checked and - when not; a rounded rectangle adds " rounded", a filled one " fill"
/// and the colour as six hex digits. The dump of all pages puts a line "page N of M" before
/// each page's items.
std::string dump(const Page& page);
std::string dump(const Pages& pages);

} // namespace qr::page
