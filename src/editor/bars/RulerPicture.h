#pragma once

#include "editor/bars/BarPicture.h"

#include <QColor>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::bars {

/// The ticks of the ruler, majors twice as high as minors, and the times above them.
class RulerPicture : public vantro::editor::bars::BarPicture {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double tickHeight MEMBER m_tickHeight NOTIFY madeFor) ///< of majors, points
    Q_PROPERTY(int textSize MEMBER m_textSize NOTIFY madeFor)        ///< pixels of the font
    Q_PROPERTY(QColor tickColor MEMBER m_tickColor NOTIFY madeFor)
    Q_PROPERTY(QColor textColor MEMBER m_textColor NOTIFY madeFor)

  public:
    RulerPicture() : BarPicture(QImage::Format_ARGB32_Premultiplied) {}

  private:
    void follow(TimelineModel& timeline) override;
    void paint(QPainter& painter) override;

    double m_tickHeight = 6;
    int m_textSize = 11;
    QColor m_tickColor = Qt::black;
    QColor m_textColor = Qt::black;
};

} // namespace vantro::editor::bars
