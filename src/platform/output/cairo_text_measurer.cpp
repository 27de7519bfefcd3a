#include "platform/output/cairo_text_measurer.hpp"

#include <cmath>

namespace qr::output {

int CairoTextMeasurer::width(const page::FontSpec& font, std::string_view text) {
    return static_cast<int>(std::lround(m_fonts.get(font).advance(text)));
}

page::FontMetrics CairoTextMeasurer::metrics(const page::FontSpec& font) {
    return m_fonts.get(font).metrics();
}

} // namespace qr::output
