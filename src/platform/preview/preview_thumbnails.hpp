#pragma once
// The preview's side panel: a small picture of each page with its number. Pictures are drawn
// when the list first shows them and a bounded number is kept, so the panel costs nothing for
// pages never scrolled to.

#include "platform/engine/page/page.hpp"
#include "platform/preview/painter_renderer.hpp"

#include <QAbstractListModel>
#include <QCache>
#include <QImage>
#include <QSize>
#include <QStyledItemDelegate>

namespace qr::output {

/// One row per page: the page number as text and its picture as decoration. `pages` and
/// `renderer` must outlive the model.
class ThumbnailModel : public QAbstractListModel {
  public:
    /// The box every picture fits in, in pixels (a Letter page upright fills it).
    static constexpr int kWidth = 110;
    static constexpr int kHeight = 142;
    /// Pictures kept at most; others are drawn again when shown again.
    static constexpr int kKept = 400;

    ThumbnailModel(const page::Pages& pages, PainterRenderer& renderer, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    /// Qt::DisplayRole: "N"; Qt::DecorationRole: the picture (a QImage); Qt::ToolTipRole:
    /// "Page N of M".
    QVariant data(const QModelIndex& index, int role) const override;

    /// The size of page `index`'s picture: the paper scaled to fit the box.
    QSize pictureSize(std::size_t index) const;
    /// How many pictures have been drawn so far (for checking that drawing is on demand).
    int picturesDrawn() const { return m_drawn; }

  private:
    QImage draw(std::size_t index) const;

    const page::Pages& m_pages;
    PainterRenderer& m_renderer;
    mutable QCache<int, QImage> m_cache;
    mutable int m_drawn = 0;
};

/// Draws a row of the model: the picture centred, the page number under it, the current page
/// marked with the selection colour. Every row has the same size, found without drawing a
/// picture, so the list can lay out thousands of rows at once.
class ThumbnailDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    static QSize rowSize();
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace qr::output
