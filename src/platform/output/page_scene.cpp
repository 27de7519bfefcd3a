#include "platform/output/page_scene.hpp"

#include "platform/core/error.hpp"
#include "platform/output/output_error.hpp"

#include <algorithm>

namespace qr::output {

namespace {

constexpr double kCheckBoxBorder = 15;                        // twips, a classic one-pixel rule
constexpr double kCheckMarkInset = 0.2;                       // of the square's side, on each side
constexpr double kMinUnderline = 10;                          // twips
constexpr std::size_t kMaxPieceGlyphs = std::size_t{1} << 18; // about 8 MB of remembered glyphs

std::string itemName(const page::TextItem& item) {
    if (item.section.empty())
        return item.control;
    return item.section + "/" + item.control;
}

} // namespace

double roundedCornerRadius(double width, double height) {
    return std::min(std::min(width, height) * 0.25, 144.0);
}

Rgb toRgb(page::Color color) {
    return {((color >> 16) & 0xFF) / 255.0, ((color >> 8) & 0xFF) / 255.0, (color & 0xFF) / 255.0};
}

const PageScene& SceneBuilder::build(const page::Page& page,
                                     const std::vector<page::FontSpec>& fonts) {
    m_scene.width = page.width;
    m_scene.height = page.height;
    m_scene.fills.clear();
    m_scene.strokes.clear();
    m_scene.underlines.clear();
    // Batches keep their glyph buffers from page to page; an empty batch draws nothing.
    for (auto& batch : m_scene.text)
        batch.glyphs.clear();
    if (fonts != m_specs || m_pieces.full() || m_pieceGlyphs.size() > kMaxPieceGlyphs) {
        m_pieces.clear();
        m_pieceGlyphs.clear();
        m_pieceRuns.clear();
    }
    if (fonts != m_specs) {
        m_specs = fonts;
        m_fontAt.assign(fonts.size(), nullptr);
    }

    // One scratch item for the whole page: decoding into it reuses its strings and runs. The
    // names of controls and sections are read only to name an item in an error.
    m_page = &page;
    for (std::size_t i = 0; i < page.items.size(); ++i) {
        m_index = i;
        const page::PlacedItem placed = page.items.placed(i);
        if (placed.kind == page::itemKind<page::TextItem>()) {
            addText(i, placed, fonts);
            continue;
        }
        page.items.decodeInto(i, m_item, page::kDecodeRunTexts);
        const page::Item& item = m_item;
        if (const auto* line = std::get_if<page::LineItem>(&item)) {
            if (line->thickness > 0) {
                m_scene.strokes.push_back(Segment{double(line->x1), double(line->y1),
                                                  double(line->x2), double(line->y2),
                                                  double(line->thickness), line->color});
            }
        } else if (const auto* rect = std::get_if<page::RectItem>(&item)) {
            addRect(*rect);
        } else if (const auto* check = std::get_if<page::CheckBoxItem>(&item)) {
            addCheckBox(*check);
        }
    }
    return m_scene;
}

void SceneBuilder::addText(std::size_t index, const page::PlacedItem& placed,
                           const std::vector<page::FontSpec>& fonts) {
    const std::string_view key(reinterpret_cast<const char*>(placed.content.data()),
                               placed.content.size());
    const auto [at, added] = m_pieces.findOrAdd(placed.flags, key);
    const bool remembered = at != decltype(m_pieces)::kNone;
    TextPiece& piece = remembered ? m_pieces[at] : m_scratchPiece;
    if (!remembered || added || !piece.complete) {
        m_page->items.decodeInto(index, m_item, page::kDecodeRunTexts);
        piece = TextPiece{};
        if (!remembered) {
            // Made only for this item: its glyphs go after the remembered ones and are
            // dropped once drawn.
            const std::size_t glyphs = m_pieceGlyphs.size(), runs = m_pieceRuns.size();
            makePiece(std::get<page::TextItem>(m_item), fonts, piece);
            drawPiece(piece, placed.box);
            m_pieceGlyphs.resize(glyphs);
            m_pieceRuns.resize(runs);
            return;
        }
        makePiece(std::get<page::TextItem>(m_item), fonts, piece);
    }
    drawPiece(piece, placed.box);
}

ScaledFont& SceneBuilder::fontAt(int index, const std::vector<page::FontSpec>& fonts) {
    ScaledFont*& found = m_fontAt[static_cast<std::size_t>(index)];
    if (found == nullptr)
        found = &m_fonts.get(fonts[static_cast<std::size_t>(index)]);
    return *found;
}

void SceneBuilder::makePiece(const page::TextItem& item, const std::vector<page::FontSpec>& fonts,
                             TextPiece& piece) {
    piece.font = item.font;
    piece.color = item.color;
    piece.background = item.background;
    piece.firstGlyph = static_cast<std::uint32_t>(m_pieceGlyphs.size());
    piece.firstRun = static_cast<std::uint32_t>(m_pieceRuns.size());
    piece.drawsText = !item.runs.empty();
    if (piece.drawsText) {
        if (item.font < 0 || static_cast<std::size_t>(item.font) >= fonts.size()) {
            const page::Item named = m_page->items.at(m_index);
            throw Error(errc::kComponent, kRenderSource,
                        "The text item \"" + itemName(std::get<page::TextItem>(named)) +
                            "\" uses font " + std::to_string(item.font) + ", but the pages list " +
                            std::to_string(fonts.size()) + " fonts.");
        }
        ScaledFont& font = fontAt(item.font, fonts);
        for (const auto& run : item.runs) {
            if (run.text.empty())
                continue;
            // In 64 bits: a page from outside may hold boxes and runs far apart.
            const std::int64_t dx = std::int64_t{run.x} - item.box.x;
            const std::int64_t dy = std::int64_t{run.baseline} - item.box.y;
            const double advance = font.appendGlyphs(run.text, 0, 0, m_glyphScratch);
            for (const cairo_glyph_t& glyph : m_glyphScratch)
                m_pieceGlyphs.push_back(PieceGlyph{glyph.index, dx, dy, glyph.x});
            m_glyphScratch.clear();
            if (font.spec().underline)
                m_pieceRuns.push_back(PieceRun{dx, dy, run.width, advance});
        }
    }
    piece.glyphCount = static_cast<std::uint32_t>(m_pieceGlyphs.size()) - piece.firstGlyph;
    piece.runCount = static_cast<std::uint32_t>(m_pieceRuns.size()) - piece.firstRun;
    piece.complete = true;
}

void SceneBuilder::drawPiece(const TextPiece& piece, const page::Rect& box) {
    if (piece.background) {
        m_scene.fills.push_back(FilledBox{double(box.x), double(box.y), double(box.width),
                                          double(box.height), *piece.background, 0});
    }
    if (!piece.drawsText)
        return;
    // The font's batch is taken even for runs without glyphs, so batches keep the order in
    // which the texts first used them.
    ScaledFont& font = *m_fontAt[static_cast<std::size_t>(piece.font)];
    auto& glyphs = batchFor(font, piece.color).glyphs;
    for (std::uint32_t i = 0; i < piece.glyphCount; ++i) {
        const PieceGlyph& g = m_pieceGlyphs[piece.firstGlyph + i];
        glyphs.push_back(
            cairo_glyph_t{g.index, double(box.x + g.dx) + g.pen, double(box.y + g.dy)});
    }
    for (std::uint32_t i = 0; i < piece.runCount; ++i) {
        const PieceRun& run = m_pieceRuns[piece.firstRun + i];
        const double size = font.sizeTwips();
        const double thickness = std::max(font.face().underlineThickness * size, kMinUnderline);
        const std::int64_t baseline = box.y + run.dy;
        const double centre = baseline + font.face().underlinePosition * size;
        const double width = run.width > 0 ? run.width : run.advance;
        m_scene.underlines.push_back(FilledBox{double(box.x + run.dx), centre - thickness / 2,
                                               width, thickness, piece.color, 0});
    }
}

void SceneBuilder::addRect(const page::RectItem& item) {
    const double x = item.box.x, y = item.box.y, w = item.box.width, h = item.box.height;
    const double radius = item.rounded ? roundedCornerRadius(w, h) : 0;
    if (item.fill)
        m_scene.fills.push_back(FilledBox{x, y, w, h, *item.fill, radius});
    if (item.thickness > 0) {
        m_scene.strokes.push_back(
            OutlinedBox{x, y, w, h, double(item.thickness), item.lineColor, radius});
    }
}

void SceneBuilder::addCheckBox(const page::CheckBoxItem& item) {
    const double side = std::min(item.box.width, item.box.height);
    if (side <= 0)
        return;
    const double x = item.box.x, y = item.box.y;
    m_scene.strokes.push_back(OutlinedBox{x, y, side, side, kCheckBoxBorder, page::kBlack, 0});
    if (!item.checked)
        return;
    const double inset = side * kCheckMarkInset;
    const double pen = std::max(kCheckBoxBorder, side * 0.1);
    const double left = x + inset, right = x + side - inset;
    const double top = y + inset, bottom = y + side - inset;
    m_scene.strokes.push_back(Segment{left, top, right, bottom, pen, page::kBlack});
    m_scene.strokes.push_back(Segment{left, bottom, right, top, pen, page::kBlack});
}

GlyphBatch& SceneBuilder::batchFor(ScaledFont& font, page::Color color) {
    for (auto& batch : m_scene.text) {
        if (batch.font == &font && batch.color == color)
            return batch;
    }
    m_scene.text.push_back(GlyphBatch{&font, color, {}});
    return m_scene.text.back();
}

} // namespace qr::output
