#include "ui/PreviewItem.h"

#include "media/values/PixelBuffer.h"

#include <QQuickWindow>
#include <QSGSimpleTextureNode>
#include <algorithm>
#include <cmath>
#include <memory>

namespace vantro::ui {
namespace {

using Pixels = std::shared_ptr<const media::PixelBuffer>;

constexpr double roundingOfRatio = 1e-3; // pixels; lengths in points are whole pixels but for this

/// The pixels as an image, without a copy.
QImage imageOf(const Pixels& pixels) {
    auto owner = std::make_unique<Pixels>(pixels);
    return {pixels->plane(0),     pixels->width(),
            pixels->height(),     pixels->stride(0),
            QImage::Format_RGB32, [](void* held) { delete static_cast<Pixels*>(held); },
            owner.release()};
}

} // namespace

PreviewItem::PreviewItem() {
    setFlag(ItemHasContents);
}

PreviewItem::~PreviewItem() {
    disconnect(m_swaps);
    if (m_stream)
        m_stream->setArea({});
}

void PreviewItem::setStream(PictureStream* stream) {
    if (m_stream == stream)
        return;
    if (m_stream) {
        m_stream->disconnect(this);
        m_stream->setArea({});
    }
    m_stream = stream;
    if (m_stream)
        connect(m_stream, &PictureStream::changed, this, &PreviewItem::update);
    followWindow(window());
    tellArea();
    update();
    Q_EMIT streamChanged();
}

void PreviewItem::followWindow(QQuickWindow* window) {
    disconnect(m_swaps);
    if (window != nullptr && m_stream)
        // At once, on the thread that draws: the time counts.
        m_swaps = connect(window, &QQuickWindow::frameSwapped, m_stream, &PictureStream::shown,
                          Qt::DirectConnection);
}

void PreviewItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    tellArea();
    update();
}

void PreviewItem::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange)
        followWindow(data.window);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged) {
        tellArea();
        update();
    }
    QQuickItem::itemChange(change, data);
}

void PreviewItem::tellArea() {
    if (!m_stream || window() == nullptr)
        return;
    const auto whole = [ratio = window()->effectiveDevicePixelRatio()](double length) {
        return static_cast<int>(length * ratio + roundingOfRatio);
    };
    m_stream->setArea({whole(width()), whole(height())});
}

/// Where a picture is shown: in the middle, on whole pixels of the window.
QRectF PreviewItem::rectOf(QSize picture) const {
    const double ratio = window()->effectiveDevicePixelRatio();
    const auto area = size() * ratio;
    const auto fitted = picture.width() <= area.width() && picture.height() <= area.height()
                            ? picture
                            : picture.scaled(area.toSize(), Qt::KeepAspectRatio);
    const auto origin = mapToScene({}) * ratio;
    const auto aligned = [](double from, double space) {
        return std::round(from + space / 2) - from;
    };
    return {aligned(origin.x(), area.width() - fitted.width()) / ratio,
            aligned(origin.y(), area.height() - fitted.height()) / ratio, fitted.width() / ratio,
            fitted.height() / ratio};
}

QSGNode* PreviewItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    const auto picture = m_stream ? m_stream->draw() : std::nullopt;
    if (!picture) {
        delete node;
        m_pixels.reset();
        return nullptr;
    }
    auto* texture = static_cast<QSGSimpleTextureNode*>(node);
    if (texture == nullptr) {
        texture = new QSGSimpleTextureNode; // owned by the scene graph
        texture->setOwnsTexture(true);
        m_pixels.reset();
    }
    if (m_pixels != picture->pixels) {
        m_pixels = picture->pixels;
        texture->setTexture(
            window()->createTextureFromImage(imageOf(m_pixels), QQuickWindow::TextureIsOpaque));
    }
    const auto rect = rectOf({m_pixels->width(), m_pixels->height()});
    if (texture->rect() != rect)
        texture->setRect(rect);
    return texture;
}

} // namespace vantro::ui
