#include "window/overlay/SelectionOverlay.h"

#include "window/overlay/FrozenPicture.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <algorithm>
#include <cctype>
#include <cmath>
#include <string_view>

namespace vantro::window::overlay {
namespace {

const QColor dimColor(0, 0, 0, 77);
const QColor borderColor(43, 184, 138);
const QColor labelBackground(0, 0, 0, 179);
constexpr int labelPixels = 13;
constexpr double borderWidth = 1.5;
constexpr double labelGap = 8;

QFont hintFont() {
    auto font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(labelPixels);
    return font;
}

QFont labelFont() {
    auto font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(labelPixels);
    font.setWeight(QFont::Medium);
    return font;
}

} // namespace

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
        m_dimmedBackdrop = m_backdrop;
        QPainter(&m_dimmedBackdrop).fillRect(m_dimmedBackdrop.rect(), dimColor);
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

void SelectionOverlay::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setClipRegion(event->region());
    paint(painter);
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

void SelectionOverlay::paint(QPainter& painter) const {
    const QRectF bounds(QPointF(0, 0), QSizeF(size()));
    const auto selection = fromPoints(m_geometry.currentRect());
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    const auto shown = shownRect();
    if (shown != bounds)
        painter.fillRect(bounds, Qt::black);
    if (m_backdrop.isNull())
        painter.fillRect(bounds, dimColor);
    else
        painter.drawImage(shown, m_dimmedBackdrop);
    if (!m_geometry.hasArea())
        return paintHint(painter);
    if (m_backdrop.isNull())
        painter.fillRect(selection, Qt::transparent);
    else
        painter.drawImage(selection, m_backdrop, inBackdrop(selection));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(borderColor, borderWidth, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(selection.adjusted(-1, -1, 1, 1));
    paintLabel(painter);
    paintHint(painter);
}

QRectF SelectionOverlay::inBackdrop(const QRectF& rect) const {
    const auto shown = shownRect();
    const double x = m_backdrop.width() / shown.width();
    const double y = m_backdrop.height() / shown.height();
    return {(rect.x() - shown.x()) * x, (rect.y() - shown.y()) * y, rect.width() * x,
            rect.height() * y};
}

QRectF SelectionOverlay::labelRect() const {
    const QFontMetricsF metrics(labelFont());
    const auto text = QString::fromStdString(m_geometry.label());
    const QSizeF textSize(metrics.horizontalAdvance(text), metrics.height());
    const auto selection = fromPoints(m_geometry.currentRect());
    return {selection.center().x() - textSize.width() / 2 - 6,
            selection.top() - labelGap - textSize.height() - 6, textSize.width() + 12,
            textSize.height() + 6};
}

void SelectionOverlay::paintLabel(QPainter& painter) const {
    const auto background = labelRect();
    painter.setPen(Qt::NoPen);
    painter.setBrush(labelBackground);
    painter.drawRoundedRect(background, 4, 4);
    painter.setFont(labelFont());
    painter.setPen(Qt::white);
    painter.drawText(background, Qt::AlignCenter, QString::fromStdString(m_geometry.label()));
}

/// What keys do, or the numbers that have been typed.
void SelectionOverlay::paintHint(QPainter& painter) const {
    if (m_geometry.isDragging())
        return;
    const auto hint = m_typed.empty()
                          ? tr("Drag out an area, or type width, height, x and y. Arrows move it, "
                               "Ctrl with arrows "
                               "resizes it, Shift by 10. Enter takes it, Escape cancels.")
                          : tr("Width, height, x, y: %1|").arg(QString::fromStdString(m_typed));
    const QRectF space(0, 0, width() - 80.0, height() - 60.0);
    painter.setFont(hintFont());
    const auto text = painter.boundingRect(space, Qt::AlignCenter | Qt::TextWordWrap, hint);
    const QRectF background((width() - text.width()) / 2 - 12, height() - text.height() - 48,
                            text.width() + 24, text.height() + 12);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(labelBackground);
    painter.drawRoundedRect(background, 6, 6);
    painter.setPen(Qt::white);
    painter.drawText(background, Qt::AlignCenter | Qt::TextWordWrap, hint);
}

QRect SelectionOverlay::drawnArea() const {
    constexpr int borderReach = 3;
    if (!m_geometry.hasArea())
        return {};
    return fromPoints(m_geometry.currentRect())
        .united(labelRect())
        .toAlignedRect()
        .adjusted(-borderReach, -borderReach, borderReach, borderReach);
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
