#pragma once
// A report font at its size, and the text shaped in it. Shaping here is what cairo's FreeType
// backend does: one glyph per character from the font's character map, placed by its unhinted
// advance. The measurer takes widths from these glyphs and the renderers draw these very glyphs,
// so measuring and drawing can never disagree.

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

/// Glyphs of one string, the first glyph's origin at (0, 0), units twips.
struct ShapedText {
    std::vector<cairo_glyph_t> glyphs;
    double advance = 0; // pen advance after the last glyph
};

/// One font at one size, with a cache of shaped strings. Not thread-safe: each owner (a
/// measurer, a renderer) keeps its own.
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

    /// `utf8` shaped in this font. Bytes that are not valid UTF-8 are read as Latin-1
    /// characters, the way legacy data usually meant them. The reference stays valid until the
    /// next call (the cache is bounded and may be emptied).
    const ShapedText& shape(std::string_view utf8);

    /// Most strings kept per font before the cache starts over.
    static constexpr std::size_t kMaxCachedStrings = 50000;

  private:
    struct TransparentHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view s) const noexcept {
            return std::hash<std::string_view>{}(s);
        }
    };

    ShapedText shapeUncached(std::string_view utf8) const;

    page::FontSpec m_spec;
    const FontFace* m_face = nullptr;
    double m_sizeTwips = 0;
    cairo_scaled_font_t* m_scaled = nullptr;
    page::FontMetrics m_metrics;
    std::unordered_map<std::string, ShapedText, TransparentHash, std::equal_to<>> m_cache;
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

} // namespace qr::output
