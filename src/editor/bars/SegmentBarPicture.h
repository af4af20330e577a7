#pragma once

#include "editor/bars/AccessibleBar.h"

#include <QColor>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::bars {

/// The pieces of the recording that are kept, with their speeds where those are not the usual one,
/// what was cut, and the edges between them. Its parts are all pieces and then all edges, in view
/// and with room or not.
class SegmentBarPicture : public vantro::editor::bars::AccessibleBar {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int textSize MEMBER m_textSize NOTIFY madeFor) ///< pixels of the font
    Q_PROPERTY(QColor kept MEMBER m_kept NOTIFY madeFor)
    Q_PROPERTY(QColor keptSelected MEMBER m_keptSelected NOTIFY madeFor)
    Q_PROPERTY(QColor outline MEMBER m_outline NOTIFY madeFor) ///< of the selected piece
    Q_PROPERTY(QColor gap MEMBER m_gap NOTIFY madeFor)
    Q_PROPERTY(QColor handle MEMBER m_handle NOTIFY madeFor)
    Q_PROPERTY(QColor ground MEMBER m_ground NOTIFY madeFor) ///< sets handles off from pictures
    Q_PROPERTY(QColor badge MEMBER m_badge NOTIFY madeFor)
    Q_PROPERTY(QColor ink MEMBER m_ink NOTIFY madeFor)

  public:
    std::optional<ToldPart> told(const BarPart& part) const override;
    void setSeconds(const BarPart& part, double seconds) override;

  private:
    void follow(TimelineModel& timeline) override;
    void paint(QPainter& painter) override;
    void paintPiece(QPainter& painter, const timeline::SegmentRow& row) const;
    void paintBadge(QPainter& painter, const timeline::SegmentRow& row) const;
    void paintEdge(QPainter& painter, const timeline::EdgeRow& row) const;
    std::vector<BarPart> listedParts() const override;
    void select(const BarPart& part) override;
    std::optional<timeline::SegmentEdge> edgeOf(const BarPart& part) const;

    int m_textSize = 11;
    QColor m_kept;
    QColor m_keptSelected;
    QColor m_outline;
    QColor m_gap;
    QColor m_handle;
    QColor m_ground;
    QColor m_badge;
    QColor m_ink;
};

} // namespace vantro::editor::bars
