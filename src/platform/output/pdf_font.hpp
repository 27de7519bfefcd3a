#pragma once
// Fonts inside a PDF. Every report font is embedded, so the document looks the same on any
// machine: a TrueType face is cut down to the glyphs the document shows (glyph numbers kept,
// the rest left empty), another font file (CFF outlines) goes in whole. Text is shown by glyph
// number (Identity-H), with each glyph's advance in the font's width table and a map from
// glyphs back to characters, so text can be searched, selected and copied.

#include "platform/output/font_library.hpp"
#include "platform/output/pdf_objects.hpp"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace qr::output::pdf {

/// The tables of one face of a font file (sfnt: TrueType, OpenType, or a face of a collection).
class FontProgram {
  public:
    /// Reads face `index` of the file at `path`. Raises qr::Error naming the file when it
    /// cannot be read or is not a font file this writer understands.
    FontProgram(const std::string& path, int index);

    /// True for TrueType outlines ("glyf"), which subset() can cut down.
    bool hasTrueTypeOutlines() const;
    /// The face's PostScript name, or empty when the file names none usable.
    std::string postScriptName() const;

    /// Metrics for the font descriptor, in thousandths of an em.
    struct Metrics {
        double left = 0, bottom = 0, right = 1000, top = 1000; // bounding box of all glyphs
        double ascent = 800, descent = -200, capHeight = 700;
        double italicAngle = 0;
    };
    Metrics metrics() const;

    /// A TrueType font of the face holding the outlines of `glyphs`, of glyph 0 and of every
    /// glyph those are built from; every other glyph is kept, empty, so numbers do not change.
    std::string subset(const std::set<std::uint16_t>& glyphs) const;
    /// The face's bytes as one font file (a face of a collection taken out of it).
    std::string whole() const;

  private:
    struct Table {
        std::uint32_t offset = 0, length = 0;
    };
    const Table* find(const char* tag) const;
    std::string_view bytes(const Table& table) const;
    [[noreturn]] void malformed(const std::string& what) const;

    std::string m_path;
    std::string m_data;
    std::uint32_t m_version = 0;
    std::map<std::string, Table> m_tables;
};

/// One face as the PDF font its text is shown in. Glyphs are noted as the pages show them;
/// the font's objects are written once the document is complete.
class EmbeddedFont {
  public:
    /// `objectNumber` is the number the pages' resources refer to.
    EmbeddedFont(const FontFace& face, int objectNumber);

    const FontFace& face() const { return *m_face; }
    int objectNumber() const { return m_objectNumber; }

    /// The advance of `glyph` in thousandths of an em as written in the width table, or a
    /// negative value while the glyph has not been noted.
    double width(std::uint16_t glyph) const {
        return glyph < m_widths.size() ? m_widths[glyph] : -1;
    }
    /// Notes that `glyph` is shown for `character` (0 when it stands for none) with an advance
    /// of `width` thousandths of an em. Returns the width as the width table will hold it.
    double note(std::uint16_t glyph, char32_t character, double width);

    /// Writes the font's objects (the font, its descendant, descriptor, program and character
    /// map). Raises qr::Error naming the font file when it cannot be read.
    void write(ObjectWriter& writer) const;

  private:
    const FontFace* m_face;
    int m_objectNumber;
    std::vector<double> m_widths;       // by glyph; negative when not shown
    std::map<std::uint16_t, char32_t> m_characters;
};

} // namespace qr::output::pdf
