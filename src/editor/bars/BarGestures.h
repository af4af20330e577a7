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
    enum class Bar { Ruler, Segments, Zooms };
    Q_ENUM(Bar)
    enum class ZoomPart { Body, Start, End };
    Q_ENUM(ZoomPart)

    BarGestures(TimelineModel& model, TimelineEdits& edits);

    Q_INVOKABLE void press(vantro::editor::bars::BarGestures::Bar bar, double x, bool marks);
    Q_INVOKABLE void move(double x);
    Q_INVOKABLE void release(double x);
    /// Takes the drag back.
    Q_INVOKABLE void cancel();
    /// Adds a zoom where the zoom bar is empty.
    Q_INVOKABLE void doubleClick(vantro::editor::bars::BarGestures::Bar bar, double x);
    /// What a press there would take hold of: "", "move" or "resize".
    Q_INVOKABLE QString grip(vantro::editor::bars::BarGestures::Bar bar, double x) const;
    bool isIdle() const { return m_state == State::idle; }

    // By the keyboard or assistive technology; rows as the models list them. One that is gone by
    // now does nothing. A run of zooms that are drawn as one stands for its first.
    Q_INVOKABLE void selectZoom(int row);
    Q_INVOKABLE void selectSegment(int row);
    /// The next zoom or segment of the edit, `by` rows on, is selected and brought into view. Gives
    /// its row, or -1 where there is none.
    Q_INVOKABLE int stepZoom(int row, int by);
    Q_INVOKABLE int stepSegment(int row, int by);
    Q_INVOKABLE void setZoom(int row, vantro::editor::bars::BarGestures::ZoomPart part,
                             double seconds);
    Q_INVOKABLE void setEdge(int row, double seconds);
    /// With its silenced clicks.
    Q_INVOKABLE void deleteZoom(int row);

  private:
    enum class State { idle, pressed, dragging };
    enum class Target { playhead, mark, zoom, edge };
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
