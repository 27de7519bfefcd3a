#pragma once
// A page's items turned into drawing primitives, shared by every renderer (the PDF writer,
// cairo for PNG, QPainter for the printer and the preview). The geometry of a check box, a rounded
// corner or an underline is decided here once, and the text of the page is gathered into one glyph
// array per font and colour, so a renderer issues one text operation per font per page instead
// of one per cell.
//
// Drawing order of a page: fills (filled rectangles and text backgrounds, in item order), then
// strokes (lines, rectangle borders, check boxes, in item order), then text, then underlines.
// Backgrounds therefore never hide text or rules drawn by an earlier item.

#include "platform/core/bytes_memo.hpp"
#include "platform/engine/page/page.hpp"
#include "platform/output/scaled_font.hpp"

#include <cairo.h>
#include <optional>
#include <variant>
#include <vector>

namespace qr::output {

/// A filled rectangle (twips); `radius` > 0 rounds its corners.
struct FilledBox {
    double x = 0, y = 0, width = 0, height = 0;
    page::Color color = page::kBlack;
    double radius = 0;
};

/// A straight stroke with flat ends, centred on the segment.
struct Segment {
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    double thickness = 0;
    page::Color color = page::kBlack;
};

/// The outline of a rectangle, the pen centred on its edges; `radius` > 0 rounds the corners.
struct OutlinedBox {
    double x = 0, y = 0, width = 0, height = 0;
    double thickness = 0;
    page::Color color = page::kBlack;
    double radius = 0;
};

using Stroke = std::variant<Segment, OutlinedBox>;

/// All text of one font and colour on a page: glyph indices placed at their runs' x and
/// baselines, in the order the items come.
struct GlyphBatch {
    ScaledFont* font = nullptr;
    page::Color color = page::kBlack;
    std::vector<cairo_glyph_t> glyphs;
};

struct PageScene {
    int width = 0; // paper size, twips
    int height = 0;
    std::vector<FilledBox> fills;
    std::vector<Stroke> strokes;
    std::vector<GlyphBatch> text;
    std::vector<FilledBox> underlines;
};

/// Corner radius of a rounded rectangle of that size (twips).
double roundedCornerRadius(double width, double height);

/// Builds scenes page after page, reusing its buffers and its fonts. Not
/// thread-safe; a renderer owns one.
class SceneBuilder {
  public:
    /// The scene of `page`, whose text items index `fonts`. Valid until the next call.
    /// Raises qr::Error for an item that names a font outside `fonts` or a font not installed.
    const PageScene& build(const page::Page& page, const std::vector<page::FontSpec>& fonts);

  private:
    // What a text item draws, wherever it stands: its glyphs and underlined runs relative to
    // its box. A long report repeats most of its texts (quantities, sizes, types, prices) line
    // after line, so each distinct text is decoded and mapped to glyphs once; its copies only
    // move it. Offsets are whole twips and the pen's advance is kept apart, so a copy's glyphs
    // stand exactly where its own decoding would put them.
    struct PieceGlyph {
        unsigned long index;
        std::int64_t dx, dy; // from the box to the run's left end and baseline
        double pen;
    };
    struct PieceRun {
        std::int64_t dx, dy;
        int width;
        double advance;
    };
    struct TextPiece {
        bool complete = false;  // false while being made, and if making it failed
        bool drawsText = false; // it has runs, so it takes its font's batch
        int font = 0;
        page::Color color = page::kBlack;
        std::optional<page::Color> background;
        std::uint32_t firstGlyph = 0, glyphCount = 0; // in m_pieceGlyphs
        std::uint32_t firstRun = 0, runCount = 0;     // underlined runs, in m_pieceRuns
    };

    void addText(std::size_t index, const page::PlacedItem& placed,
                 const std::vector<page::FontSpec>& fonts);
    void makePiece(const page::TextItem& item, const std::vector<page::FontSpec>& fonts,
                   TextPiece& piece);
    void drawPiece(const TextPiece& piece, const page::Rect& box);
    void addRect(const page::RectItem& item);
    void addCheckBox(const page::CheckBoxItem& item);
    GlyphBatch& batchFor(ScaledFont& font, page::Color color);
    ScaledFont& fontAt(int index, const std::vector<page::FontSpec>& fonts);

    FontSet m_fonts;
    // The pages' fonts as last seen and the scaled font of each, found on first use: most
    // pages share their report's fonts, and a text finds its font by index.
    std::vector<page::FontSpec> m_specs;
    std::vector<ScaledFont*> m_fontAt;
    PageScene m_scene;
    // Pieces by the item's encoding without its place and names; bounded, cleared between
    // pages when full and whenever the pages' fonts change.
    BytesMemo<TextPiece> m_pieces{std::size_t{1} << 14, std::size_t{1} << 21};
    std::vector<PieceGlyph> m_pieceGlyphs;
    std::vector<PieceRun> m_pieceRuns;
    TextPiece m_scratchPiece; // for a text met when the memo is full
    std::vector<cairo_glyph_t> m_glyphScratch;
    page::Item m_item;                  // the item being drawn, decoded from its page
    const page::Page* m_page = nullptr; // the page being built and the item's place on it,
    std::size_t m_index = 0;            // to name the item in an error
};

/// Red, green and blue of a colour, each 0..1.
struct Rgb {
    double red, green, blue;
};
Rgb toRgb(page::Color color);

} // namespace qr::output
