#pragma once

#include "editor/bars/AccessibleBar.h"

#include <QColor>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::bars {

/// The blocks of the zooms, with their levels where there is room, and hatched those of suggested
/// ones. Its parts are all zooms that the film shows or would show, in view or not; below each its
/// two ends and what deletes it, or below a suggestion, a button that accepts it, what dismisses
/// it.
class ZoomBarPicture : public vantro::editor::bars::AccessibleBar {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int textSize MEMBER m_textSize NOTIFY madeFor) ///< pixels of the font
    Q_PROPERTY(QColor fill MEMBER m_fill NOTIFY madeFor)
    Q_PROPERTY(QColor outline MEMBER m_outline NOTIFY madeFor)
    Q_PROPERTY(QColor ink MEMBER m_ink NOTIFY madeFor)

  public:
    std::vector<BarPart> partsOf(const BarPart& part) const override;
    std::optional<BarPart> parentOf(const BarPart& part) const override;
    std::optional<ToldPart> told(const BarPart& part) const override;
    void press(const BarPart& part) override;
    void setSeconds(const BarPart& part, double seconds) override;

  private:
    void follow(TimelineModel& timeline) override;
    void paint(QPainter& painter) override;
    void paintSuggestion(QPainter& painter, const timeline::ZoomRow& row) const;
    QRectF blockOf(const timeline::ZoomRow& row) const;
    void paintBlock(QPainter& painter, const timeline::ZoomRow& row) const;
    std::optional<ToldPart> toldSuggestion(const BarPart& part) const;
    std::vector<BarPart> listedParts() const override;
    void select(const BarPart& part) override;

    int m_textSize = 11;
    QColor m_fill = Qt::black;
    QColor m_outline = Qt::black;
    QColor m_ink = Qt::white;
};

} // namespace vantro::editor::bars
