#pragma once

#include "editor/bars/TimelineModel.h"

#include <QColor>
#include <QPointer>
#include <QQuickItem>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::bars {

/// Draws the ticks of the ruler, which all move with every step of a wheel: one item for all of
/// them, since an item and its bindings for each is what would make such a step slow. Majors are as
/// high as the item, minors half of it. Main thread; nodes on the scene graph's.
class RulerTicks : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(vantro::editor::bars::TimelineModel* timeline READ timeline WRITE setTimeline NOTIFY
                   changed REQUIRED)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)

  public:
    RulerTicks() { setFlag(ItemHasContents); }

    TimelineModel* timeline() const { return m_timeline; }
    void setTimeline(TimelineModel* timeline);
    QColor color() const { return m_color; }
    void setColor(const QColor& color);

  Q_SIGNALS:
    void changed();

  private:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;

    QPointer<TimelineModel> m_timeline;
    QColor m_color = Qt::black;
};

} // namespace vantro::editor::bars
