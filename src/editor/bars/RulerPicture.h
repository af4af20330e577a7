#pragma once

#include "editor/bars/BarPicture.h"

#include <QAccessible>
#include <QColor>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::bars {

/// The ticks of the ruler, majors twice as high as minors, and the times above them. Assistive
/// technology is told of each time as a text.
class RulerPicture : public vantro::editor::bars::BarPicture {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name MEMBER m_name NOTIFY madeFor)            ///< of the ruler
    Q_PROPERTY(double tickHeight MEMBER m_tickHeight NOTIFY madeFor) ///< of majors, points
    Q_PROPERTY(int textSize MEMBER m_textSize NOTIFY madeFor)        ///< pixels of the font
    Q_PROPERTY(QColor tickColor MEMBER m_tickColor NOTIFY madeFor)
    Q_PROPERTY(QColor textColor MEMBER m_textColor NOTIFY madeFor)

  public:
    struct Label {
        QString text;
        double left = 0;   ///< points
        double extent = 0; ///< points
    };

    RulerPicture();
    ~RulerPicture() override;

    const QString& name() const { return m_name; }
    /// The times in view, from left to right.
    std::vector<Label> labels() const;
    /// Of one of them: whichever stands at that place.
    QAccessibleInterface* nodeOf(std::size_t label);

  private:
    void follow(TimelineModel& timeline) override;
    void paint(QPainter& painter) override;
    QFont font() const;
    void tellLabels();

    QString m_name;
    double m_tickHeight = 6;
    int m_textSize = 11;
    QColor m_tickColor = Qt::black;
    QColor m_textColor = Qt::black;
    std::vector<QAccessible::Id> m_nodes; ///< of the labels that were asked about
    std::vector<QString> m_told;          ///< the texts of labels, as told last
};

} // namespace vantro::editor::bars
