#include "window/overlay/SelectionOverlay.h"

#include "window/overlay/FrozenPicture.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <algorithm>
#include <cctype>
#include <cmath>
#include <string_view>

namespace vantro::window::overlay {

SelectionOverlay::SelectionOverlay(QScreen* screen, QImage backdrop, OverlayScale scale,
                                   app::flows::AreaOverlayCallbacks callbacks)
    : m_backdrop(std::move(backdrop)), m_scale(scale), m_callbacks(std::move(callbacks)) {
    setScreen(screen);
    setGeometry(screen->geometry());
    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
             Qt::NoDropShadowWindowHint);
    setTitle(tr("Select area"));
    setCursor(Qt::CrossCursor);
    if (m_backdrop.isNull()) {
        auto translucent = format();
        translucent.setAlphaBufferSize(8);
        setFormat(translucent);
    } else {
        dimBackdrop();
    }
    setBounds();
    // The picture no longer shows what is there, and the area might lie on no display at all.
    connect(screen, &QScreen::geometryChanged, this, &SelectionOverlay::cancel);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this, screen](const QScreen* removed) {
        if (removed == screen)
            cancel();
    });
}

model::Point SelectionOverlay::toPoints(QPointF position) const {
    // The pointer stands on whole pixels, which fractional units do not tell exactly.
    const auto toPoints = [this](double units) {
        return std::round(units * unitsToPixels()) / m_scale.pixelsPerPoint;
    };
    position -= shownRect().topLeft();
    const model::Point place{toPoints(position.x()), toPoints(position.y())};
    if (m_scale.pixelsPerUnit > 0)
        return place;
    return {std::clamp(place.x, 0.0, m_backdrop.width() / m_scale.pixelsPerPoint),
            std::clamp(place.y, 0.0, m_backdrop.height() / m_scale.pixelsPerPoint)};
}

QRectF SelectionOverlay::fromPoints(const model::Rect& rect) const {
    const double units = pointsPerUnit();
    return QRectF(rect.x / units, rect.y / units, rect.width / units, rect.height / units)
        .translated(shownRect().topLeft());
}

/// The screen's place in the window.
QRectF SelectionOverlay::shownRect() const {
    const QRectF bounds(QPointF(0, 0), QSizeF(size()));
    if (m_scale.pixelsPerUnit > 0)
        return bounds;
    const auto fitted = QSizeF(m_backdrop.size()).scaled(bounds.size(), Qt::KeepAspectRatio);
    // The desktop rounds the size of a window that covers a screen.
    if (bounds.width() - fitted.width() < 2 && bounds.height() - fitted.height() < 2)
        return bounds;
    return {QPointF((bounds.width() - fitted.width()) / 2, (bounds.height() - fitted.height()) / 2),
            fitted};
}

double SelectionOverlay::unitsToPixels() const {
    return m_scale.pixelsPerUnit > 0 ? m_scale.pixelsPerUnit
                                     : pixelsPerUnit(m_backdrop.width(), shownRect().width());
}

void SelectionOverlay::setBounds() {
    const double scale = pointsPerUnit();
    const auto shown = shownRect();
    m_geometry.setBounds(m_scale.pixelsPerUnit > 0
                             ? model::Size{shown.width() * scale, shown.height() * scale}
                             : model::Size{m_backdrop.width() / m_scale.pixelsPerPoint,
                                           m_backdrop.height() / m_scale.pixelsPerPoint});
}

void SelectionOverlay::offer(const model::Rect& area) {
    m_geometry.select(area);
    update();
}

void SelectionOverlay::showFitted() {
    constexpr double shareOfScreen = 0.8;
    setFlags(Qt::Window);
    resize(m_backdrop.size().scaled((QSizeF(screen()->availableSize()) * shareOfScreen).toSize(),
                                    Qt::KeepAspectRatio));
    show();
    requestActivate();
}

void SelectionOverlay::resizeEvent(QResizeEvent* event) {
    QRasterWindow::resizeEvent(event);
    setBounds();
}

void SelectionOverlay::exposeEvent(QExposeEvent* event) {
    QRasterWindow::exposeEvent(event);
    if (isExposed())
        takeKeyboard();
}

/// Escape must lead out also where the window manager gives the focus to somebody else.
void SelectionOverlay::takeKeyboard() {
    if (QGuiApplication::platformName() == QStringLiteral("xcb"))
        setKeyboardGrabEnabled(true);
}

/// Keys are for the screen that the pointer is on.
bool SelectionOverlay::event(QEvent* event) {
    if (event->type() == QEvent::Enter)
        takeKeyboard();
    return QRasterWindow::event(event);
}

void SelectionOverlay::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_typed.clear();
    m_isAdjusted = false;
    m_geometry.press(toPoints(event->position()));
    update();
}

void SelectionOverlay::mouseMoveEvent(QMouseEvent* event) {
    if (!m_geometry.isDragging())
        return;
    const auto before = drawnArea();
    m_geometry.drag(toPoints(event->position()));
    update(before.united(drawnArea()));
}

void SelectionOverlay::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_geometry.isDragging())
        return;
    const auto selection = m_geometry.release();
    if (selection && !m_isAdjusted)
        finish(selection);
    else
        update();
}

void SelectionOverlay::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape)
        cancel();
    else if (isEnter && !m_geometry.isDragging() && m_geometry.finished())
        finish(m_geometry.finished());
    else if (nudge(*event) || type(*event))
        update();
}

bool SelectionOverlay::nudge(const QKeyEvent& event) {
    const double step = event.modifiers().testFlag(Qt::ShiftModifier) ? 10 : 1;
    const double x = event.key() == Qt::Key_Left ? -step : event.key() == Qt::Key_Right ? step : 0;
    const double y = event.key() == Qt::Key_Up ? -step : event.key() == Qt::Key_Down ? step : 0;
    if (x == 0 && y == 0)
        return false;
    m_typed.clear();
    m_isAdjusted = m_geometry.isDragging();
    if (event.modifiers().testFlag(Qt::ControlModifier))
        m_geometry.growBy(x, y);
    else
        m_geometry.moveBy(x, y);
    return true;
}

bool SelectionOverlay::type(const QKeyEvent& event) {
    constexpr std::size_t mostCharacters = 32;
    const auto text = event.text().toStdString();
    const bool isDigit = text.size() == 1 && std::isdigit(static_cast<unsigned char>(text[0])) != 0;
    const bool isGap = text.size() == 1 && std::string_view(" ,x*+-").contains(text[0]);
    if (m_geometry.isDragging())
        return false;
    if (m_typed.empty())
        m_beforeTyping = m_geometry;
    if (event.key() == Qt::Key_Backspace && !m_typed.empty())
        m_typed.pop_back();
    else if ((isDigit || (isGap && !m_typed.empty())) && m_typed.size() < mostCharacters)
        m_typed += text[0] == '-' ? ' ' : text[0];
    else
        return false;
    m_geometry = m_beforeTyping;
    if (!m_typed.empty())
        m_geometry.type(m_typed);
    return true;
}

/// As the user closes an ordinary window.
void SelectionOverlay::closeEvent(QCloseEvent* event) {
    QRasterWindow::closeEvent(event);
    cancel();
}

void SelectionOverlay::finish(std::optional<model::Rect> selection) {
    if (m_finished)
        return;
    m_finished = true;
    hide();
    if (selection) {
        selection->x += m_scale.origin.x;
        selection->y += m_scale.origin.y;
        m_callbacks.onSelection(m_scale.displayID, *selection);
    } else {
        m_callbacks.onCancel();
    }
}

} // namespace vantro::window::overlay
