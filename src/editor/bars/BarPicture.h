#pragma once

#include "editor/bars/TimelineModel.h"

#include <QImage>
#include <QPointer>
#include <QQuickItem>

#include <QtQml/qqmlregistration.h>

class QPainter;

namespace vantro::editor::bars {

/// What stands on a bar of the time line, painted as one picture. All of it moves with every step
/// of a wheel, and an item with its bindings and nodes for each mark and block is what would make
/// such a step slow. Painted before the next frame, in points. Heirs name this class in full, by
/// which the QML tools find its properties. Main thread; the texture is the scene graph's.
class BarPicture : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("the bars are")
    Q_PROPERTY(vantro::editor::bars::TimelineModel* timeline READ timeline WRITE setTimeline NOTIFY
                   madeFor)

  public:
    TimelineModel* timeline() const { return m_timeline; }
    void setTimeline(TimelineModel* timeline);

  Q_SIGNALS:
    /// Another time line, or other colors.
    void madeFor();

  protected:
    /// An opaque `format` costs less; the picture must then fill the bar.
    explicit BarPicture(QImage::Format format);

    /// Connects what the picture shows of the time line to `polish`.
    virtual void follow(TimelineModel& timeline) = 0;
    /// Nothing is to be seen, and nothing is painted.
    virtual bool isEmpty() const { return false; }
    /// The picture is clear before.
    virtual void paint(QPainter& painter) = 0;

    void updatePolish() override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

  private:
    QPointer<TimelineModel> m_timeline;
    QImage::Format m_format;
    QImage m_image;
    bool m_isNew = false; ///< the image has yet to reach the scene graph
};

} // namespace vantro::editor::bars
