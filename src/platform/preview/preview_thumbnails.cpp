#include "platform/preview/preview_thumbnails.hpp"

#include <QPainter>
#include <QStyle>
#include <algorithm>
#include <cmath>

namespace qr::output {

namespace {

constexpr QRgb kEdgeColor = 0xFF9A9DA3;
constexpr QRgb kBrokenColor = 0xFFF4C7CE;
constexpr int kPadding = 6;
constexpr int kNumberHeight = 18;

} // namespace

ThumbnailModel::ThumbnailModel(const page::Pages& pages, PainterRenderer& renderer, QObject* parent)
    : QAbstractListModel(parent), m_pages(pages), m_renderer(renderer), m_cache(kKept) {}

int ThumbnailModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_pages.pages.size());
}

QSize ThumbnailModel::pictureSize(std::size_t index) const {
    const page::Page& p = m_pages.pages[index];
    const double scale =
        std::min(double(kWidth) / std::max(p.width, 1), double(kHeight) / std::max(p.height, 1));
    return QSize(std::max(1, int(std::lround(p.width * scale))),
                 std::max(1, int(std::lround(p.height * scale))));
}

QImage ThumbnailModel::draw(std::size_t index) const {
    const QSize size = pictureSize(index);
    const page::Page& p = m_pages.pages[index];
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.save();
    painter.scale(double(size.width()) / std::max(p.width, 1),
                  double(size.height()) / std::max(p.height, 1));
    try {
        m_renderer.paint(painter, p, m_pages.fonts);
    } catch (const std::exception&) {
        // The page view says what is wrong with the page; here it only shows as marked.
        painter.restore();
        painter.save();
        painter.fillRect(image.rect(), QColor::fromRgba(kBrokenColor));
    }
    painter.restore();
    painter.setPen(QColor::fromRgba(kEdgeColor));
    painter.drawRect(image.rect().adjusted(0, 0, -1, -1));
    ++m_drawn;
    return image;
}

QVariant ThumbnailModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() < 0 || index.row() >= rowCount())
        return {};
    const int row = index.row();
    switch (role) {
    case Qt::DisplayRole:
        return QString::number(row + 1);
    case Qt::ToolTipRole:
        return QString("Page %1 of %2").arg(row + 1).arg(rowCount());
    case Qt::DecorationRole: {
        if (const QImage* kept = m_cache.object(row))
            return *kept;
        auto* image = new QImage(draw(std::size_t(row)));
        const QImage copy = *image; // implicitly shared, no pixels copied
        m_cache.insert(row, image);
        return copy;
    }
    default:
        return {};
    }
}

QSize ThumbnailDelegate::rowSize() {
    return QSize(ThumbnailModel::kWidth + 4 * kPadding,
                 ThumbnailModel::kHeight + 2 * kPadding + kNumberHeight);
}

QSize ThumbnailDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return rowSize();
}

void ThumbnailDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
    painter->save();
    const QRect row = option.rect;
    if (option.state & QStyle::State_Selected)
        painter->fillRect(row, option.palette.highlight());
    const QImage picture = index.data(Qt::DecorationRole).value<QImage>();
    const QPoint at(row.x() + (row.width() - picture.width()) / 2,
                    row.y() + kPadding + (ThumbnailModel::kHeight - picture.height()) / 2);
    painter->drawImage(at, picture);
    painter->setPen(option.state & QStyle::State_Selected
                        ? option.palette.color(QPalette::HighlightedText)
                        : option.palette.color(QPalette::Text));
    const QRect number(row.x(), row.bottom() - kNumberHeight - kPadding / 2, row.width(),
                       kNumberHeight);
    painter->drawText(number, Qt::AlignCenter, index.data(Qt::DisplayRole).toString());
    painter->restore();
}

} // namespace qr::output
