#include "platform/preview/preview_page_view.hpp"

#include "platform/core/error.hpp"

#include <QKeyEvent>
#include <QPaintEngine>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace qr::output {

namespace {

constexpr int kWheelStep = 120; // one notch of a mouse wheel
constexpr int kShadowOffset = 2;
constexpr QRgb kShadowColor = 0x50000000;
constexpr QRgb kPaperColor = 0xFFFFFFFF;
constexpr QRgb kBrokenPageColor = 0xFFB00020;

} // namespace

PageView::PageView(const page::Pages& pages, PainterRenderer& renderer, QWidget* parent)
    : QAbstractScrollArea(parent), m_pages(pages), m_renderer(renderer), m_papers(papers()) {
    setObjectName("pages");
    setFocusPolicy(Qt::StrongFocus);
    // An ever-present scroll bar keeps "fit width" from flickering between two widths.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    verticalScrollBar()->setSingleStep(40);
    horizontalScrollBar()->setSingleStep(40);
    relayout();
}

std::vector<PaperSize> PageView::papers() const {
    std::vector<PaperSize> sizes;
    sizes.reserve(m_pages.pages.size());
    for (const auto& p : m_pages.pages)
        sizes.push_back({std::max(p.width, 1), std::max(p.height, 1)});
    return sizes;
}

int PageView::zoomPercent() const {
    const double hundred = viewport()->logicalDpiX() / double(page::kTwipsPerInch);
    return int(std::lround(m_column.scale() / hundred * 100));
}

void PageView::setZoom(const Zoom& zoom) {
    Zoom wanted = zoom;
    if (wanted.mode == ZoomMode::Percent)
        wanted.percent = clampZoomPercent(wanted.percent);
    if (wanted == m_zoom)
        return;
    m_zoom = wanted;
    relayout();
}

void PageView::zoomIn() {
    setZoom({ZoomMode::Percent, zoomInStep(zoomPercent())});
}

void PageView::zoomOut() {
    setZoom({ZoomMode::Percent, zoomOutStep(zoomPercent())});
}

void PageView::relayout() {
    const double oldScale = m_column.scale();
    // Keep the line at the top of the view where it is: same page, same part of it.
    const int oldTop = verticalScrollBar()->value();
    std::size_t anchor = 0;
    double within = 0;
    if (m_column.pageCount() > 0) {
        anchor = std::min(m_column.pagesIn(oldTop, 1).first, m_column.pageCount() - 1);
        const PixelRect& r = m_column.page(anchor);
        within = double(oldTop - r.y) / r.height;
    }
    const int oldCentreX = horizontalScrollBar()->value() + viewport()->width() / 2;
    const double oldWidth = std::max(1, m_column.width());

    const ViewGeometry view{viewport()->width(), viewport()->height(),
                            double(viewport()->logicalDpiX())};
    m_column.layout(m_papers, zoomScale(m_zoom, m_papers, view), view.width);

    m_navigating = true;
    verticalScrollBar()->setRange(0, std::max(0, m_column.height() - view.height));
    verticalScrollBar()->setPageStep(view.height);
    horizontalScrollBar()->setRange(0, std::max(0, m_column.width() - view.width));
    horizontalScrollBar()->setPageStep(view.width);
    if (m_column.pageCount() > 0) {
        const PixelRect& r = m_column.page(anchor);
        verticalScrollBar()->setValue(r.y + int(std::lround(within * r.height)));
    }
    horizontalScrollBar()->setValue(int(std::lround(oldCentreX / oldWidth * m_column.width())) -
                                    view.width / 2);
    m_navigating = false;
    viewport()->update();
    if (oldScale != m_column.scale() && onZoomChanged)
        onZoomChanged();
}

void PageView::setCurrent(std::size_t index) {
    if (index == m_current)
        return;
    m_current = index;
    if (onCurrentPageChanged)
        onCurrentPageChanged();
}

void PageView::goToPage(std::size_t index) {
    if (m_column.pageCount() == 0)
        return;
    index = std::min(index, m_column.pageCount() - 1);
    m_navigating = true;
    verticalScrollBar()->setValue(m_column.topOf(index));
    m_navigating = false;
    setCurrent(index);
}

void PageView::setMatches(std::vector<TextMatch> matches) {
    m_matches = std::move(matches);
    m_currentMatch = -1;
    viewport()->update();
}

void PageView::showMatch(int index) {
    if (index < 0 || index >= int(m_matches.size())) {
        m_currentMatch = -1;
        viewport()->update();
        return;
    }
    m_currentMatch = index;
    const QRect box = matchRectInView(index);
    const QRect view = viewport()->rect();
    m_navigating = true;
    if (box.top() < 0 || box.bottom() > view.bottom())
        verticalScrollBar()->setValue(verticalScrollBar()->value() + box.top() - view.height() / 3);
    if (box.left() < 0 || box.right() > view.right()) {
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() + box.center().x() -
                                        view.width() / 2);
    }
    m_navigating = false;
    setCurrent(m_matches[std::size_t(index)].page);
    viewport()->update();
}

QRect PageView::pageRectInView(std::size_t index) const {
    if (index >= m_column.pageCount())
        return {};
    const PixelRect& r = m_column.page(index);
    return QRect(r.x - horizontalScrollBar()->value(), r.y - verticalScrollBar()->value(), r.width,
                 r.height);
}

QRectF PageView::matchRectInPage(const TextMatch& match, const QRect& pageRect) const {
    const double scale = m_column.scale();
    // A pixel more on each side, so a match in small type still shows.
    return QRectF(pageRect.x() + match.x * scale - 1, pageRect.y() + match.y * scale - 1,
                  match.width * scale + 2, match.height * scale + 2);
}

QRect PageView::matchRectInView(int index) const {
    if (index < 0 || index >= int(m_matches.size()))
        return {};
    const TextMatch& match = m_matches[std::size_t(index)];
    return matchRectInPage(match, pageRectInView(match.page)).toAlignedRect();
}

void PageView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const QRect exposed = event->rect();
    painter.fillRect(exposed, QColor::fromRgba(kBackgroundColor));
    const auto [first, last] =
        m_column.pagesIn(verticalScrollBar()->value() + exposed.top(), exposed.height());
    for (std::size_t i = first; i < last; ++i)
        paintPage(painter, i, exposed);
}

void PageView::paintPage(QPainter& painter, std::size_t index, const QRect& exposed) {
    ++m_pagesPainted;
    const QRect rect = pageRectInView(index);
    painter.fillRect(rect.translated(kShadowOffset, kShadowOffset), QColor::fromRgba(kShadowColor));
    painter.fillRect(rect, QColor::fromRgba(kPaperColor));
    painter.save();
    painter.setClipRect(rect & exposed);
    painter.translate(rect.topLeft());
    painter.scale(m_column.scale(), m_column.scale());
    try {
        m_renderer.paint(painter, m_pages.pages[index], m_pages.fonts);
    } catch (const std::exception& e) {
        // One broken page must not take the window down; say so on the page instead.
        painter.resetTransform();
        painter.setPen(QColor::fromRgba(kBrokenPageColor));
        painter.drawText(rect.adjusted(8, 8, -8, -8), Qt::AlignTop | Qt::TextWordWrap,
                         QString("This page could not be drawn: %1").arg(e.what()));
    }
    painter.restore();
    paintMatches(painter, index);
}

void PageView::paintMatches(QPainter& painter, std::size_t index) {
    auto first = std::lower_bound(m_matches.begin(), m_matches.end(), index,
                                  [](const TextMatch& m, std::size_t p) { return m.page < p; });
    if (first == m_matches.end() || first->page != index)
        return;
    const QRect rect = pageRectInView(index);
    painter.save();
    painter.setClipRect(rect);
    // Multiplying keeps the text readable: paper takes the colour, ink stays dark.
    const bool multiply = painter.paintEngine()->hasFeature(QPaintEngine::BlendModes);
    if (multiply)
        painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    for (auto it = first; it != m_matches.end() && it->page == index; ++it) {
        const bool current = int(it - m_matches.begin()) == m_currentMatch;
        QColor color = QColor::fromRgba(current ? kCurrentMatchColor : kMatchColor);
        if (!multiply)
            color.setAlpha(110);
        painter.fillRect(matchRectInPage(*it, rect), color);
    }
    painter.restore();
}

void PageView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    relayout();
}

void PageView::wheelEvent(QWheelEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier)) {
        m_wheelAngle = 0;
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    m_wheelAngle += event->angleDelta().y();
    for (; m_wheelAngle >= kWheelStep; m_wheelAngle -= kWheelStep)
        zoomIn();
    for (; m_wheelAngle <= -kWheelStep; m_wheelAngle += kWheelStep)
        zoomOut();
    event->accept();
}

void PageView::keyPressEvent(QKeyEvent* event) {
    if (event->modifiers() == Qt::NoModifier && event->key() == Qt::Key_Home) {
        goToPage(0);
    } else if (event->modifiers() == Qt::NoModifier && event->key() == Qt::Key_End) {
        goToPage(pageCount() == 0 ? 0 : pageCount() - 1);
    } else {
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void PageView::scrollContentsBy(int dx, int dy) {
    viewport()->scroll(dx, dy);
    if (!m_navigating && m_column.pageCount() > 0)
        setCurrent(m_column.mostVisiblePage(verticalScrollBar()->value(), viewport()->height()));
}

} // namespace qr::output
