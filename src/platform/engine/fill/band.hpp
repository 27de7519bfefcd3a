#pragma once
// One laid-out section instance (a band) on its way to a page: its items with x relative to
// the band's left edge and y relative to its top, its height, and what still needs doing once
// its page is known.

#include "platform/engine/design/report_design.hpp"
#include "platform/engine/page/page.hpp"

#include <string>
#include <vector>

namespace qr::engine {

class Control;

/// A page-number or page-count box whose text is known only when the band has a page (or the
/// run has ended).
struct DeferredText {
    int item = 0; ///< index of its TextItem in the band
    SummaryKind kind = SummaryKind::PageCount;
    std::string pattern; ///< output format, applied to the number
    bool wrap = false;
    bool clipped = false; ///< the design lets the box cut its text
};

/// A text of the band that did not fit its box whole, waiting for the page it prints on.
struct CutMark {
    int item = 0;         ///< index of its TextItem in the band
    std::string text;     ///< the whole text
    std::string printed;  ///< the lines that were laid out, joined by "\n"
    bool clipped = false; ///< the design lets the box cut its text
};

/// Which control made a text or check-box item, and what the control showed then, so texts a
/// BeforePrint handler changes are laid out again.
struct ItemSource {
    int item = -1; ///< -1: the text was empty and made no item
    Control* control = nullptr;
    unsigned revision = 0;
    page::Rect box; ///< the item's box in the band
};

struct Band {
    std::vector<page::Item> items;
    std::vector<DeferredText> deferred;
    std::vector<ItemSource> sources;
    std::vector<CutMark> cuts;
    int height = 0;
    /// The part of the page the band prints in; its text and check-box items carry it.
    page::PageBand pageBand = page::PageBand::Body;

    void clear() {
        items.clear();
        deferred.clear();
        sources.clear();
        cuts.clear();
        height = 0;
        pageBand = page::PageBand::Body;
    }
};

} // namespace qr::engine
