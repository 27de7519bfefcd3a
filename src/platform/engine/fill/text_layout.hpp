#pragma once
// Text layout, done once for every output: line breaks (CR LF, LF, CR), word wrap, alignment
// and clipping, measured with the one text measurer. Widths are cached per font and string, so
// a long report measures each distinct cell text once.

#include "platform/core/bytes_memo.hpp"
#include "platform/engine/page/page.hpp"
#include "platform/engine/page/text_measurer.hpp"

#include <climits>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qr::engine {

class TextLayout {
  public:
    /// Lays text out with `measurer`, registering fonts in `pages.fonts`.
    TextLayout(page::TextMeasurer& measurer, page::Pages& pages);

    /// Index of `font` in the page collection's font table (added when new).
    int fontIndex(const page::FontSpec& font);
    const page::FontMetrics& metrics(int font);
    /// Advance width of `text` in `font`, measured once per distinct string.
    int width(int font, std::string_view text);

    /// What a layout came to.
    struct Result {
        int height = 0;   ///< the height all lines of the text need
        bool cut = false; ///< part of the text was left out: it is not all in the runs
        bool operator==(const Result&) const = default;
    };

    /// Lay `text` out in a box `boxWidth` wide. Runs are placed relative to the box: x from
    /// its left, baseline from its top. With `wrap`, lines break between words (and inside a
    /// word wider than the box); without it a line wider than the box keeps what fits (its
    /// start, or its end when aligned right). Lines whose bottom falls below `maxHeight` are
    /// left out, except the first. Either way the result says the text was cut.
    Result layout(std::string_view text, int font, int boxWidth, page::Align align, bool wrap,
                  int maxHeight, std::vector<page::TextRun>& runs);

    /// Number of distinct strings measured so far (for tests of the cache).
    long measuredCount() const { return m_measured; }

  private:
    /// Adds the line(s) `line` makes; returns false when a line had to be cut to the width.
    bool addLine(std::string_view line, int font, int boxWidth, page::Align align, bool wrap,
                 std::vector<std::string_view>& lines);
    void wrapParagraph(std::string_view paragraph, int font, int boxWidth,
                       std::vector<std::string_view>& lines);
    std::string_view fitPrefix(std::string_view text, int font, int boxWidth);
    std::string_view fitSuffix(std::string_view text, int font, int boxWidth);

    page::TextMeasurer& m_measurer;
    page::Pages& m_pages;
    std::vector<page::FontMetrics> m_metrics; // by font, as the fonts are first used
    // The widths measured, by font and string. A cache this large holds every distinct cell
    // text of a long report many times over; past it the widths are measured again as they
    // come.
    BytesMemo<int> m_widths{65536, std::size_t{4} << 20};
    std::vector<std::string_view> m_lines; // scratch, reused between calls
    // The last line addLine kept whole, with the width it measured: a line of one text (most
    // texts are one line) is then not measured again when placed.
    struct KeptLine {
        std::string_view line;
        int width = 0;
    } m_kept;
    long m_measured = 0;
};

} // namespace qr::engine
