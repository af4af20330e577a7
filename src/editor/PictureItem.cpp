#include "editor/PictureItem.h"

#include <QQuickWindow>
#include <QSGSimpleTextureNode>

namespace vantro {

PictureItem::PictureItem() {
    setFlag(ItemHasContents);
}

void PictureItem::setPicture(const QImage& picture) {
    m_picture = picture;
    m_textureIsStale = true;
    update();
    Q_EMIT pictureChanged();
}

void PictureItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

QRectF PictureItem::pictureRect() const {
    const auto fitted = QSizeF(m_picture.size()).scaled(size(), Qt::KeepAspectRatio);
    return {(width() - fitted.width()) / 2, (height() - fitted.height()) / 2, fitted.width(),
            fitted.height()};
}

QSGNode* PictureItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    if (m_picture.isNull()) {
        delete node;
        return nullptr;
    }
    auto* texture = static_cast<QSGSimpleTextureNode*>(node);
    if (texture == nullptr) {
        texture = new QSGSimpleTextureNode; // owned by the scene graph
        texture->setOwnsTexture(true);
        texture->setFiltering(QSGTexture::Linear);
        m_textureIsStale = true;
    }
    if (m_textureIsStale)
        texture->setTexture(
            window()->createTextureFromImage(m_picture, QQuickWindow::TextureIsOpaque));
    m_textureIsStale = false;
    texture->setRect(pictureRect());
    return texture;
}

} // namespace vantro
