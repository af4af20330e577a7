#pragma once

#include "app/state/AppState.h"
#include "editor/PlayerTimeObserver.h"
#include "timeline/SegmentRules.h"
#include "timeline/TimelineRows.h"
#include "timeline/ZoomRules.h"

#include <string>

namespace vantro::editor::bars {

/// The edit as the time line sees and changes it: zooms, segments, what is selected of them, and
/// where the playhead is. Holds nothing itself. Main thread.
class TimelineEdits {
  public:
    TimelineEdits(app::AppState& state, PlayerTimeObserver& transport)
        : m_state(state), m_transport(transport) {}

    app::AppState& state() { return m_state; }
    PlayerTimeObserver& transport() { return m_transport; }

    /// Of the source, seconds: the movie's, until that is known the recording's; 0 without one.
    double duration() const;
    /// One picture of the recording: seconds, and as a fraction of the source.
    double frameSeconds() const;
    double frame() const;

    const timeline::Zooms& zooms() const { return m_state.editableClickEvents(); }
    const timeline::Segments& segments() const { return m_state.segments(); }
    void setZooms(timeline::Zooms zooms, app::EditDocument::Step step);
    void setSegments(timeline::Segments segments, app::EditDocument::Step step);
    /// Moves the zoom or one of its ends from where it was at the drag's beginning. Equal keys are
    /// one step.
    void moveZoom(const timeline::ZoomDrag& drag, timeline::ZoomPart part, double seconds,
                  const std::string& key);

    // A zoom or a segment is selected, never both, so that Delete is never a surprise.
    void selectZoom(const model::Uuid& id);
    void selectSegment(const model::Uuid& id);
    void selectSegmentAt(double place);
    void clearSelection();
    /// Lets go of what is no longer there.
    void dropStaleSelection();

  private:
    app::AppState& m_state;
    PlayerTimeObserver& m_transport;
};

/// In which an edge is moved.
app::EditDocument::Step stepOf(timeline::SegmentEdge::Kind edge, const std::string& key);

/// A key that joins the steps of one gesture in the document, and no others.
std::string newGestureKey();

} // namespace vantro::editor::bars
