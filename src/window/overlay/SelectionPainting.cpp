// How the overlay looks.
#include "window/overlay/SelectionOverlay.h"

#include <QFontDatabase>
#include <QPaintEvent>
#include <QPainter>

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

void SelectionOverlay::dimBackdrop() {
    m_dimmedBackdrop = m_backdrop;
    QPainter(&m_dimmedBackdrop).fillRect(m_dimmedBackdrop.rect(), dimColor);
}

void SelectionOverlay::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setClipRegion(event->region());
    paint(painter);
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

} // namespace vantro::window::overlay
