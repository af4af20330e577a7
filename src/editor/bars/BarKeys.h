#pragma once

#include "editor/bars/BarGestures.h"

#include <optional>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::bars {

/// The keyboard and assistive technology on the bars. What would change a length does nothing while
/// the pointer drags. Times in seconds of the source. Main thread.
class BarKeys : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")

  public:
    // QML takes names of constants only with a capital letter.
    // NOLINTBEGIN(readability-identifier-naming)
    enum class ZoomPart { Body, Start, End };
    Q_ENUM(ZoomPart)
    // NOLINTEND(readability-identifier-naming)

    /// All of them outlive this.
    BarKeys(TimelineModel& model, TimelineEdits& edits, const BarGestures& gestures)
        : m_model(model), m_edits(edits), m_gestures(gestures) {}

    // By the keyboard, on what the Tab key goes to; nothing where there is nothing. A run of zooms
    // that are drawn as one stands for its first.
    Q_INVOKABLE void selectZoom();
    Q_INVOKABLE void selectSegment();
    /// The zoom or segment of the edit `by` places on is selected and brought into view.
    Q_INVOKABLE void stepZoom(int by);
    Q_INVOKABLE void stepSegment(int by);
    Q_INVOKABLE void setZoom(vantro::editor::bars::BarKeys::ZoomPart part, double seconds);
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
    std::optional<model::Uuid> suggestionBeside(const model::Uuid& id, int by) const;
    void answerSuggestion(void (ZoomSuggestions::*answer)(const model::Uuid&));

    TimelineModel& m_model;
    TimelineEdits& m_edits;
    const BarGestures& m_gestures;
};

} // namespace vantro::editor::bars
