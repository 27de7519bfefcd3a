#pragma once
// The preview's page area: every page of the report one under another, scrolled continuously,
// at the zoom the user chose. Pages are painted when they come into view and only the part
// that is exposed, straight from their items with the printer's renderer; nothing is drawn
// ahead, so a report of thousands of pages opens as fast as one of a few.

#include "platform/engine/page/page.hpp"
#include "platform/preview/painter_renderer.hpp"
#include "platform/preview/preview_layout.hpp"
#include "platform/preview/preview_search.hpp"

#include <QAbstractScrollArea>
#include <QColor>
#include <QRect>
#include <functional>
#include <vector>

namespace qr::output {

/// Scrolls through `pages`, which must outlive the view. Not a QObject with signals of its
/// own: the window listens through the callbacks below.
class PageView : public QAbstractScrollArea {
  public:
    /// Colour of found text, and of the match the find bar is on.
    static constexpr QRgb kMatchColor = 0xFFFFE14D;
    static constexpr QRgb kCurrentMatchColor = 0xFFFF9A1F;
    static constexpr QRgb kBackgroundColor = 0xFF6E7178;

    PageView(const page::Pages& pages, PainterRenderer& renderer, QWidget* parent = nullptr);

    /// Called after the current page changes, by navigation or by scrolling.
    std::function<void()> onCurrentPageChanged;
    /// Called after the zoom (or, in a fit mode, the scale) changes.
    std::function<void()> onZoomChanged;

    std::size_t pageCount() const { return m_pages.pages.size(); }
    /// The page being read (from 0): the one last navigated to, or after scrolling the one
    /// showing most of its height. 0 without pages.
    std::size_t currentPage() const { return m_current; }
    /// Scrolls the top of page `index` (held within the pages) to the top of the view.
    void goToPage(std::size_t index);

    Zoom zoom() const { return m_zoom; }
    /// The scale shown, as a percentage of the paper's own size (also in the fit modes).
    int zoomPercent() const;
    /// Shows pages at `zoom`, keeping the place being read in view.
    void setZoom(const Zoom& zoom);
    void zoomIn();
    void zoomOut();

    /// The matches to highlight (in reading order) and the one to mark as current (-1: none).
    void setMatches(std::vector<TextMatch> matches);
    const std::vector<TextMatch>& matches() const { return m_matches; }
    /// Marks match `index` as current and scrolls it into view.
    void showMatch(int index);
    int currentMatch() const { return m_currentMatch; }

    /// Where page `index`, or match `index`, is in the viewport's coordinates right now.
    QRect pageRectInView(std::size_t index) const;
    QRect matchRectInView(int index) const;
    /// How many times a page has been painted so far (for checking that painting is on demand).
    std::size_t pagesPainted() const { return m_pagesPainted; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

  private:
    std::vector<PaperSize> papers() const;
    void relayout();
    void setCurrent(std::size_t index);
    void paintPage(QPainter& painter, std::size_t index, const QRect& exposed);
    void paintMatches(QPainter& painter, std::size_t index);
    QRectF matchRectInPage(const TextMatch& match, const QRect& pageRect) const;

    const page::Pages& m_pages;
    PainterRenderer& m_renderer;
    std::vector<PaperSize> m_papers;
    PageColumn m_column;
    Zoom m_zoom;
    std::size_t m_current = 0;
    bool m_navigating = false; // the scroll comes from goToPage, not from the user
    int m_wheelAngle = 0;      // Ctrl + wheel turns not yet worth a whole zoom step
    std::vector<TextMatch> m_matches;
    int m_currentMatch = -1;
    std::size_t m_pagesPainted = 0;
};

} // namespace qr::output
