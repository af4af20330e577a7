#pragma once

#include "editor/bars/StripModel.h"
#include "editor/bars/TimelineModel.h"

#include <QColor>
#include <QImage>
#include <QPointer>
#include <QQuickItem>

#include <QtQml/qqmlregistration.h>

class QPainter;

namespace vantro::editor::bars {

/// Draws the recording's thumbnails and below them its waveform, as one picture, where the axis of
/// the time line has them. Pictures are dimmed so far that what stands on them can be told from
/// white ones too. Nothing is drawn of a recording that has neither.
class RecordingStrip : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(vantro::editor::bars::StripModel* strip READ strip WRITE setStrip NOTIFY madeFor)
    Q_PROPERTY(vantro::editor::bars::TimelineModel* timeline READ timeline WRITE setTimeline NOTIFY
                   madeFor)
    /// Where pictures are yet to come; behind the waveform; of the waveform.
    Q_PROPERTY(QColor emptyColor MEMBER m_emptyColor NOTIFY madeFor)
    Q_PROPERTY(QColor groundColor MEMBER m_groundColor NOTIFY madeFor)
    Q_PROPERTY(QColor waveColor MEMBER m_waveColor NOTIFY madeFor)

  public:
    RecordingStrip();

    StripModel* strip() const { return m_strip; }
    void setStrip(StripModel* strip);
    TimelineModel* timeline() const { return m_timeline; }
    void setTimeline(TimelineModel* timeline);

  Q_SIGNALS:
    void madeFor();

  protected:
    void updatePolish() override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

  private:
    double picturesHeight() const;
    void paintPictures(QPainter& painter, const StripTiles& tiles, double width) const;
    void paintWave(QPainter& painter, double ratio) const;

    QPointer<StripModel> m_strip;
    QPointer<TimelineModel> m_timeline;
    QColor m_emptyColor;
    QColor m_groundColor;
    QColor m_waveColor;
    QImage m_image;
    bool m_isNew = false; ///< the image has yet to reach the scene graph
};

} // namespace vantro::editor::bars
