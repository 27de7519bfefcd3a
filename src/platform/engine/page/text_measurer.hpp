#pragma once
// The one source of font metrics. The engine asks it to measure when it lays text out; the
// output renderers use the same fonts, so what was measured is what is drawn.

#include "platform/engine/page/page.hpp"

#include <string_view>

namespace qr::page {

struct FontMetrics {
    int ascent = 0;     // twips above the baseline
    int descent = 0;    // twips below the baseline (positive)
    int lineHeight = 0; // twips from one baseline to the next
};

class TextMeasurer {
  public:
    virtual ~TextMeasurer() = default;
    /// Advance width of `text` (UTF-8) in `font`, twips.
    virtual int width(const FontSpec& font, std::string_view text) = 0;
    virtual FontMetrics metrics(const FontSpec& font) = 0;
};

} // namespace qr::page
