#include "editor/bars/RulerPicture.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace vantro::editor::bars {

void RulerPicture::follow(TimelineModel& timeline) {
    connect(&timeline, &TimelineModel::marksShown, this, &RulerPicture::polish);
}

void RulerPicture::paint(QPainter& painter) {
    auto font = QGuiApplication::font();
    font.setPixelSize(m_textSize);
    const QFontMetricsF metrics(font);
    const double baseline = height() - m_tickHeight - 1 - metrics.descent();
    painter.setFont(font);
    painter.setPen(m_textColor);
    for (const auto& mark : timeline()->marks()) {
        const double length = mark.isMajor ? m_tickHeight : m_tickHeight / 2;
        painter.fillRect(QRectF(std::round(mark.x), height() - length, 1, length), m_tickColor);
        if (!mark.isMajor)
            continue;
        const auto label = QString::fromStdString(mark.label);
        const double extent = metrics.horizontalAdvance(label);
        const double left = std::clamp(mark.x - extent / 2, 0.0, std::max(width() - extent, 0.0));
        painter.drawText(QPointF(std::round(left), std::round(baseline)), label);
    }
}

} // namespace vantro::editor::bars
