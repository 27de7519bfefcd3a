#include "platform/output/font_library.hpp"

#include "platform/core/error.hpp"
#include "platform/core/text.hpp"
#include "platform/output/output_error.hpp"

#include <algorithm>
#include <cairo-ft.h>
#include <cctype>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include <map>
#include <memory>
#include <mutex>
#include <tuple>
#include FT_FREETYPE_H

namespace qr::output {

namespace {

// Owns a fontconfig pattern for the length of one lookup.
struct PatternHandle {
    FcPattern* pattern;
    explicit PatternHandle(FcPattern* p) : pattern(p) {}
    ~PatternHandle() {
        if (pattern)
            FcPatternDestroy(pattern);
    }
    PatternHandle(const PatternHandle&) = delete;
    PatternHandle& operator=(const PatternHandle&) = delete;
};

bool hasFamily(FcPattern* match, const std::string& wanted) {
    const std::string wantedLower = lowerCase(wanted);
    FcChar8* value = nullptr;
    for (int n = 0; FcPatternGetString(match, FC_FAMILY, n, &value) == FcResultMatch; ++n) {
        if (lowerCase(reinterpret_cast<const char*>(value)) == wantedLower)
            return true;
    }
    return false;
}

[[noreturn]] void fontNotFound(const page::FontSpec& font, const std::string& family) {
    std::string description = "The font \"" + font.family + "\"";
    if (lowerCase(family) != lowerCase(font.family))
        description += " (drawn as \"" + family + "\")";
    description += " is not installed.";
    throw Error(errc::kComponent, kFontsSource, description);
}

// Reads the underline placement from the font file itself, so every renderer underlines at
// the place the font's designer chose.
void readUnderlineMetrics(FontFace& face) {
    cairo_matrix_t size;
    cairo_matrix_init_scale(&size, 1000, 1000);
    cairo_matrix_t identity;
    cairo_matrix_init_identity(&identity);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_scaled_font_t* scaled =
        cairo_scaled_font_create(face.cairoFace, &size, &identity, options);
    cairo_font_options_destroy(options);
    if (FT_Face ft = cairo_ft_scaled_font_lock_face(scaled)) {
        if (ft->units_per_EM > 0 && ft->underline_thickness > 0) {
            face.underlinePosition =
                -static_cast<double>(ft->underline_position) / ft->units_per_EM;
            face.underlineThickness =
                static_cast<double>(ft->underline_thickness) / ft->units_per_EM;
        }
        cairo_ft_scaled_font_unlock_face(scaled);
    }
    cairo_scaled_font_destroy(scaled);
}

std::unique_ptr<FontFace> loadFace(const page::FontSpec& font) {
    const std::string family = substituteFamily(font.family);
    if (family.empty())
        throw Error(errc::kComponent, kFontsSource, "A font has no family name.");

    PatternHandle request(FcPatternCreate());
    FcPatternAddString(request.pattern, FC_FAMILY,
                       reinterpret_cast<const FcChar8*>(family.c_str()));
    FcPatternAddInteger(request.pattern, FC_WEIGHT, font.bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(request.pattern, FC_SLANT, font.italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcConfigSubstitute(nullptr, request.pattern, FcMatchPattern);
    FcDefaultSubstitute(request.pattern);
    FcResult result = FcResultNoMatch;
    PatternHandle match(FcFontMatch(nullptr, request.pattern, &result));
    if (!match.pattern || !hasFamily(match.pattern, family))
        fontNotFound(font, family);

    FcChar8* file = nullptr;
    int index = 0;
    if (FcPatternGetString(match.pattern, FC_FILE, 0, &file) != FcResultMatch) {
        fontNotFound(font, family);
    }
    FcPatternGetInteger(match.pattern, FC_INDEX, 0, &index);

    auto face = std::make_unique<FontFace>();
    face->requestedFamily = font.family;
    face->family = family;
    face->file = reinterpret_cast<const char*>(file);
    face->index = index;
    face->bold = font.bold;
    face->italic = font.italic;

    // The face is made from the file alone, with hinting off: outlines and advances then scale
    // linearly, so a width measured at one size and resolution holds at every other.
    PatternHandle facePattern(FcPatternCreate());
    FcPatternAddString(facePattern.pattern, FC_FILE, file);
    FcPatternAddInteger(facePattern.pattern, FC_INDEX, index);
    FcPatternAddBool(facePattern.pattern, FC_HINTING, FcFalse);
    face->cairoFace = cairo_ft_font_face_create_for_pattern(facePattern.pattern);
    if (cairo_font_face_status(face->cairoFace) != CAIRO_STATUS_SUCCESS) {
        throw Error(errc::kComponent, kFontsSource,
                    "The font file \"" + face->file + "\" for \"" + font.family +
                        "\" could not be opened: " +
                        cairo_status_to_string(cairo_font_face_status(face->cairoFace)));
    }
    readUnderlineMetrics(*face);
    return face;
}

struct FaceRegistry {
    std::mutex mutex;
    std::map<std::tuple<std::string, bool, bool>, std::unique_ptr<FontFace>> faces;
};

FaceRegistry& registry() {
    // Never destroyed: faces are handed out by reference for the life of the process.
    static auto* instance = new FaceRegistry;
    return *instance;
}

} // namespace

std::string substituteFamily(std::string_view family) {
    static const std::pair<const char*, const char*> kSubstitutes[] = {
        {"arial", "Liberation Sans"},
        {"helvetica", "Liberation Sans"},
        {"times new roman", "Liberation Serif"},
        {"courier new", "Liberation Mono"},
    };
    const std::string key = lowerCase(family);
    for (const auto& [name, substitute] : kSubstitutes) {
        if (key == name)
            return substitute;
    }
    return std::string(family);
}

const FontFace& findFontFace(const page::FontSpec& font) {
    auto& r = registry();
    std::lock_guard lock(r.mutex);
    auto key = std::make_tuple(lowerCase(font.family), font.bold, font.italic);
    auto found = r.faces.find(key);
    if (found == r.faces.end())
        found = r.faces.emplace(std::move(key), loadFace(font)).first;
    return *found->second;
}

} // namespace qr::output
