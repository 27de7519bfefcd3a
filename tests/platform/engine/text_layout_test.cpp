// Text layout with a measurer of round numbers: 100 twips a character, lines 240 apart,
// baseline 180 below the line's top.
#include "platform/engine/engine_test_support.hpp"
#include "platform/engine/fill/text_layout.hpp"

#include <climits>
#include <gtest/gtest.h>

namespace qr::engine::test {
namespace {

using page::Align;

struct PlacedLine {
    int x;
    int baseline;
    std::string text;
    bool operator==(const PlacedLine&) const = default;
};

void PrintTo(const PlacedLine& r, std::ostream* os) {
    *os << "(" << r.x << "," << r.baseline << ",\"" << r.text << "\")";
}

TEST(TextLayout, BreaksWrapsAlignsAndClips) {
    struct Case {
        const char* what;
        std::string text;
        int width;
        Align align;
        bool wrap;
        int maxHeight;
        std::vector<PlacedLine> runs;
        int height;
        bool cut = false;
    };
    const std::vector<Case> cases = {
        {"left", "abc", 1000, Align::Left, true, INT_MAX, {{0, 180, "abc"}}, 240},
        {"right", "abc", 1000, Align::Right, true, INT_MAX, {{700, 180, "abc"}}, 240},
        {"centre", "abc", 1000, Align::Center, true, INT_MAX, {{350, 180, "abc"}}, 240},
        {"CR LF, CR and LF all break",
         "a\r\nb\rc\nd",
         1000,
         Align::Left,
         true,
         INT_MAX,
         {{0, 180, "a"}, {0, 420, "b"}, {0, 660, "c"}, {0, 900, "d"}},
         960},
        {"an empty line keeps its place",
         "a\n\nb",
         1000,
         Align::Left,
         true,
         INT_MAX,
         {{0, 180, "a"}, {0, 660, "b"}},
         720},
        {"wraps between words",
         "aaa bbb ccc",
         700,
         Align::Left,
         true,
         INT_MAX,
         {{0, 180, "aaa bbb"}, {0, 420, "ccc"}},
         480},
        {"wrapped lines are aligned on their own",
         "aaa bb",
         350,
         Align::Right,
         true,
         INT_MAX,
         {{50, 180, "aaa"}, {150, 420, "bb"}},
         480},
        {"blanks at a wrap are dropped",
         "aa   bb",
         300,
         Align::Left,
         true,
         INT_MAX,
         {{0, 180, "aa"}, {0, 420, "bb"}},
         480},
        {"a word wider than the box is broken",
         "abcdefghij",
         300,
         Align::Left,
         true,
         INT_MAX,
         {{0, 180, "abc"}, {0, 420, "def"}, {0, 660, "ghi"}, {0, 900, "j"}},
         960},
        {"lines below the box are left out, the first is kept",
         "a\nb\nc",
         1000,
         Align::Left,
         true,
         500,
         {{0, 180, "a"}, {0, 420, "b"}},
         720,
         true},
        {"even when the box is lower than one line",
         "a\nb",
         1000,
         Align::Left,
         true,
         100,
         {{0, 180, "a"}},
         480,
         true},
        {"without wrap the start is kept",
         "abcdef",
         300,
         Align::Left,
         false,
         INT_MAX,
         {{0, 180, "abc"}},
         240,
         true},
        {"without wrap, right aligned, the end is kept",
         "abcdef",
         300,
         Align::Right,
         false,
         INT_MAX,
         {{0, 180, "def"}},
         240,
         true},
        {"characters, not bytes",
         "\xC3\xA9\xC3\xA9\xC3\xA9",
         200,
         Align::Left,
         false,
         INT_MAX,
         {{0, 180, "\xC3\xA9\xC3\xA9"}},
         240,
         true},
        {"blank lines below the box lose nothing",
         "a\n\n",
         1000,
         Align::Left,
         true,
         300,
         {{0, 180, "a"}},
         720},
        {"without wrap, blanks over the box lose nothing",
         "abc   ",
         400,
         Align::Left,
         false,
         INT_MAX,
         {{0, 180, "abc "}},
         240},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        FixedMeasurer measurer;
        page::Pages pages;
        TextLayout layout(measurer, pages);
        const int font = layout.fontIndex(page::FontSpec{});
        std::vector<page::TextRun> runs;
        const TextLayout::Result laid =
            layout.layout(c.text, font, c.width, c.align, c.wrap, c.maxHeight, runs);
        std::vector<PlacedLine> got;
        for (const page::TextRun& r : runs) {
            got.push_back({r.x, r.baseline, r.text});
            EXPECT_EQ(r.width, measurer.width(page::FontSpec{}, r.text));
        }
        EXPECT_EQ(got, c.runs);
        EXPECT_EQ(laid.height, c.height);
        EXPECT_EQ(laid.cut, c.cut);
    }
}

TEST(TextLayout, MeasuresEachDistinctStringOncePerFont) {
    FixedMeasurer measurer;
    page::Pages pages;
    TextLayout layout(measurer, pages);
    const int regular = layout.fontIndex(page::FontSpec{});
    page::FontSpec boldSpec;
    boldSpec.bold = true;
    const int bold = layout.fontIndex(boldSpec);
    EXPECT_EQ(layout.fontIndex(page::FontSpec{}), regular);
    EXPECT_EQ(pages.fonts.size(), 2u);

    std::vector<page::TextRun> runs;
    for (int i = 0; i < 10000; ++i) {
        layout.layout("$1,234.50", regular, 2000, Align::Right, true, INT_MAX, runs);
        layout.layout(std::to_string(i % 10), regular, 2000, Align::Left, true, INT_MAX, runs);
        layout.layout("$1,234.50", bold, 2000, Align::Right, true, INT_MAX, runs);
    }
    EXPECT_EQ(measurer.calls, 12);
    EXPECT_EQ(layout.measuredCount(), 12);
}

} // namespace
} // namespace qr::engine::test
