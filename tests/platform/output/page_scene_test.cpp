// A page's scene: texts a report repeats line after line are mapped to glyphs once, and every
// copy must still be drawn exactly where it stands, as if it had been drawn on its own.
#include "platform/core/error.hpp"
#include "platform/output/page_scene.hpp"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace qr::test {
namespace {

using output::PageScene;
using output::SceneBuilder;

const std::vector<page::FontSpec> kFonts = {
    {"Arial", 8, false, false, false},
    {"Arial", 10, true, false, true}, // underlined
    {"Times New Roman", 12, false, true, false},
};

/// Row after row of the same few texts at moving places (some boxes left of the page, some
/// with two lines, a background, a colour, an empty line). With `distinct`, every item gets
/// a format of its own: it draws the same but no two items are alike.
page::Page repeatedRows(int rows, bool distinct, int firstRow = 0) {
    page::Page page;
    int serial = 0;
    for (int row = firstRow; row < firstRow + rows; ++row) {
        const int y = 700 + (row % 60) * 230;
        auto add = [&](int x, int font, std::vector<std::string> lines,
                       std::optional<page::Color> background = std::nullopt,
                       page::Color color = page::kBlack) {
            page::TextItem item;
            item.box = {x, y - 180, 1500, 230 * static_cast<int>(lines.size())};
            item.font = font;
            item.color = color;
            item.background = background;
            for (std::size_t i = 0; i < lines.size(); ++i) {
                item.runs.push_back({x + 37 * static_cast<int>(i), y + 230 * static_cast<int>(i),
                                     i == 1 ? 0 : 900, lines[i]});
                item.text += (i ? "\n" : "") + lines[i];
            }
            item.control = "Field" + std::to_string(serial);
            if (distinct)
                item.format = "#" + std::to_string(serial);
            ++serial;
            page.items.push_back(item);
        };
        add(-250 + row % 3, 0, {"1\" Insulated Clear Low-E"});
        add(2000, 1, {"Tempered", "GL-" + std::to_string(row % 4)});
        add(4100 + (row % 2) * 15, 2, {"24 15/16", ""}, 0xEEEEEE, 0x336699);
        add(6000, 0, {std::to_string(row % 5 + 1)});
        add(7000, 1, {}, 0xCCCCCC);
        add(7500, 2, {""}, std::nullopt, 0x990000); // takes a batch it leaves empty
    }
    return page;
}

/// Fills, underlines and glyph batches of the page's texts as each draws on its own: its runs'
/// glyphs from the run's left end, one advance after another.
struct Drawn {
    std::vector<output::FilledBox> fills, underlines;
    struct Batch {
        page::FontSpec font;
        page::Color color;
        std::vector<cairo_glyph_t> glyphs;
    };
    std::vector<Batch> batches;
};

Drawn eachOnItsOwn(const page::Page& page, output::FontSet& fonts) {
    Drawn out;
    for (const page::Item& item : page.items) {
        const auto& text = std::get<page::TextItem>(item);
        if (text.background)
            out.fills.push_back({double(text.box.x), double(text.box.y), double(text.box.width),
                                 double(text.box.height), *text.background, 0});
        if (text.runs.empty())
            continue;
        const page::FontSpec& spec = kFonts[static_cast<std::size_t>(text.font)];
        output::ScaledFont& font = fonts.get(spec);
        auto batch = std::find_if(out.batches.begin(), out.batches.end(), [&](const auto& b) {
            return b.font == spec && b.color == text.color;
        });
        if (batch == out.batches.end())
            batch = out.batches.insert(out.batches.end(), {spec, text.color, {}});
        for (const page::TextRun& run : text.runs) {
            if (run.text.empty())
                continue;
            const double advance = font.appendGlyphs(run.text, run.x, run.baseline, batch->glyphs);
            if (spec.underline) {
                const double size = font.sizeTwips();
                const double thickness = std::max(font.face().underlineThickness * size, 10.0);
                const double centre = run.baseline + font.face().underlinePosition * size;
                out.underlines.push_back({double(run.x), centre - thickness / 2,
                                          run.width > 0 ? run.width : advance, thickness,
                                          text.color, 0});
            }
        }
    }
    return out;
}

void expectDrawn(const PageScene& actual, const Drawn& expected) {
    auto sameBox = [](const output::FilledBox& a, const output::FilledBox& b) {
        return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height &&
               a.color == b.color && a.radius == b.radius;
    };
    ASSERT_EQ(actual.fills.size(), expected.fills.size());
    for (std::size_t i = 0; i < actual.fills.size(); ++i)
        EXPECT_TRUE(sameBox(actual.fills[i], expected.fills[i])) << "fill " << i;
    ASSERT_EQ(actual.underlines.size(), expected.underlines.size());
    for (std::size_t i = 0; i < actual.underlines.size(); ++i)
        EXPECT_TRUE(sameBox(actual.underlines[i], expected.underlines[i])) << "underline " << i;
    ASSERT_EQ(actual.text.size(), expected.batches.size());
    for (std::size_t b = 0; b < actual.text.size(); ++b) {
        const auto& got = actual.text[b];
        const auto& want = expected.batches[b];
        EXPECT_EQ(got.font->spec(), want.font) << "batch " << b;
        EXPECT_EQ(got.color, want.color) << "batch " << b;
        ASSERT_EQ(got.glyphs.size(), want.glyphs.size()) << "batch " << b;
        for (std::size_t g = 0; g < got.glyphs.size(); ++g) {
            ASSERT_EQ(got.glyphs[g].index, want.glyphs[g].index) << "batch " << b << " glyph " << g;
            ASSERT_EQ(got.glyphs[g].x, want.glyphs[g].x) << "batch " << b << " glyph " << g;
            ASSERT_EQ(got.glyphs[g].y, want.glyphs[g].y) << "batch " << b << " glyph " << g;
        }
    }
}

TEST(PageScene, EveryCopyOfARepeatedTextIsDrawnWhereItStands) {
    output::FontSet fonts;
    SceneBuilder builder;
    // Pages after pages on one builder: later pages' copies come from what earlier ones made.
    for (int first : {0, 60}) {
        const page::Page repeated = repeatedRows(60, false, first);
        expectDrawn(builder.build(repeated, kFonts), eachOnItsOwn(repeated, fonts));
    }
    // More distinct texts than the builder remembers: the rest are drawn one by one, and the
    // page after is drawn whole again.
    const page::Page many = repeatedRows(4000, true);
    const Drawn expected = eachOnItsOwn(many, fonts);
    for (int again = 0; again < 2; ++again)
        expectDrawn(builder.build(many, kFonts), expected);
}

TEST(PageScene, ATextInAFontThePagesDoNotListFailsEveryTime) {
    page::Page page = repeatedRows(1, false);
    page::TextItem wrong = std::get<page::TextItem>(page.items.at(1));
    wrong.font = 7;
    wrong.control = "sType";
    page.items.push_back(wrong);
    SceneBuilder builder;
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            builder.build(page, kFonts);
            ADD_FAILURE() << "attempt " << attempt << " drew the page";
        } catch (const Error& error) {
            EXPECT_NE(error.description().find("\"sType\" uses font 7"), std::string::npos)
                << error.description();
        }
    }
}

} // namespace
} // namespace qr::test
