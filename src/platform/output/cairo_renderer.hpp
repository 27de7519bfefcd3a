#pragma once
// Draws page scenes on a cairo context: the drawing routine behind the PNG pictures. The PDF
// writer turns the same scenes into page content, so both show the same thing.

#include "platform/output/page_scene.hpp"

#include <cairo.h>

namespace qr::output {

/// Draws `scene` on `cr`, whose user space must be twips from the paper's top-left corner.
/// Each glyph batch is one cairo_show_glyphs call. Leaves the paper itself unpainted.
void drawScene(cairo_t* cr, const PageScene& scene);

/// The cairo font options every renderer draws with: hinting off, as the text was measured.
cairo_font_options_t* unhintedFontOptions();

} // namespace qr::output
