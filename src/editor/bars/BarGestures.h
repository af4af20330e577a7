#pragma once

#include "editor/bars/TimelineModel.h"

#include <QTimer>
#include <optional>
#include <string>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::bars {

/// Pointer and arrow keys on the bars. Every step of a drag is worked out from how things stood at
/// the press, and a drag is one step of the document. A drag held beyond an end of a magnified view
/// scrolls it, the faster the farther out it is. x in points from the left end of the bars.
/// Main thread.
///
///     idle ──press──> pressed ──travel──> dragging ──release, cancel──> idle
///       │               └──release: a click, or cancel──> idle
///       └──press where the playhead follows at once──> dragging
class BarGestures : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")

  public:
    // QML takes names of constants only with a capital letter.
    // NOLINTBEGIN(readability-identifier-naming)
    enum class Bar { Ruler, Segments, Zooms };
    Q_ENUM(Bar)
    enum class ZoomPart { Body, Start, End };
    Q_ENUM(ZoomPart)
    // NOLINTEND(readability-identifier-naming)

    BarGestures(TimelineModel& model, TimelineEdits& edits);

    Q_INVOKABLE void press(vantro::editor::bars::BarGestures::Bar bar, double x, bool marks);
    Q_INVOKABLE void move(double x);
    Q_INVOKABLE void release(double x);
    /// Takes the drag back.
    Q_INVOKABLE void cancel();
    /// Adds a zoom where the zoom bar is empty.
    Q_INVOKABLE void doubleClick(vantro::editor::bars::BarGestures::Bar bar, double x);
    /// What a press there would take hold of: "", "move" or "resize"; or "accept".
    Q_INVOKABLE QString grip(vantro::editor::bars::BarGestures::Bar bar, double x) const;
    bool isIdle() const { return m_state == State::idle; }

    // By the keyboard, on what the Tab key goes to; nothing where there is nothing. A run of zooms
    // that are drawn as one stands for its first.
    Q_INVOKABLE void selectZoom();
    Q_INVOKABLE void selectSegment();
    /// The zoom or segment of the edit `by` places on is selected and brought into view.
    Q_INVOKABLE void stepZoom(int by);
    Q_INVOKABLE void stepSegment(int by);
    Q_INVOKABLE void setZoom(vantro::editor::bars::BarGestures::ZoomPart part, double seconds);
    /// `row` of the model of edges.
    Q_INVOKABLE void setEdge(int row, double seconds);
    /// With its silenced clicks.
    Q_INVOKABLE void deleteZoom();
    // The suggested zoom; the next one is selected.
    Q_INVOKABLE void acceptSuggestion();
    Q_INVOKABLE void dismissSuggestion();
    Q_INVOKABLE void stepSuggestion(int by);
    // The same by assistive technology, on any.
    void deleteZoom(const model::Uuid& id);
    void moveZoomTo(const model::Uuid& id, timeline::ZoomPart part, double seconds);
    void moveEdgeTo(timeline::SegmentEdge edge, double seconds);

  private:
    enum class State { idle, pressed, dragging };
    enum class Target { playhead, mark, zoom, suggestion, edge };
    /// How things stood when the button went down.
    struct Press {
        Bar bar = Bar::Ruler;
        double x = 0;
        double place = 0; ///< of the source; not limited to it
        Target target = Target::playhead;
        timeline::ZoomHit zoom = {};
        timeline::SegmentEdge edge = {};
        timeline::Zooms zooms = {};
        timeline::Segments segments = {};
        double playhead = 0; ///< of the source
        std::string key = {};
    };

    void enter(State next);
    Press pressAt(Bar bar, double x, bool marks) const;
    double travel() const;
    void begin();
    void step(double x);
    void follow(double x);
    void scrollOn();
    void click();
    void takeBack();
    void seek(double place);
    std::optional<model::Uuid> suggestionBeside(const model::Uuid& id, int by) const;
    void answerSuggestion(void (ZoomSuggestions::*answer)(const model::Uuid&));
    void moveZoom(const timeline::ZoomDrag& drag, timeline::ZoomPart part, double seconds,
                  const std::string& key);

    TimelineModel& m_model;
    TimelineEdits& m_edits;
    State m_state = State::idle;
    Press m_press;
    double m_x = 0; ///< of the pointer, in a drag
    QTimer m_scrolling;
};

} // namespace vantro::editor::bars
