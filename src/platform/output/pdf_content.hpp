#pragma once
// A page scene as PDF page content: the drawing operators of its fills, strokes, text and
// underlines, in the order every renderer draws them, in a user space of twips from the
// paper's top-left corner.

#include "platform/output/page_scene.hpp"
#include "platform/output/pdf_font.hpp"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace qr::output::pdf {

/// The fonts a document shows, one embedded font per face, named /F1, /F2, ... in the order
/// the pages first use them.
class FontResources {
  public:
    explicit FontResources(ObjectWriter& writer) : m_writer(writer) {}

    /// The position of `face`'s font (its name is "F" and the position plus one), made on
    /// first use.
    std::size_t indexOf(const FontFace& face);
    EmbeddedFont& font(std::size_t index) { return *m_fonts[index]; }

    /// The resource dictionary entry of the fonts, "<< /F1 7 0 R ... >>".
    std::string dictionary() const;
    /// Writes every font's objects.
    void write() const;

  private:
    ObjectWriter& m_writer;
    std::vector<std::unique_ptr<EmbeddedFont>> m_fonts;
    std::unordered_map<const FontFace*, std::size_t> m_index;
};

/// Appends the content of `scene` to `out`. Glyphs are noted in their fonts as they go out.
void appendContent(const PageScene& scene, FontResources& fonts, std::string& out);

} // namespace qr::output::pdf
