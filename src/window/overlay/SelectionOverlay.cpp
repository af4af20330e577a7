#include "window/overlay/SelectionOverlay.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <cmath>

namespace vantro::window::overlay {
namespace {

const QColor dimColor(0, 0, 0, 77);
const QColor borderColor(43, 184, 138);
const QColor labelBackground(0, 0, 0, 179);
constexpr int labelPixels = 13;
constexpr double borderWidth = 1.5;
constexpr double labelGap = 8;

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
        return std::round(units * m_scale.pixelsPerUnit) / m_scale.pixelsPerPoint;
    };
    return {toPoints(position.x()), toPoints(position.y())};
}

QRectF SelectionOverlay::fromPoints(const model::Rect& rect) const {
    const double units = m_scale.pointsPerUnit();
    return {rect.x / units, rect.y / units, rect.width / units, rect.height / units};
}

void SelectionOverlay::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setClipRegion(event->region());
    paint(painter);
}

void SelectionOverlay::exposeEvent(QExposeEvent* event) {
    QRasterWindow::exposeEvent(event);
    // Escape must lead out also where the window manager gives the focus to somebody else.
    if (isExposed() && QGuiApplication::platformName() == QStringLiteral("xcb"))
        setKeyboardGrabEnabled(true);
}

void SelectionOverlay::paint(QPainter& painter) const {
    const QRectF bounds(QPointF(0, 0), QSizeF(size()));
    const auto selection = fromPoints(m_geometry.currentRect());
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (m_backdrop.isNull())
        painter.fillRect(bounds, dimColor);
    else
        painter.drawImage(bounds, m_dimmedBackdrop);
    if (!m_geometry.hasArea())
        return;
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
}

QRectF SelectionOverlay::inBackdrop(const QRectF& rect) const {
    const double x = static_cast<double>(m_backdrop.width()) / width();
    const double y = static_cast<double>(m_backdrop.height()) / height();
    return {rect.x() * x, rect.y() * y, rect.width() * x, rect.height() * y};
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
    const auto before = drawnArea();
    m_geometry.press(toPoints(event->position()));
    update(before);
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
    const auto before = drawnArea();
    if (const auto selection = m_geometry.release())
        finish(selection);
    else
        update(before);
}

void SelectionOverlay::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
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
