#include "platform/output/pdf_content.hpp"

#include <cmath>
#include <limits>

namespace qr::output::pdf {

namespace {

// Page content is in twips; PDF user space is points.
constexpr double kPointsPerTwip = 1.0 / page::kTwipsPerPoint;
// Positions go out to a hundredth of a twip, text adjustments to a tenth of a thousandth of
// an em: far below anything a printer or a screen shows.
constexpr int kPositionDecimals = 2;
constexpr double kSmallestAdjustment = 0.05;
// The control points of a quarter circle drawn as one Bezier curve.
constexpr double kArcHandle = 0.5522847498;

/// The colour operators already in force on a page, so a colour is set only when it changes.
struct PenState {
    page::Color fill = 0xFFFFFFFF; // not a colour: the first use always sets it
    page::Color stroke = 0xFFFFFFFF;
    double width = -1;
};

void appendColor(std::string& out, page::Color color, const char* op) {
    const Rgb rgb = toRgb(color);
    for (const double part : {rgb.red, rgb.green, rgb.blue}) {
        appendNumber(out, part, 3);
        out += ' ';
    }
    out += op;
    out += '\n';
}

void appendPoint(std::string& out, double x, double y) {
    appendNumber(out, x, kPositionDecimals);
    out += ' ';
    appendNumber(out, y, kPositionDecimals);
    out += ' ';
}

void appendBoxPath(std::string& out, double x, double y, double w, double h, double radius) {
    if (radius <= 0) {
        appendPoint(out, x, y);
        appendPoint(out, w, h);
        out += "re\n";
        return;
    }
    const double k = radius * kArcHandle;
    const double right = x + w, bottom = y + h;
    const auto curve = [&](double x1, double y1, double x2, double y2, double x3, double y3) {
        appendPoint(out, x1, y1);
        appendPoint(out, x2, y2);
        appendPoint(out, x3, y3);
        out += "c\n";
    };
    // Clockwise on the paper from the top edge, as the other renderers draw it.
    appendPoint(out, x + radius, y);
    out += "m\n";
    appendPoint(out, right - radius, y);
    out += "l\n";
    curve(right - radius + k, y, right, y + radius - k, right, y + radius);
    appendPoint(out, right, bottom - radius);
    out += "l\n";
    curve(right, bottom - radius + k, right - radius + k, bottom, right - radius, bottom);
    appendPoint(out, x + radius, bottom);
    out += "l\n";
    curve(x + radius - k, bottom, x, bottom - radius + k, x, bottom - radius);
    appendPoint(out, x, y + radius);
    out += "l\n";
    curve(x, y + radius - k, x + radius - k, y, x + radius, y);
    out += "h\n";
}

void appendFills(std::string& out, const std::vector<FilledBox>& boxes, PenState& pen) {
    for (const FilledBox& box : boxes) {
        if (box.color != pen.fill) {
            appendColor(out, box.color, "rg");
            pen.fill = box.color;
        }
        appendBoxPath(out, box.x, box.y, box.width, box.height, box.radius);
        out += "f\n";
    }
}

void appendStroke(std::string& out, const Stroke& stroke, PenState& pen) {
    const auto setPen = [&](page::Color color, double width) {
        if (color != pen.stroke) {
            appendColor(out, color, "RG");
            pen.stroke = color;
        }
        if (width != pen.width) {
            appendNumber(out, width, kPositionDecimals);
            out += " w\n";
            pen.width = width;
        }
    };
    if (const auto* segment = std::get_if<Segment>(&stroke)) {
        setPen(segment->color, segment->thickness);
        appendPoint(out, segment->x1, segment->y1);
        out += "m ";
        appendPoint(out, segment->x2, segment->y2);
        out += "l S\n";
        return;
    }
    const auto& box = std::get<OutlinedBox>(stroke);
    setPen(box.color, box.thickness);
    appendBoxPath(out, box.x, box.y, box.width, box.height, box.radius);
    out += "S\n";
}

// A glyph number as the two bytes of a literal string, escaped where the string syntax needs
// it (a bare end of line would be read back as a newline). Half the bytes of hex, so less to
// compress.
void appendGlyph(std::string& out, std::uint16_t glyph) {
    for (const auto byte : {static_cast<unsigned char>(glyph >> 8),
                            static_cast<unsigned char>(glyph & 0xFF)}) {
        switch (byte) {
        case '(':
        case ')':
        case '\\':
            out += '\\';
            out += static_cast<char>(byte);
            break;
        case '\r':
            out += "\\r";
            break;
        case '\n':
            out += "\\n";
            break;
        default:
            out += static_cast<char>(byte);
        }
    }
}

/// `value` as written with kPositionDecimals decimals.
double asWritten(double value) {
    static_assert(kPositionDecimals == 2);
    return std::round(value * 100) / 100;
}

/// One text object per batch. Glyphs on one baseline share a text array, each placed where
/// the previous one's advance leaves the pen unless the scene puts it elsewhere, then an
/// adjustment moves it; a new baseline starts a new line matrix.
void appendText(std::string& out, const GlyphBatch& batch, FontResources& fonts, PenState& pen) {
    ScaledFont& scaled = *batch.font;
    const std::size_t index = fonts.indexOf(scaled.face());
    EmbeddedFont& font = fonts.font(index);
    const double size = scaled.sizeTwips();
    if (batch.color != pen.fill) {
        appendColor(out, batch.color, "rg");
        pen.fill = batch.color;
    }
    out += "BT /F";
    appendInteger(out, static_cast<long long>(index + 1));
    out += ' ';
    appendNumber(out, size, 3);
    out += " Tf\n";

    bool open = false;
    double penX = 0;
    double baseline = std::numeric_limits<double>::quiet_NaN();
    for (const cairo_glyph_t& g : batch.glyphs) {
        const auto glyph = static_cast<std::uint16_t>(g.index);
        double width = font.width(glyph);
        if (width < 0) {
            const ScaledFont::Shown* shown = scaled.shown(g.index);
            const char32_t character = glyph != 0 && shown ? shown->character : 0;
            width = font.note(glyph, character, shown ? shown->advance / size * 1000 : 0);
        }
        if (!open || g.y != baseline) {
            if (open)
                out += ")] TJ\n";
            out += "1 0 0 -1 ";
            appendPoint(out, g.x, g.y);
            out += "Tm [(";
            open = true;
            penX = asWritten(g.x);
            baseline = g.y;
        } else {
            const double adjustment = std::round((penX - g.x) * 10000 / size) / 10; // a tenth
            if (std::fabs(adjustment) >= kSmallestAdjustment) {
                out += ')';
                appendNumber(out, adjustment, 1);
                out += '(';
                penX -= adjustment * size / 1000;
            }
        }
        appendGlyph(out, glyph);
        penX += width * size / 1000;
    }
    if (open)
        out += ")] TJ\n";
    out += "ET\n";
}

} // namespace

std::size_t FontResources::indexOf(const FontFace& face) {
    const auto found = m_index.find(&face);
    if (found != m_index.end())
        return found->second;
    m_fonts.push_back(std::make_unique<EmbeddedFont>(face, m_writer.reserve()));
    m_index.emplace(&face, m_fonts.size() - 1);
    return m_fonts.size() - 1;
}

std::string FontResources::dictionary() const {
    std::string out = "<<";
    for (std::size_t i = 0; i < m_fonts.size(); ++i) {
        out += " /F";
        appendInteger(out, static_cast<long long>(i + 1));
        out += ' ';
        appendInteger(out, m_fonts[i]->objectNumber());
        out += " 0 R";
    }
    return out + " >>";
}

void FontResources::write() const {
    for (const auto& font : m_fonts)
        font->write(m_writer);
}

void appendContent(const PageScene& scene, FontResources& fonts, std::string& out) {
    // Twips from the top-left corner: scaled to points and turned upside down once.
    appendNumber(out, kPointsPerTwip, 4);
    out += " 0 0 ";
    appendNumber(out, -kPointsPerTwip, 4);
    out += " 0 ";
    appendNumber(out, scene.height * kPointsPerTwip, 3);
    out += " cm\n";
    PenState pen;
    appendFills(out, scene.fills, pen);
    for (const Stroke& stroke : scene.strokes)
        appendStroke(out, stroke, pen);
    for (const GlyphBatch& batch : scene.text) {
        if (!batch.glyphs.empty())
            appendText(out, batch, fonts, pen);
    }
    appendFills(out, scene.underlines, pen);
}

} // namespace qr::output::pdf
