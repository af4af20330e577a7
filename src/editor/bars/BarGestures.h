#pragma once

#include "editor/bars/BarPress.h"

#include <QTimer>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::bars {

/// The pointer on the bars. Every step of a drag is worked out from how things stood at
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

  private:
    enum class State { idle, pressed, dragging };
    using Target = BarPress::Target;

    void enter(State next);
    BarPress pressAt(Bar bar, double x, bool marks) const;
    void begin();
    void step(double x);
    void follow(double x);
    void scrollOn();
    void click();
    void takeBack();
    void seek(double place);

    TimelineModel& m_model;
    TimelineEdits& m_edits;
    State m_state = State::idle;
    BarPress m_press; ///< how things stood when the button went down
    double m_x = 0;   ///< of the pointer, in a drag
    QTimer m_scrolling;
};

} // namespace vantro::editor::bars
