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
    m_textureSize = {};
    update();
    Q_EMIT pictureChanged();
}

void PictureItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

void PictureItem::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemDevicePixelRatioHasChanged)
        update();
    QQuickItem::itemChange(change, data);
}

QRectF PictureItem::pictureRect() const {
    const auto natural = QSizeF(m_picture.size()) / window()->effectiveDevicePixelRatio();
    const auto fitted = natural.width() <= width() && natural.height() <= height()
                            ? natural
                            : natural.scaled(size(), Qt::KeepAspectRatio);
    return {std::round((width() - fitted.width()) / 2),
            std::round((height() - fitted.height()) / 2), fitted.width(), fitted.height()};
}

QSize PictureItem::fittedSize() const {
    const auto pixels = pictureRect().size() * window()->effectiveDevicePixelRatio();
    return pixels.toSize().expandedTo({1, 1});
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
        m_textureSize = {};
    }
    if (const auto size = fittedSize(); m_textureSize != size) {
        m_textureSize = size;
        const auto fitted = size == m_picture.size() ? m_picture
                                                     : m_picture.scaled(size, Qt::IgnoreAspectRatio,
                                                                        Qt::SmoothTransformation);
        texture->setTexture(
            window()->createTextureFromImage(fitted, QQuickWindow::TextureIsOpaque));
    }
    texture->setRect(pictureRect());
    return texture;
}

} // namespace vantro::ui
