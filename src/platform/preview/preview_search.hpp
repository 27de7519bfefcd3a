#pragma once
// Finding text in finished pages, for the preview's find bar. Each line the engine placed is
// searched on its own, without regard to case, and every match gets the box it covers on the
// page, measured with the very glyph advances the page is drawn with, so the highlight sits
// exactly on the characters.

#include "platform/engine/page/page.hpp"
#include "platform/output/scaled_font.hpp"

#include <QString>
#include <cstddef>
#include <string>
#include <vector>

namespace qr::output {

/// One place the text was found: the page (from 0) and the box of the matched characters in
/// twips from the paper's top-left corner (from the font's ascent above the baseline to its
/// descent below).
struct TextMatch {
    std::size_t page = 0;
    double x = 0, y = 0, width = 0, height = 0;
};

/// Finds text in pages. Keeps the fonts it has measured with; not thread-safe.
class TextFinder {
  public:
    /// Every occurrence of `needle` (UTF-8) in the lines of `pages`, ignoring case, in reading
    /// order: page by page, item by item, line by line, left to right. Occurrences within one
    /// line do not overlap. An empty or all-blank needle finds nothing. Text items whose font
    /// is outside the pages' font list are skipped (the page cannot be drawn either).
    std::vector<TextMatch> find(const page::Pages& pages, const std::string& needle);

  private:
    void findInItem(const page::TextItem& item, std::size_t pageIndex, const QString& needle,
                    const std::vector<page::FontSpec>& fonts, std::vector<TextMatch>& out);

    FontSet m_fonts;
};

/// The match to go to from `current` (an index into `matches`, or -1 for none yet), forwards
/// or backwards, wrapping around at either end. Without a current match, the first match on
/// or after page `fromPage` going forwards, or the last one before or on it going backwards.
/// -1 when there are no matches.
int stepMatch(const std::vector<TextMatch>& matches, int current, bool forwards,
              std::size_t fromPage);

} // namespace qr::output
