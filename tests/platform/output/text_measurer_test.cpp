#include "platform/core/error.hpp"
#include "platform/output/cairo_text_measurer.hpp"
#include "platform/output/font_library.hpp"
#include "platform/output/scaled_font.hpp"

#include <filesystem>
#include <gtest/gtest.h>

namespace qr::output {
namespace {

page::FontSpec font(const std::string& family, double size, bool bold = false,
                    bool italic = false) {
    page::FontSpec f;
    f.family = family;
    f.sizePoints = size;
    f.bold = bold;
    f.italic = italic;
    return f;
}

TEST(FontLibrary, DesignFamiliesAreDrawnWithMetricCompatibleFaces) {
    struct Case {
        page::FontSpec spec;
        const char* family;
        const char* fileStem;
    };
    const Case cases[] = {
        {font("Arial", 10), "Liberation Sans", "LiberationSans-Regular"},
        {font("arial", 10, true), "Liberation Sans", "LiberationSans-Bold"},
        {font("Arial", 10, false, true), "Liberation Sans", "LiberationSans-Italic"},
        {font("Arial", 10, true, true), "Liberation Sans", "LiberationSans-BoldItalic"},
        {font("Times New Roman", 12), "Liberation Serif", "LiberationSerif-Regular"},
        {font("Courier New", 9, true), "Liberation Mono", "LiberationMono-Bold"},
        {font("Liberation Sans", 10), "Liberation Sans", "LiberationSans-Regular"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.spec.family);
        const FontFace& face = findFontFace(c.spec);
        EXPECT_EQ(face.family, c.family);
        EXPECT_EQ(std::filesystem::path(face.file).stem().string(), c.fileStem);
        EXPECT_GT(face.underlineThickness, 0);
        EXPECT_GT(face.underlinePosition, 0);
    }
}

TEST(FontLibrary, MissingFontIsAnErrorNamingIt) {
    try {
        findFontFace(font("Quarvex Nonexistent Grotesk", 10));
        FAIL() << "expected an error";
    } catch (const Error& e) {
        EXPECT_NE(e.description().find("\"Quarvex Nonexistent Grotesk\""), std::string::npos)
            << e.description();
    }
}

TEST(CairoTextMeasurer, WidthsFollowTheTextAndTheFont) {
    CairoTextMeasurer m;
    const auto arial10 = font("Arial", 10);
    EXPECT_EQ(m.width(arial10, ""), 0);
    EXPECT_GT(m.width(arial10, "Glass"), 0);
    EXPECT_GT(m.width(arial10, "Glass total"), m.width(arial10, "Glass"));
    EXPECT_GT(m.width(font("Arial", 10, true), "Glass total"), m.width(arial10, "Glass total"));
    // Liberation Mono is monospaced: every character has the same advance.
    const auto mono = font("Courier New", 10);
    EXPECT_EQ(m.width(mono, "iiiiiiiiii"), m.width(mono, "WWWWWWWWWW"));
    // A 10 pt Liberation Mono character is 0.6 em = 6 pt = 120 twips wide.
    EXPECT_EQ(m.width(mono, "0123456789"), 1200);
}

TEST(CairoTextMeasurer, WidthsScaleLinearlyWithTheSize) {
    CairoTextMeasurer m;
    const std::string text = "$1,234,567.89 Insulated glass";
    const int at10 = m.width(font("Arial", 10), text);
    for (double size : {5.0, 20.0, 40.0}) {
        SCOPED_TRACE(size);
        const int scaled = m.width(font("Arial", size), text);
        EXPECT_NEAR(scaled, at10 * size / 10, 1.0 + size / 10);
    }
}

TEST(CairoTextMeasurer, RepeatedAnswersEqualFreshOnes) {
    CairoTextMeasurer warm;
    const auto f = font("Arial", 9);
    const int first = warm.width(f, "Spandrel");
    for (int i = 0; i < 1000; ++i)
        warm.width(f, std::to_string(i) + "\xE2\x80\x94");
    EXPECT_EQ(warm.width(f, "Spandrel"), first);
    CairoTextMeasurer fresh;
    EXPECT_EQ(fresh.width(f, "Spandrel"), first);
}

// The glyph table must give exactly what cairo gives for a whole string, or measured widths
// and drawn text would drift apart.
TEST(ScaledFont, ShapesExactlyAsCairoDoes) {
    const std::string samples[] = {
        "Final Glass Report",
        "$1,234,567.89",
        "1/4\" Clear \xE2\x80\x94 36 \xC2\xBD x 84 \xC2\xB0",
        "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82 \xE6\x97\xA5\xE6\x9C\xAC", // Cyrillic,
                                                                                     // CJK
        "tab\there",
        "",
    };
    for (const auto& spec : {font("Arial", 10), font("Times New Roman", 13.5, true, true)}) {
        ScaledFont scaled(spec);
        for (const auto& text : samples) {
            SCOPED_TRACE(spec.family + ": " + text);
            std::vector<cairo_glyph_t> ours;
            const double advance = scaled.appendGlyphs(text, 100, 50, ours);
            EXPECT_DOUBLE_EQ(scaled.advance(text), advance);

            cairo_glyph_t* theirs = nullptr;
            int count = 0;
            ASSERT_EQ(cairo_scaled_font_text_to_glyphs(scaled.handle(), 100, 50, text.data(),
                                                       int(text.size()), &theirs, &count, nullptr,
                                                       nullptr, nullptr),
                      CAIRO_STATUS_SUCCESS);
            ASSERT_EQ(ours.size(), std::size_t(count));
            for (int i = 0; i < count; ++i) {
                EXPECT_EQ(ours[i].index, theirs[i].index) << i;
                EXPECT_NEAR(ours[i].x, theirs[i].x, 1e-9) << i;
                EXPECT_EQ(ours[i].y, theirs[i].y) << i;
            }
            cairo_text_extents_t extents;
            cairo_scaled_font_text_extents(scaled.handle(), text.c_str(), &extents);
            EXPECT_NEAR(advance, extents.x_advance, 1e-9);
            cairo_glyph_free(theirs);
        }
    }
}

TEST(CairoTextMeasurer, MetricsAreThoseOfTheFace) {
    CairoTextMeasurer m;
    const auto metrics = m.metrics(font("Arial", 10));
    // Liberation Sans: ascender 1854, descender 434, line gap 67 per 2048 units.
    EXPECT_EQ(metrics.ascent, 181);
    EXPECT_EQ(metrics.descent, 42);
    EXPECT_EQ(metrics.lineHeight, 230);
}

TEST(CairoTextMeasurer, BadSizesAreErrors) {
    CairoTextMeasurer m;
    for (double size : {0.0, -4.0, 5000.0}) {
        SCOPED_TRACE(size);
        EXPECT_THROW(m.width(font("Arial", size), "x"), Error);
    }
}

TEST(CairoTextMeasurer, InvalidUtf8IsMeasuredAsLatin1) {
    CairoTextMeasurer m;
    const auto f = font("Arial", 10);
    EXPECT_EQ(m.width(f, "Caf\xE9"), m.width(f, "Caf\xC3\xA9"));
    EXPECT_EQ(m.width(f, "\xBD\""), m.width(f, "\xC2\xBD\""));
}

TEST(RepairUtf8, KeepsValidTextAndReadsStrayBytesAsLatin1) {
    struct Case {
        std::string input;
        std::string expected;
    };
    const Case cases[] = {
        {"plain", "plain"},
        {"\xC2\xBD in", "\xC2\xBD in"},               // valid two-byte sequence kept
        {"\xE2\x80\x94", "\xE2\x80\x94"},             // valid three-byte sequence kept
        {"\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},     // valid four-byte sequence kept
        {"1\xBD", "1\xC2\xBD"},                       // stray continuation byte
        {"\xE9t\xE9", "\xC3\xA9t\xC3\xA9"},           // Latin-1 text
        {"\xC0\xAF", "\xC3\x80\xC2\xAF"},             // overlong form is not valid
        {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xC2\x80"}, // surrogate is not valid
        {"\xE2\x80", "\xC3\xA2\xC2\x80"},             // truncated sequence
    };
    for (const auto& c : cases) {
        EXPECT_EQ(repairUtf8(c.input), c.expected);
    }
}

} // namespace
} // namespace qr::output
