#include "ui/PictureItem.h"

#include <QQuickWindow>
#include <QSGSimpleTextureNode>
#include <cmath>

namespace vantro::ui {

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
    m_textureIsStale = true;
    update();
}

QRectF PictureItem::pictureRect() const {
    const auto natural = QSizeF(m_picture.size()) / window()->effectiveDevicePixelRatio();
    const auto fitted = natural.width() <= width() && natural.height() <= height()
                            ? natural
                            : natural.scaled(size(), Qt::KeepAspectRatio);
    return {std::round((width() - fitted.width()) / 2),
            std::round((height() - fitted.height()) / 2), fitted.width(), fitted.height()};
}

QImage PictureItem::fittedPicture() const {
    const auto pixels =
        (pictureRect().size() * window()->effectiveDevicePixelRatio()).toSize().expandedTo({1, 1});
    return pixels == m_picture.size()
               ? m_picture
               : m_picture.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
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
        m_textureIsStale = true;
    }
    if (m_textureIsStale)
        texture->setTexture(
            window()->createTextureFromImage(fittedPicture(), QQuickWindow::TextureIsOpaque));
    m_textureIsStale = false;
    texture->setRect(pictureRect());
    return texture;
}

} // namespace vantro::ui
