#pragma once

#include "editor/bars/BarPicture.h"
#include "editor/bars/StripModel.h"
#include "editor/bars/StripTiles.h"

#include <QColor>
#include <QPointer>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::bars {

/// The recording's thumbnails and below them its waveform, where the axis of the time line has
/// them. Pictures are dimmed so far that what stands on them can be told from white ones too.
/// Nothing is drawn of a recording that has neither.
class RecordingStrip : public vantro::editor::bars::BarPicture {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(vantro::editor::bars::StripModel* strip READ strip WRITE setStrip NOTIFY madeFor)
    /// Where pictures are yet to come; behind the waveform; of the waveform.
    Q_PROPERTY(QColor emptyColor MEMBER m_emptyColor NOTIFY madeFor)
    Q_PROPERTY(QColor groundColor MEMBER m_groundColor NOTIFY madeFor)
    Q_PROPERTY(QColor waveColor MEMBER m_waveColor NOTIFY madeFor)

  public:
    RecordingStrip();

    StripModel* strip() const { return m_strip; }
    void setStrip(StripModel* strip);

  private:
    void follow(TimelineModel& timeline) override;
    bool isEmpty() const override;
    void paint(QPainter& painter) override;
    double picturesHeight() const;
    void paintPictures(QPainter& painter, const StripTiles& tiles, double width) const;
    void paintWave(QPainter& painter) const;

    QPointer<StripModel> m_strip;
    QColor m_emptyColor;
    QColor m_groundColor;
    QColor m_waveColor;
};

} // namespace vantro::editor::bars
