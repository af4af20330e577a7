#pragma once

#include <QImage>
#include <QQuickItem>

namespace vantro::ui {

/// Shows an image in the middle of itself, as large as fits but never enlarged. The image is scaled
/// here and smoothly: scene graphs scale coarsely, which spoils text.
class PictureItem : public QQuickItem {
    Q_OBJECT
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

  private:
    QRectF pictureRect() const;
    QImage fittedPicture() const;

    QImage m_picture; ///< its own pixels, whatever ratio it names
    bool m_textureIsStale = false;
};

} // namespace vantro::ui
