#include "platform/output/scaled_font.hpp"

#include "platform/core/error.hpp"
#include "platform/output/output_error.hpp"

#include <cmath>
#include <functional>

namespace qr::output {

namespace {

constexpr double kMaxSizePoints = 1000;

// Length of the valid UTF-8 sequence starting at `text[i]`, or 0 when the byte there does not
// start one.
std::size_t validSequenceLength(std::string_view text, std::size_t i) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = byte(i);
    if (lead < 0x80)
        return 1;
    std::size_t length = 0;
    unsigned char low = 0x80, high = 0xBF; // allowed range of the second byte
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0)
            low = 0xA0; // no overlong forms
        if (lead == 0xED)
            high = 0x9F; // no surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0)
            low = 0x90;
        if (lead == 0xF4)
            high = 0x8F; // nothing past U+10FFFF
    } else {
        return 0;
    }
    if (i + length > text.size())
        return 0;
    if (byte(i + 1) < low || byte(i + 1) > high)
        return 0;
    for (std::size_t k = 2; k < length; ++k) {
        if (byte(i + k) < 0x80 || byte(i + k) > 0xBF)
            return 0;
    }
    return length;
}

bool isValidUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = validSequenceLength(text, i);
        if (length == 0)
            return false;
        i += length;
    }
    return true;
}

} // namespace

std::string repairUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size() + 8);
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = validSequenceLength(text, i);
        if (length > 0) {
            result.append(text.substr(i, length));
            i += length;
            continue;
        }
        // A stray byte: its Latin-1 character, always a two-byte sequence (0x80..0xFF).
        const auto byte = static_cast<unsigned char>(text[i++]);
        result += static_cast<char>(0xC0 | (byte >> 6));
        result += static_cast<char>(0x80 | (byte & 0x3F));
    }
    return result;
}

ScaledFont::ScaledFont(const page::FontSpec& spec) : m_spec(spec) {
    if (!(spec.sizePoints > 0 && spec.sizePoints <= kMaxSizePoints)) {
        throw Error(errc::kComponent, kFontsSource,
                    "The font \"" + spec.family + "\" has a size of " +
                        std::to_string(spec.sizePoints) + " points; sizes run from above 0 to " +
                        std::to_string(static_cast<int>(kMaxSizePoints)) + ".");
    }
    m_face = &findFontFace(spec);
    m_sizeTwips = spec.sizePoints * page::kTwipsPerPoint;

    cairo_matrix_t fontMatrix;
    cairo_matrix_init_scale(&fontMatrix, m_sizeTwips, m_sizeTwips);
    cairo_matrix_t identity;
    cairo_matrix_init_identity(&identity);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    m_scaled = cairo_scaled_font_create(m_face->cairoFace, &fontMatrix, &identity, options);
    cairo_font_options_destroy(options);
    if (cairo_scaled_font_status(m_scaled) != CAIRO_STATUS_SUCCESS) {
        const std::string cause = cairo_status_to_string(cairo_scaled_font_status(m_scaled));
        cairo_scaled_font_destroy(m_scaled);
        throw Error(errc::kComponent, kFontsSource,
                    "The font \"" + spec.family + "\" could not be scaled: " + cause);
    }

    cairo_font_extents_t extents;
    cairo_scaled_font_extents(m_scaled, &extents);
    m_metrics.ascent = static_cast<int>(std::lround(extents.ascent));
    m_metrics.descent = static_cast<int>(std::lround(extents.descent));
    m_metrics.lineHeight = static_cast<int>(std::lround(extents.height));
}

ScaledFont::~ScaledFont() {
    cairo_scaled_font_destroy(m_scaled);
}

const ShapedText& ScaledFont::shape(std::string_view utf8) {
    if (auto found = m_cache.find(utf8); found != m_cache.end())
        return found->second;
    if (m_cache.size() >= kMaxCachedStrings)
        m_cache.clear();
    return m_cache.emplace(std::string(utf8), shapeUncached(utf8)).first->second;
}

ShapedText ScaledFont::shapeUncached(std::string_view utf8) const {
    ShapedText shaped;
    if (utf8.empty())
        return shaped;
    std::string repaired;
    if (!isValidUtf8(utf8)) {
        repaired = repairUtf8(utf8);
        utf8 = repaired;
    }
    cairo_glyph_t* glyphs = nullptr;
    int count = 0;
    const cairo_status_t status =
        cairo_scaled_font_text_to_glyphs(m_scaled, 0, 0, utf8.data(), static_cast<int>(utf8.size()),
                                         &glyphs, &count, nullptr, nullptr, nullptr);
    if (status != CAIRO_STATUS_SUCCESS) {
        if (glyphs)
            cairo_glyph_free(glyphs);
        throw Error(errc::kComponent, kFontsSource,
                    "The text \"" + std::string(utf8) + "\" could not be set in \"" +
                        m_spec.family + "\": " + cairo_status_to_string(status));
    }
    shaped.glyphs.assign(glyphs, glyphs + count);
    cairo_glyph_free(glyphs);
    if (count > 0) {
        cairo_text_extents_t last;
        cairo_scaled_font_glyph_extents(m_scaled, &shaped.glyphs.back(), 1, &last);
        shaped.advance = shaped.glyphs.back().x + last.x_advance;
    }
    return shaped;
}

std::size_t FontSet::SpecHash::operator()(const page::FontSpec& f) const noexcept {
    std::size_t h = std::hash<std::string>{}(f.family);
    h = h * 31 + std::hash<double>{}(f.sizePoints);
    h = h * 31 + (f.bold ? 1 : 0) + (f.italic ? 2 : 0) + (f.underline ? 4 : 0);
    return h;
}

ScaledFont& FontSet::get(const page::FontSpec& spec) {
    auto found = m_fonts.find(spec);
    if (found == m_fonts.end()) {
        found = m_fonts.emplace(spec, std::make_unique<ScaledFont>(spec)).first;
    }
    return *found->second;
}

} // namespace qr::output
