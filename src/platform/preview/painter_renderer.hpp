#pragma once
// Page items drawn with QPainter, for the printer and the preview window. The text is drawn as
// glyph runs from the very font files and glyph indices the PDF uses (QRawFont + QGlyphRun), so
// nothing is shaped, measured or aligned again: a printed or previewed page shows the lines of
// the PDF at the same places.

#include "platform/engine/page/page.hpp"
#include "platform/output/page_scene.hpp"

#include <QRawFont>
#include <QTransform>
#include <unordered_map>
#include <vector>

class QPainter;
class QPaintDevice;

namespace qr::output {

/// Draws pages on any QPainter. Not thread-safe; keep one per painting thread. Constructing one
/// makes sure a Qt application exists (ensureGuiApplication).
class PainterRenderer {
  public:
    PainterRenderer();

    /// Draws `page` (text items index `fonts`) in the painter's current coordinates, which must
    /// map twips from the paper's top-left corner onto the device (see twipsToDevice). The
    /// paper is not painted. Raises qr::Error for a bad item, a missing font or a font file Qt
    /// cannot load. The painter's state is restored afterwards.
    void paint(QPainter& painter, const page::Page& page, const std::vector<page::FontSpec>& fonts);

    /// The transform from twips to the pixels of `device` at its logical resolution.
    static QTransform twipsToDevice(const QPaintDevice& device);

  private:
    const QRawFont& rawFont(ScaledFont& font);
    static QRawFont loadRawFont(ScaledFont& font);
    static bool isSameFace(const QRawFont& raw, ScaledFont& font);

    SceneBuilder m_scenes;
    std::unordered_map<const ScaledFont*, QRawFont> m_rawFonts;
};

} // namespace qr::output
