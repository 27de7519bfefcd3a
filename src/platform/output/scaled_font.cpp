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

// UTF-8 of one character (never a surrogate: nextCharacter does not produce them).
std::string encodeUtf8(char32_t c) {
    std::string out;
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
    return out;
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
    m_table.resize(kTableSize);
}

ScaledFont::~ScaledFont() {
    cairo_scaled_font_destroy(m_scaled);
}

char32_t nextCharacter(std::string_view text, std::size_t& i) {
    const auto byte = [&](std::size_t k) { return char32_t(static_cast<unsigned char>(text[k])); };
    std::size_t length = validSequenceLength(text, i);
    char32_t c = 0;
    switch (length) {
    case 1:
        c = byte(i);
        break;
    case 2:
        c = ((byte(i) & 0x1F) << 6) | (byte(i + 1) & 0x3F);
        break;
    case 3:
        c = ((byte(i) & 0x0F) << 12) | ((byte(i + 1) & 0x3F) << 6) | (byte(i + 2) & 0x3F);
        break;
    case 4:
        c = ((byte(i) & 0x07) << 18) | ((byte(i + 1) & 0x3F) << 12) | ((byte(i + 2) & 0x3F) << 6) |
            (byte(i + 3) & 0x3F);
        break;
    default: // a stray byte: its Latin-1 character
        c = byte(i);
        length = 1;
    }
    i += length;
    return c;
}

ScaledFont::Glyph ScaledFont::lookUp(char32_t character) const {
    // Asking cairo for the one character gives exactly the glyph and advance its
    // cairo_scaled_font_text_to_glyphs uses for that character inside any string.
    const std::string utf8 = encodeUtf8(character);
    cairo_glyph_t* glyphs = nullptr;
    int count = 0;
    const cairo_status_t status =
        cairo_scaled_font_text_to_glyphs(m_scaled, 0, 0, utf8.data(), static_cast<int>(utf8.size()),
                                         &glyphs, &count, nullptr, nullptr, nullptr);
    if (status != CAIRO_STATUS_SUCCESS || count != 1) {
        if (glyphs)
            cairo_glyph_free(glyphs);
        throw Error(errc::kComponent, kFontsSource,
                    "The character U+" + std::to_string(static_cast<unsigned long>(character)) +
                        " could not be set in \"" + m_spec.family +
                        "\": " + cairo_status_to_string(status));
    }
    cairo_text_extents_t extents;
    cairo_scaled_font_glyph_extents(m_scaled, glyphs, 1, &extents);
    Glyph result{glyphs[0].index, extents.x_advance, true};
    cairo_glyph_free(glyphs);
    return result;
}

const ScaledFont::Glyph& ScaledFont::glyph(char32_t character) {
    if (character < kTableSize) {
        Glyph& entry = m_table[character];
        if (!entry.known) {
            entry = lookUp(character);
            m_shown.try_emplace(entry.index, Shown{character, entry.advance});
        }
        return entry;
    }
    auto found = m_others.find(character);
    if (found == m_others.end()) {
        found = m_others.emplace(character, lookUp(character)).first;
        m_shown.try_emplace(found->second.index, Shown{character, found->second.advance});
    }
    return found->second;
}

const ScaledFont::Shown* ScaledFont::shown(unsigned long glyph) const {
    const auto found = m_shown.find(glyph);
    return found == m_shown.end() ? nullptr : &found->second;
}

double ScaledFont::appendGlyphs(std::string_view utf8, double x, double y,
                                std::vector<cairo_glyph_t>& out) {
    // The pen moves as in cairo, from 0 one advance after another, and the origin is added to
    // each position: a string gets the same glyph spacing wherever it stands.
    double pen = 0;
    for (std::size_t i = 0; i < utf8.size();) {
        const Glyph& g = glyph(nextCharacter(utf8, i));
        out.push_back(cairo_glyph_t{g.index, x + pen, y});
        pen += g.advance;
    }
    return pen;
}

double ScaledFont::advance(std::string_view utf8) {
    double pen = 0;
    for (std::size_t i = 0; i < utf8.size();)
        pen += glyph(nextCharacter(utf8, i)).advance;
    return pen;
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
