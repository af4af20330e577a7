#pragma once

#include "model/Uuid.h"

#include <span>
#include <vector>

namespace vantro::model {

/// One mouse click and the zoom that it becomes.
/// Position: points from the capture rectangle's top-left corner, y downward. Times: seconds of
/// source time (from the start of the recording).
struct ClickEvent {
    static constexpr double defaultOffset = 1.5;
    static constexpr double defaultZoomLevel = 1.5;

    Uuid id = Uuid::random();
    double x = 0;
    double y = 0;
    double timestamp = 0;
    bool isRightClick = false;
    double startOffset = defaultOffset; ///< how long before `timestamp` the zoom begins
    double endOffset = defaultOffset;   ///< how long after `timestamp` the zoom lasts
    double zoomLevel = defaultZoomLevel;
    bool operator==(const ClickEvent&) const = default;
};

/// Whether normalization has merged this event into a neighbor.
bool isSilenced(const ClickEvent& event);

/// Makes raw clicks into well-formed zoom events, in place: sorted by time, offsets clamped to the
/// recording of `duration` seconds, bursts merged into their first click, overlaps between
/// neighbors shrunk. Positions, zoom levels and identities stay as they are.
void normalizeClickEvents(std::vector<ClickEvent>& events, double duration);

} // namespace vantro::model
