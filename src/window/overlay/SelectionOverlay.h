#pragma once

#include "app/flows/AreaOverlay.h"
#include "window/overlay/SelectionGeometry.h"

#include <QImage>
#include <QRasterWindow>

namespace vantro::window::overlay {

/// How a screen's logical coordinates become points: a point is a whole number of pixels, a logical
/// unit may be a fraction of them.
struct OverlayScale {
    double pixelsPerUnit = 1; ///< 0: the backdrop is shown as large as the window is
    double pixelsPerPoint = 1;
    std::uint32_t displayID = 0;
    model::Point origin = {}; ///< of the display, in global points
};

/// Covers one screen, shows it dimmed, and lets the user drag out an area of it, or set it by keys:
/// a drag is finished by the release, unless keys have moved it, and anything else by Enter.
///
/// With a `backdrop` (what the screen shows, in pixels) the window is opaque and needs no
/// compositing manager; without one it is translucent. Where it cannot cover the screen the
/// backdrop is fitted into it. Where the desktop lets it, it takes the keyboard even when another
/// window is given the focus. Main thread.
class SelectionOverlay : public QRasterWindow {
    Q_OBJECT

  public:
    SelectionOverlay(QScreen* screen, QImage backdrop, OverlayScale scale,
                     app::flows::AreaOverlayCallbacks callbacks);

    /// Shows that area as selected: points from the screen's corner.
    void offer(const model::Rect& area);

    /// As an ordinary window, where it is not known which screen it shows.
    void showFitted();

    /// Draws the whole overlay, for the window and for whoever looks at it otherwise.
    void paint(QPainter& painter) const;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    model::Point toPoints(QPointF position) const;
    QRectF fromPoints(const model::Rect& rect) const;
    QRectF inBackdrop(const QRectF& rect) const;
    QRectF shownRect() const;
    double unitsToPixels() const;
    double pointsPerUnit() const { return unitsToPixels() / m_scale.pixelsPerPoint; }
    void takeKeyboard();
    void setBounds();
    bool nudge(const QKeyEvent& event);
    bool type(const QKeyEvent& event);
    void paintHint(QPainter& painter) const;
    QRectF labelRect() const;
    QRect drawnArea() const;
    void dimBackdrop();
    void paintLabel(QPainter& painter) const;
    void finish(std::optional<model::Rect> selection);
    void cancel() { finish({}); }

    QImage m_backdrop;
    QImage m_dimmedBackdrop;
    OverlayScale m_scale;
    app::flows::AreaOverlayCallbacks m_callbacks;
    SelectionGeometry m_geometry;
    SelectionGeometry m_beforeTyping;
    std::string m_typed;       ///< numbers for the selection
    bool m_isAdjusted = false; ///< by keys, during a drag
    bool m_finished = false;
};

} // namespace vantro::window::overlay
