#pragma once

#include "editor/bars/RowList.h"
#include "editor/bars/TimelineEdits.h"
#include "editor/bars/ZoomSuggestions.h"
#include "timeline/TimeAxis.h"
#include "timeline/TimelineRows.h"

#include <QObject>
#include <QString>
#include <optional>
#include <utility>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::bars {

/// What the bars of the time line show: the marks of the ruler, kept and cut pieces with their
/// edges, zooms, the playhead and a marked range, all on one axis. Follows the edit and the
/// transport; of its own it only has the axis, the mark and a hint. Lengths in points. Main thread.
class TimelineModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    // What the Tab key goes to: one segment with its edges, one zoom and
    // one suggestion. Only these have items.
    Q_PROPERTY(QAbstractItemModel* segments READ segments CONSTANT)
    Q_PROPERTY(QAbstractItemModel* edges READ edges CONSTANT)
    Q_PROPERTY(QAbstractItemModel* zooms READ zooms CONSTANT)
    Q_PROPERTY(QAbstractItemModel* suggestions READ suggestions CONSTANT)
    Q_PROPERTY(double handleWidth READ handleWidth CONSTANT)
    /// Of all rows; set by who draws them.
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY axisChanged)
    /// The part in view, fractions of the source.
    Q_PROPERTY(double viewStart READ viewStart NOTIFY axisChanged)
    Q_PROPERTY(double viewSpan READ viewSpan NOTIFY axisChanged)
    Q_PROPERTY(double playheadX READ playheadX NOTIFY playheadChanged)
    Q_PROPERTY(double duration READ duration NOTIFY contentChanged)
    Q_PROPERTY(double frameSeconds READ frameSeconds NOTIFY contentChanged)
    /// A range is being marked: its extent, no wider than what is in view.
    Q_PROPERTY(bool marked READ isMarked NOTIFY markChanged)
    Q_PROPERTY(double markX READ markX NOTIFY markChanged)
    Q_PROPERTY(double markWidth READ markWidth NOTIFY markChanged)
    /// Why the last action did nothing; one sentence.
    Q_PROPERTY(QString hint READ hint NOTIFY hintChanged)

  public:
    /// A marked range, fractions of the source; `to` is missing until it is set.
    struct Mark {
        std::optional<double> from = {};
        std::optional<double> to = {};
        bool isRange() const { return from && to && *from != *to; }
        bool operator==(const Mark&) const = default;
    };

    TimelineModel(TimelineEdits& edits, ZoomSuggestions& suggestions);

    QAbstractItemModel* segments() { return &m_segmentStops; }
    QAbstractItemModel* edges() { return &m_edgeStops; }
    QAbstractItemModel* zooms() { return &m_zoomStops; }
    QAbstractItemModel* suggestions() { return &m_suggestionStops; }
    // All that is in view.
    const std::vector<timeline::RulerMark>& marks() const { return m_marks; }
    const std::vector<timeline::SegmentRow>& segmentRows() const { return m_segments; }
    const std::vector<timeline::GapRow>& gapRows() const { return m_gaps; }
    const std::vector<timeline::EdgeRow>& edgeRows() const { return m_edges; }
    const std::vector<timeline::ZoomRow>& zoomRows() const { return m_zooms; }
    /// Zooms that are proposed.
    const std::vector<timeline::ZoomRow>& suggestedRows() const { return m_suggested; }
    TimelineEdits& edits() const { return m_edits; }
    ZoomSuggestions& proposals() const { return m_proposals; }

    /// Wide enough to be hit, narrow enough to leave the blocks of short zooms a body.
    static constexpr double handleWidth() { return 8; }
    const timeline::TimeAxis& axis() const { return m_axis; }
    double width() const { return m_axis.width; }
    void setWidth(double width);
    double viewStart() const { return m_axis.start; }
    double viewSpan() const { return m_axis.span; }
    double playheadX() const;
    // The rows that the Tab key goes to; -1 where there are none.
    int zoomStop() const;
    int suggestionStop() const;
    int segmentStop() const;
    double duration() const { return m_edits.duration(); }
    double frameSeconds() const { return m_edits.frameSeconds(); }

    const Mark& mark() const { return m_mark; }
    void setMark(const Mark& mark);
    bool isMarked() const { return m_mark.from || m_mark.to; }
    double markX() const;
    double markWidth() const;
    const QString& hint() const { return m_hint; }
    void setHint(const QString& hint);

    /// Around what stands at `x`.
    Q_INVOKABLE void magnify(double factor, double x);
    /// Around the playhead, where that is in view, else around the middle.
    Q_INVOKABLE void magnifyHere(double factor);
    Q_INVOKABLE void scroll(double points);
    Q_INVOKABLE void scrollTo(double start);
    Q_INVOKABLE void fit() { setAxis(m_axis.fitted()); }
    Q_INVOKABLE void reveal(double seconds);
    /// A turn of the wheel in eighths of a degree: magnifies, or scrolls sideways.
    Q_INVOKABLE void wheel(double x, double sideways, double upward);

  Q_SIGNALS:
    void axisChanged();
    void playheadChanged();
    void markChanged();
    void hintChanged();
    void contentChanged();
    // Rows have changed.
    void marksShown();
    void segmentsShown(); ///< gaps and edges too
    void zoomsShown();    ///< suggested ones too

  private:
    void followEverything();
    void setAxis(timeline::TimeAxis axis);
    void showAll();
    void showMarks();
    void showSegments();
    void showZooms();
    void followPlayhead();

    TimelineEdits& m_edits;
    ZoomSuggestions& m_proposals;
    timeline::TimeAxis m_axis;
    Mark m_mark;
    QString m_hint;
    std::pair<double, double> m_content; ///< duration and frameSeconds, as told last
    std::vector<timeline::RulerMark> m_marks;
    std::vector<timeline::SegmentRow> m_segments;
    std::vector<timeline::GapRow> m_gaps;
    std::vector<timeline::EdgeRow> m_edges;
    std::vector<timeline::ZoomRow> m_zooms;
    std::vector<timeline::ZoomRow> m_suggested;
    RowList<timeline::SegmentRow> m_segmentStops;
    RowList<timeline::EdgeRow> m_edgeStops;
    RowList<timeline::ZoomRow> m_zoomStops;
    RowList<timeline::ZoomRow> m_suggestionStops;
};

} // namespace vantro::editor::bars
