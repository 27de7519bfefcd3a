#include "platform/output/cairo_renderer.hpp"

#include <cmath>

namespace qr::output {

namespace {

void setColor(cairo_t* cr, page::Color color) {
    const Rgb rgb = toRgb(color);
    cairo_set_source_rgb(cr, rgb.red, rgb.green, rgb.blue);
}

void boxPath(cairo_t* cr, double x, double y, double w, double h, double radius) {
    if (radius <= 0) {
        cairo_rectangle(cr, x, y, w, h);
        return;
    }
    cairo_new_sub_path(cr);
    cairo_arc(cr, x + w - radius, y + radius, radius, -M_PI / 2, 0);
    cairo_arc(cr, x + w - radius, y + h - radius, radius, 0, M_PI / 2);
    cairo_arc(cr, x + radius, y + h - radius, radius, M_PI / 2, M_PI);
    cairo_arc(cr, x + radius, y + radius, radius, M_PI, 3 * M_PI / 2);
    cairo_close_path(cr);
}

void fillBoxes(cairo_t* cr, const std::vector<FilledBox>& boxes) {
    for (const auto& box : boxes) {
        setColor(cr, box.color);
        boxPath(cr, box.x, box.y, box.width, box.height, box.radius);
        cairo_fill(cr);
    }
}

void drawStroke(cairo_t* cr, const Stroke& stroke) {
    if (const auto* segment = std::get_if<Segment>(&stroke)) {
        setColor(cr, segment->color);
        cairo_set_line_width(cr, segment->thickness);
        cairo_move_to(cr, segment->x1, segment->y1);
        cairo_line_to(cr, segment->x2, segment->y2);
    } else {
        const auto& box = std::get<OutlinedBox>(stroke);
        setColor(cr, box.color);
        cairo_set_line_width(cr, box.thickness);
        boxPath(cr, box.x, box.y, box.width, box.height, box.radius);
    }
    cairo_stroke(cr);
}

} // namespace

cairo_font_options_t* unhintedFontOptions() {
    // Made once and shared: font options are plain values cairo copies when it uses them.
    static cairo_font_options_t* options = [] {
        cairo_font_options_t* o = cairo_font_options_create();
        cairo_font_options_set_hint_style(o, CAIRO_HINT_STYLE_NONE);
        cairo_font_options_set_hint_metrics(o, CAIRO_HINT_METRICS_OFF);
        return o;
    }();
    return options;
}

void drawScene(cairo_t* cr, const PageScene& scene) {
    cairo_save(cr);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_MITER);
    fillBoxes(cr, scene.fills);
    for (const auto& stroke : scene.strokes)
        drawStroke(cr, stroke);

    cairo_set_font_options(cr, unhintedFontOptions());
    for (const auto& batch : scene.text) {
        if (batch.glyphs.empty())
            continue;
        setColor(cr, batch.color);
        cairo_set_font_face(cr, batch.font->face().cairoFace);
        cairo_set_font_size(cr, batch.font->sizeTwips());
        cairo_show_glyphs(cr, batch.glyphs.data(), static_cast<int>(batch.glyphs.size()));
    }
    fillBoxes(cr, scene.underlines);
    cairo_restore(cr);
}

} // namespace qr::output
