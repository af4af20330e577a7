#include "editor/bars/BarPicture.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGSimpleTextureNode>

namespace vantro::editor::bars {

BarPicture::BarPicture(QImage::Format format) : m_format(format) {
    setFlag(ItemHasContents);
    connect(this, &BarPicture::madeFor, this, &BarPicture::polish);
}

void BarPicture::setTimeline(TimelineModel* timeline) {
    if (timeline == m_timeline)
        return;
    if (m_timeline)
        m_timeline->disconnect(this);
    m_timeline = timeline;
    if (m_timeline)
        follow(*m_timeline);
    Q_EMIT madeFor();
}

void BarPicture::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    polish();
}

void BarPicture::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        polish();
    QQuickItem::itemChange(change, data);
}

void BarPicture::updatePolish() {
    m_image = {};
    m_isNew = true;
    update();
    if (!m_timeline || window() == nullptr || width() < 1 || height() < 1 || isEmpty())
        return;
    const double ratio = window()->effectiveDevicePixelRatio();
    m_image = QImage((size() * ratio).toSize(), m_format);
    m_image.setDevicePixelRatio(ratio);
    m_image.fill(Qt::transparent);
    QPainter painter(&m_image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    paint(painter);
}

QSGNode* BarPicture::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
    if (m_image.isNull()) {
        delete node;
        return nullptr;
    }
    auto* texture = static_cast<QSGSimpleTextureNode*>(node);
    if (texture == nullptr) {
        texture = new QSGSimpleTextureNode; // owned by the scene graph
        texture->setOwnsTexture(true);
        m_isNew = true;
    }
    const auto options = m_image.hasAlphaChannel() ? QQuickWindow::TextureHasAlphaChannel
                                                   : QQuickWindow::TextureIsOpaque;
    if (m_isNew)
        texture->setTexture(window()->createTextureFromImage(m_image, options));
    m_isNew = false;
    texture->setRect(boundingRect());
    return texture;
}

} // namespace vantro::editor::bars
