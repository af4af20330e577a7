#pragma once

#include "app/flows/AreaOverlay.h"
#include "window/overlay/SelectionGeometry.h"

#include <QImage>
#include <QRasterWindow>

namespace vantro::window::overlay {

/// How a screen's logical coordinates become points: a point is a whole number of pixels, a logical
/// unit may be a fraction of them.
struct OverlayScale {
    double pixelsPerUnit = 1;
    double pixelsPerPoint = 1;
    std::uint32_t displayID = 0;
    model::Point origin = {}; ///< of the display, in global points

    double pointsPerUnit() const { return pixelsPerUnit / pixelsPerPoint; }
};

/// Covers one screen, shows it dimmed, and lets the user drag out an area of it.
///
/// With a `backdrop` (what the screen shows, in pixels) the window is opaque and needs no
/// compositing manager; without one it is translucent. Where the desktop lets it, it takes the
/// keyboard even when another window is given the focus. Main thread.
class SelectionOverlay : public QRasterWindow {
    Q_OBJECT

  public:
    SelectionOverlay(QScreen* screen, QImage backdrop, OverlayScale scale,
                     app::flows::AreaOverlayCallbacks callbacks);

    /// Draws the whole overlay, for the window and for whoever looks at it otherwise.
    void paint(QPainter& painter) const;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    model::Point toPoints(QPointF position) const;
    QRectF fromPoints(const model::Rect& rect) const;
    QRectF inBackdrop(const QRectF& rect) const;
    QRectF labelRect() const;
    QRect drawnArea() const;
    void paintLabel(QPainter& painter) const;
    void finish(std::optional<model::Rect> selection);
    void cancel() { finish({}); }

    QImage m_backdrop;
    QImage m_dimmedBackdrop;
    OverlayScale m_scale;
    app::flows::AreaOverlayCallbacks m_callbacks;
    SelectionGeometry m_geometry;
    bool m_finished = false;
};

} // namespace vantro::window::overlay
