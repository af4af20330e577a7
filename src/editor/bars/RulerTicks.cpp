#include "editor/bars/RulerTicks.h"

#include <QQuickWindow>
#include <QSGRectangleNode>
#include <cmath>

namespace vantro::editor::bars {

void RulerTicks::setTimeline(TimelineModel* timeline) {
    if (timeline == m_timeline)
        return;
    if (m_timeline)
        m_timeline->disconnect(this);
    m_timeline = timeline;
    if (m_timeline)
        connect(m_timeline, &TimelineModel::marksChanged, this, &QQuickItem::update);
    update();
    Q_EMIT changed();
}

void RulerTicks::setColor(const QColor& color) {
    if (color == m_color)
        return;
    m_color = color;
    update();
    Q_EMIT changed();
}

QSGNode* RulerTicks::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) {
    auto* node = old != nullptr ? old : new QSGNode;
    auto* tick = node->firstChild();
    if (m_timeline)
        for (const auto& mark : m_timeline->ticks()) {
            if (tick == nullptr)
                node->appendChildNode(tick = window()->createRectangleNode());
            auto* rectangle = static_cast<QSGRectangleNode*>(tick);
            const double length = mark.isMajor ? height() : height() / 2;
            rectangle->setRect(std::round(mark.x), height() - length, 1, length);
            rectangle->setColor(m_color);
            tick = tick->nextSibling();
        }
    while (tick != nullptr) {
        auto* next = tick->nextSibling();
        node->removeChildNode(tick);
        delete tick;
        tick = next;
    }
    return node;
}

} // namespace vantro::editor::bars
