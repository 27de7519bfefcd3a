#pragma once
// The engine's one source of font metrics: FreeType faces found through fontconfig and measured
// through cairo, the same faces and glyphs the renderers draw.

#include "platform/engine/page/text_measurer.hpp"
#include "platform/output/scaled_font.hpp"

namespace qr::output {

/// Measures text with the Liberation faces that stand in for the designs' fonts ("Arial" ->
/// Liberation Sans, "Times New Roman" -> Liberation Serif, "Courier New" -> Liberation Mono).
/// Widths are unhinted advances, so they scale linearly with the size and hold at any
/// resolution. Each font is set up once, and each character's glyph and advance are looked up
/// once per font; after that a width costs one table lookup per character, which is cheaper
/// than looking a whole string up in a cache.
///
/// Not thread-safe: use one measurer per thread (the engine runs a report on one thread).
/// Raises qr::Error naming the font when it is not installed or its size is not sensible.
class CairoTextMeasurer final : public page::TextMeasurer {
  public:
    /// Advance width of `text` (UTF-8) in `font`, rounded to whole twips.
    int width(const page::FontSpec& font, std::string_view text) override;
    /// Ascent, descent and line height of `font`, rounded to whole twips.
    page::FontMetrics metrics(const page::FontSpec& font) override;

  private:
    FontSet m_fonts;
};

} // namespace qr::output
