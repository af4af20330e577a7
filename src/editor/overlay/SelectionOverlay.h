#pragma once

#include "app/state/AreaOverlay.h"
#include "editor/overlay/SelectionGeometry.h"

#include <QImage>
#include <QRasterWindow>

namespace vantro {

/// How a screen's logical coordinates become points: a point is a whole number of pixels, a logical
/// unit may be a fraction of them.
struct OverlayScale {
    double pixelsPerUnit = 1;
    double pixelsPerPoint = 1;
    std::uint32_t displayID = 0;

    double pointsPerUnit() const { return pixelsPerUnit / pixelsPerPoint; }
};

/// Covers one screen, shows it dimmed, and lets the user drag out an area of it.
///
/// With a `backdrop` (what the screen shows, in pixels) the window is opaque and needs no
/// compositing manager; without one it is translucent. Main thread.
class SelectionOverlay : public QRasterWindow, public AreaOverlay {
    Q_OBJECT

  public:
    SelectionOverlay(QScreen* screen, QImage backdrop, OverlayScale scale,
                     AreaOverlayCallbacks callbacks);

    /// Draws the whole overlay, for the window and for whoever looks at it otherwise.
    void paint(QPainter& painter) const;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    Point toPoints(QPointF position) const;
    QRectF fromPoints(const Rect& rect) const;
    QRectF inBackdrop(const QRectF& rect) const;
    QRectF labelRect() const;
    QRect drawnArea() const;
    void paintLabel(QPainter& painter) const;
    void finish(std::optional<Rect> selection);
    void cancel() { finish({}); }

    QImage m_backdrop;
    QImage m_dimmedBackdrop;
    OverlayScale m_scale;
    AreaOverlayCallbacks m_callbacks;
    SelectionGeometry m_geometry;
    bool m_finished = false;
};

} // namespace vantro
