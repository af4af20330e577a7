#include "editor/bars/RulerPicture.h"

#include "editor/bars/RulerNodes.h"
#include "ui/Sentences.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

namespace vantro::editor::bars {

RulerPicture::RulerPicture() : BarPicture(QImage::Format_ARGB32_Premultiplied) {
    installRulerNodes();
}

RulerPicture::~RulerPicture() {
    std::ranges::for_each(m_nodes, QAccessible::deleteAccessibleInterface);
}

void RulerPicture::follow(TimelineModel& timeline) {
    connect(&timeline, &TimelineModel::marksShown, this, [this] {
        polish();
        if (QAccessible::isActive())
            tellLabels();
    });
}

QFont RulerPicture::font() const {
    auto font = QGuiApplication::font();
    font.setPixelSize(m_textSize);
    return font;
}

std::vector<RulerPicture::Label> RulerPicture::labels() const {
    std::vector<Label> labels;
    if (timeline() == nullptr)
        return labels;
    const QFontMetricsF metrics(font());
    for (const auto& mark : timeline()->marks()) {
        if (!mark.isMajor)
            continue;
        auto text = ui::localNumber(mark.label);
        const double extent = metrics.horizontalAdvance(text);
        const double left = std::clamp(mark.x - extent / 2, 0.0, std::max(width() - extent, 0.0));
        labels.push_back({std::move(text), left, extent});
    }
    return labels;
}

void RulerPicture::paint(QPainter& painter) {
    for (const auto& mark : timeline()->marks()) {
        const double length = mark.isMajor ? m_tickHeight : m_tickHeight / 2;
        painter.fillRect(QRectF(std::round(mark.x), height() - length, 1, length), m_tickColor);
    }
    painter.setFont(font());
    painter.setPen(m_textColor);
    const double baseline = height() - m_tickHeight - 1 - QFontMetricsF(font()).descent();
    for (const auto& label : labels())
        painter.drawText(QPointF(std::round(label.left), std::round(baseline)), label.text);
}

QAccessibleInterface* RulerPicture::nodeOf(std::size_t label) {
    while (m_nodes.size() <= label)
        m_nodes.push_back(makeLabelNode(*this, m_nodes.size()));
    return QAccessible::accessibleInterface(m_nodes[label]);
}

void RulerPicture::tellLabels() {
    std::vector<QString> texts;
    for (auto& label : labels())
        texts.push_back(std::move(label.text));
    const auto before = std::exchange(m_told, std::move(texts));
    if (before.size() != m_told.size()) {
        QAccessibleEvent event(this, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&event);
    }
    for (std::size_t i = 0; i < std::min({m_nodes.size(), before.size(), m_told.size()}); ++i)
        if (before[i] != m_told[i]) {
            QAccessibleEvent event(nodeOf(i), QAccessible::NameChanged);
            QAccessible::updateAccessibility(&event);
        }
}

} // namespace vantro::editor::bars
