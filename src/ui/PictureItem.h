#pragma once

#include <QImage>
#include <QQuickItem>

#include <QtQml/qqmlregistration.h>

namespace vantro::ui {

/// What QML calls the type of PictureItem's picture.
struct PictureType {
    Q_GADGET
    QML_FOREIGN(QImage)
    QML_ANONYMOUS
};

/// Shows an image in the middle of itself, as large as fits but never enlarged. The image is scaled
/// here and smoothly, once for each picture and size: scene graphs scale coarsely, which spoils
/// text.
class PictureItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QImage picture READ picture WRITE setPicture NOTIFY pictureChanged)

  public:
    PictureItem();

    const QImage& picture() const { return m_picture; }
    void setPicture(const QImage& picture);

  Q_SIGNALS:
    void pictureChanged();

  protected:
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

  private:
    QRectF pictureRect() const;
    QSize fittedSize() const;

    QImage m_picture;    ///< its own pixels, whatever ratio it names
    QSize m_textureSize; ///< device pixels; empty: the texture shows another picture
};

} // namespace vantro::ui
