#include "platform/output/page_scene.hpp"

#include "platform/core/error.hpp"
#include "platform/output/output_error.hpp"

#include <algorithm>

namespace qr::output {

namespace {

constexpr double kCheckBoxBorder = 15;  // twips, a classic one-pixel rule
constexpr double kCheckMarkInset = 0.2; // of the square's side, on each side
constexpr double kMinUnderline = 10;    // twips

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
    if (fonts != m_specs) {
        m_specs = fonts;
        m_fontAt.assign(fonts.size(), nullptr);
    }

    // One scratch item for the whole page: decoding into it reuses its strings and runs. The
    // names of controls and sections are read only to name an item in an error.
    m_page = &page;
    for (std::size_t i = 0; i < page.items.size(); ++i) {
        m_index = i;
        page.items.decodeInto(i, m_item, page::kDecodeRunTexts);
        const page::Item& item = m_item;
        if (const auto* text = std::get_if<page::TextItem>(&item)) {
            addText(*text, fonts);
        } else if (const auto* line = std::get_if<page::LineItem>(&item)) {
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

void SceneBuilder::addText(const page::TextItem& item, const std::vector<page::FontSpec>& fonts) {
    if (item.background) {
        m_scene.fills.push_back(FilledBox{double(item.box.x), double(item.box.y),
                                          double(item.box.width), double(item.box.height),
                                          *item.background, 0});
    }
    if (item.runs.empty())
        return;
    if (item.font < 0 || static_cast<std::size_t>(item.font) >= fonts.size()) {
        const page::Item named = m_page->items.at(m_index);
        throw Error(errc::kComponent, kRenderSource,
                    "The text item \"" + itemName(std::get<page::TextItem>(named)) +
                        "\" uses font " + std::to_string(item.font) + ", but the pages list " +
                        std::to_string(fonts.size()) + " fonts.");
    }
    ScaledFont*& found = m_fontAt[static_cast<std::size_t>(item.font)];
    if (found == nullptr)
        found = &m_fonts.get(fonts[static_cast<std::size_t>(item.font)]);
    ScaledFont& font = *found;
    GlyphBatch& batch = batchFor(font, item.color);
    for (const auto& run : item.runs) {
        if (run.text.empty())
            continue;
        const double advance = font.appendGlyphs(run.text, run.x, run.baseline, batch.glyphs);
        if (font.spec().underline) {
            const double size = font.sizeTwips();
            const double thickness = std::max(font.face().underlineThickness * size, kMinUnderline);
            const double centre = run.baseline + font.face().underlinePosition * size;
            const double width = run.width > 0 ? run.width : advance;
            m_scene.underlines.push_back(
                FilledBox{double(run.x), centre - thickness / 2, width, thickness, item.color, 0});
        }
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
