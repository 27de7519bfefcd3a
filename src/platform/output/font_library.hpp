#pragma once
// Where report fonts come from. A design names a font the way the classic reports did
// ("Arial", bold, 10 pt); this library finds the font file that stands in for it (the metric-
// compatible Liberation families) through fontconfig and makes one cairo face per file and style.
// The measurer, the cairo renderers and the QPainter renderer all draw from these files, so a
// width measured once is the width drawn everywhere.

#include "platform/engine/page/page.hpp"

#include <cairo.h>
#include <string>
#include <string_view>

namespace qr::output {

/// One resolved font face: the file drawn and the cairo face made from it. Faces live for the
/// whole process and are never freed, so pointers and references to them stay valid.
struct FontFace {
    std::string requestedFamily; // as the design named it ("Arial")
    std::string family;          // the family drawn ("Liberation Sans")
    std::string file;            // path of the font file
    int index = 0;               // face index inside the file
    bool bold = false;
    bool italic = false;
    cairo_font_face_t* cairoFace = nullptr;
    double underlinePosition = 0.1;   // below the baseline, in ems
    double underlineThickness = 0.07; // in ems
};

/// The family drawn for a design's family name: "Arial" -> "Liberation Sans",
/// "Times New Roman" -> "Liberation Serif", "Courier New" -> "Liberation Mono" (case does not
/// matter); any other name is returned unchanged.
std::string substituteFamily(std::string_view family);

/// The face for the family, weight and slant of `font` (its size and underline flag do not
/// matter). Looked up once per family and style; safe to call from any thread.
/// Raises qr::Error naming the font when no installed font has that family.
const FontFace& findFontFace(const page::FontSpec& font);

} // namespace qr::output
