#pragma once
// A report font at its size, and text shaped in it. The measurer takes widths from these glyphs
// and the renderers draw these very glyphs, so measuring and drawing can never disagree.

#include "platform/engine/page/page.hpp"
#include "platform/engine/page/text_measurer.hpp"
#include "platform/output/font_library.hpp"

#include <cairo.h>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qr::output {

/// One font at one size. Shaping is what cairo_scaled_font_text_to_glyphs does for these faces
/// (one glyph per character from the font's character map, the pen moved by each glyph's
/// unhinted advance, no kerning), done from a per-font table of characters: each character is
/// looked up through cairo once, after that a string costs an array lookup per character and
/// allocates nothing. Not thread-safe: each owner (a measurer, a renderer) keeps its own.
class ScaledFont {
  public:
    /// Raises qr::Error when the family is not installed or the size is not a sensible size.
    explicit ScaledFont(const page::FontSpec& spec);
    ~ScaledFont();
    ScaledFont(const ScaledFont&) = delete;
    ScaledFont& operator=(const ScaledFont&) = delete;

    const page::FontSpec& spec() const { return m_spec; }
    const FontFace& face() const { return *m_face; }
    /// The font size in twips (the em square as twips).
    double sizeTwips() const { return m_sizeTwips; }
    /// The cairo scaled font (font matrix in twips, identity transform, hinting off).
    cairo_scaled_font_t* handle() const { return m_scaled; }
    const page::FontMetrics& metrics() const { return m_metrics; }

    /// Appends the glyphs of `utf8` to `out`, the first glyph's origin at (x, y) in twips, and
    /// returns the pen advance after the last glyph. Bytes that are not valid UTF-8 are read as
    /// Latin-1 characters, the way legacy data usually meant them.
    double appendGlyphs(std::string_view utf8, double x, double y, std::vector<cairo_glyph_t>& out);
    /// The pen advance of `utf8` in twips (what appendGlyphs returns), without the glyphs.
    double advance(std::string_view utf8);

    /// What a glyph this font has given out stands for: the character it was looked up for
    /// (the first, when several characters share a glyph) and its advance in twips.
    struct Shown {
        char32_t character = 0;
        double advance = 0;
    };
    /// The glyph's character and advance, or none for a glyph this font never gave out.
    const Shown* shown(unsigned long glyph) const;

  private:
    struct Glyph {
        unsigned long index = 0;
        double advance = 0;
        bool known = false;
    };
    /// Characters below this are kept in a flat table; the rest in a map.
    static constexpr char32_t kTableSize = 0x800;

    const Glyph& glyph(char32_t character);
    Glyph lookUp(char32_t character) const;

    page::FontSpec m_spec;
    const FontFace* m_face = nullptr;
    double m_sizeTwips = 0;
    cairo_scaled_font_t* m_scaled = nullptr;
    page::FontMetrics m_metrics;
    std::vector<Glyph> m_table;
    std::unordered_map<char32_t, Glyph> m_others;
    std::unordered_map<unsigned long, Shown> m_shown;
};

/// The report fonts one owner has used, each made once. Not thread-safe.
class FontSet {
  public:
    /// The scaled font for `spec`; the reference stays valid for the life of the set.
    ScaledFont& get(const page::FontSpec& spec);

  private:
    struct SpecHash {
        std::size_t operator()(const page::FontSpec& f) const noexcept;
    };
    std::unordered_map<page::FontSpec, std::unique_ptr<ScaledFont>, SpecHash> m_fonts;
};

/// `text` unchanged when it is valid UTF-8, otherwise with every byte that does not belong to
/// a valid sequence replaced by the character of that byte in Latin-1.
std::string repairUtf8(std::string_view text);

/// The character starting at `text[i]`, moving `i` past it; a byte that does not start a valid
/// UTF-8 sequence is taken as its Latin-1 character (as repairUtf8 does).
char32_t nextCharacter(std::string_view text, std::size_t& i);

} // namespace qr::output
