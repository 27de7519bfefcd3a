#include "platform/preview/painter_renderer.hpp"

#include "platform/core/error.hpp"
#include "platform/output/output_error.hpp"
#include "platform/preview/gui_application.hpp"

#include <QFont>
#include <QGlyphRun>
#include <QPaintDevice>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace qr::output {

namespace {

QColor toQColor(page::Color color) {
    return QColor::fromRgb((color >> 16) & 0xFF, (color >> 8) & 0xFF, color & 0xFF);
}

void fillBoxes(QPainter& painter, const std::vector<FilledBox>& boxes) {
    painter.setPen(Qt::NoPen);
    for (const auto& box : boxes) {
        painter.setBrush(toQColor(box.color));
        const QRectF rect(box.x, box.y, box.width, box.height);
        if (box.radius > 0) {
            painter.drawRoundedRect(rect, box.radius, box.radius, Qt::AbsoluteSize);
        } else {
            painter.drawRect(rect);
        }
    }
}

void drawStroke(QPainter& painter, const Stroke& stroke) {
    QPen pen;
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setBrush(Qt::NoBrush);
    if (const auto* segment = std::get_if<Segment>(&stroke)) {
        pen.setColor(toQColor(segment->color));
        pen.setWidthF(segment->thickness);
        painter.setPen(pen);
        painter.drawLine(QPointF(segment->x1, segment->y1), QPointF(segment->x2, segment->y2));
        return;
    }
    const auto& box = std::get<OutlinedBox>(stroke);
    pen.setColor(toQColor(box.color));
    pen.setWidthF(box.thickness);
    painter.setPen(pen);
    const QRectF rect(box.x, box.y, box.width, box.height);
    if (box.radius > 0) {
        painter.drawRoundedRect(rect, box.radius, box.radius, Qt::AbsoluteSize);
    } else {
        painter.drawRect(rect);
    }
}

} // namespace

PainterRenderer::PainterRenderer() {
    ensureGuiApplication();
}

QTransform PainterRenderer::twipsToDevice(const QPaintDevice& device) {
    return QTransform::fromScale(double(device.logicalDpiX()) / page::kTwipsPerInch,
                                 double(device.logicalDpiY()) / page::kTwipsPerInch);
}

const QRawFont& PainterRenderer::rawFont(ScaledFont& font) {
    auto found = m_rawFonts.find(&font);
    if (found == m_rawFonts.end())
        found = m_rawFonts.emplace(&font, loadRawFont(font)).first;
    return found->second;
}

QRawFont PainterRenderer::loadRawFont(ScaledFont& font) {
    // The pixel size is the font size in twips: the painter's transform takes twips to the
    // device, exactly as cairo's does. Qt's own handle on the installed font is preferred,
    // because Qt's PDF engine (the way print jobs reach CUPS) embeds only fonts it knows by
    // file and draws any other text as outlines; it is used only when it is provably the face
    // the glyphs came from.
    QFont wanted(QString::fromStdString(font.face().family));
    wanted.setBold(font.spec().bold);
    wanted.setItalic(font.spec().italic);
    wanted.setHintingPreference(QFont::PreferNoHinting);
    wanted.setStyleStrategy(QFont::NoFontMerging);
    wanted.setPixelSize(100);
    QRawFont installed = QRawFont::fromFont(wanted);
    if (installed.isValid()) {
        installed.setPixelSize(font.sizeTwips());
        if (isSameFace(installed, font))
            return installed;
    }
    QRawFont fromFile(QString::fromStdString(font.face().file), font.sizeTwips(),
                      QFont::PreferNoHinting);
    if (!fromFile.isValid()) {
        throw Error(errc::kComponent, kFontsSource,
                    "The font file \"" + font.face().file + "\" for \"" + font.spec().family +
                        "\" could not be loaded for painting.");
    }
    return fromFile;
}

bool PainterRenderer::isSameFace(const QRawFont& raw, ScaledFont& font) {
    constexpr double kAdvanceTolerance = 0.02;
    if (raw.familyName().toStdString() != font.face().family)
        return false;
    if ((raw.style() != QFont::StyleNormal) != font.spec().italic)
        return false;
    if ((raw.weight() >= QFont::DemiBold) != font.spec().bold)
        return false;
    // Same glyph indices and advances for a sample of characters: the same font file. Qt
    // reports advances truncated to 1/64 of its pixel (here a twip); a different face differs
    // by whole twips.
    static const char kSample[] = "AaBbGgMmQqWw0123456789$.,-/\"";
    std::vector<cairo_glyph_t> glyphs;
    const double total = font.appendGlyphs(kSample, 0, 0, glyphs);
    const QList<quint32> indexes = raw.glyphIndexesForString(QString::fromLatin1(kSample));
    if (indexes.size() != static_cast<qsizetype>(glyphs.size()))
        return false;
    const QList<QPointF> advances =
        raw.advancesForGlyphIndexes(indexes, QRawFont::UseDesignMetrics);
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        if (indexes[qsizetype(i)] != glyphs[i].index)
            return false;
        const double next = i + 1 < glyphs.size() ? glyphs[i + 1].x : total;
        if (std::abs(advances[qsizetype(i)].x() - (next - glyphs[i].x)) > kAdvanceTolerance)
            return false;
    }
    return true;
}

void PainterRenderer::paint(QPainter& painter, const page::Page& page,
                            const std::vector<page::FontSpec>& fonts) {
    const PageScene& scene = m_scenes.build(page, fonts);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setRenderHint(QPainter::TextAntialiasing, true);
    fillBoxes(painter, scene.fills);
    for (const auto& stroke : scene.strokes)
        drawStroke(painter, stroke);

    QList<quint32> indexes;
    QList<QPointF> positions;
    for (const auto& batch : scene.text) {
        if (batch.glyphs.empty())
            continue;
        indexes.clear();
        positions.clear();
        indexes.reserve(static_cast<qsizetype>(batch.glyphs.size()));
        positions.reserve(static_cast<qsizetype>(batch.glyphs.size()));
        for (const auto& glyph : batch.glyphs) {
            indexes.push_back(static_cast<quint32>(glyph.index));
            positions.push_back(QPointF(glyph.x, glyph.y));
        }
        QGlyphRun run;
        run.setRawFont(rawFont(*batch.font));
        run.setGlyphIndexes(indexes);
        run.setPositions(positions);
        painter.setPen(toQColor(batch.color));
        painter.drawGlyphRun(QPointF(0, 0), run);
    }
    fillBoxes(painter, scene.underlines);
    painter.restore();
}

} // namespace qr::output
