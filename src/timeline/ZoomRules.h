#pragma once

#include "model/ClickEvent.h"
#include "model/Geometry.h"
#include "model/SharedList.h"
#include "model/TimelineSegment.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vantro::timeline {

/// Rules for editing zooms by hand. Pure; times in seconds of source time.
///
/// A zoom is active unless normalization merged it into another (model::isSilenced). Active zooms
/// never come to overlap: where they already do, in a file from elsewhere, no step makes it worse.
using Zooms = model::SharedList<model::ClickEvent>;

/// Shortest lead-in and lead-out that can be set by hand: a little above what normalization leaves,
/// so that a zoom set by hand never passes for a silenced one.
inline constexpr double shortestLead = 0.1;
inline constexpr double lowestLevel = 1;
inline constexpr double highestLevel = 4;

const model::ClickEvent* findZoom(const Zooms& zooms, const model::Uuid& id);

/// How a zoom looked when a drag on it began. Every step is worked out from there, so that nothing
/// accumulates and a drag back to its start changes nothing.
struct ZoomDrag {
    Zooms before;
    model::Uuid id;
    double duration = 0; ///< of the source
};

/// The zoom moved by `delta`, between its active neighbors and the recording's ends. Silenced
/// clicks that belong to it move along.
Zooms moved(const ZoomDrag& drag, double delta);
/// Its beginning moved by `delta`: the lead-in grows to the left.
Zooms withStartMoved(const ZoomDrag& drag, double delta);
/// Its end moved by `delta`.
Zooms withEndMoved(const ZoomDrag& drag, double delta);

/// What the sidebar sets of one zoom. Lead times are limited as in a drag, the level to 1 to 4.
struct ZoomValues {
    std::optional<double> level = {};
    std::optional<double> leadIn = {};
    std::optional<double> leadOut = {};
    std::optional<model::Point> center =
        {}; ///< points from the capture rectangle's top left corner
};
Zooms changed(const Zooms& zooms, const model::Uuid& id, const ZoomValues& values, double duration);
/// The same for every active zoom; the center is left alone.
Zooms allChanged(const Zooms& zooms, const ZoomValues& values, double duration);

/// A new zoom at `time`, as long as usual or as the neighbors let it be; nothing where there is no
/// room for the shortest leads.
struct AddedZoom {
    Zooms zooms;
    model::Uuid id;
};
std::optional<AddedZoom> withZoomAt(const Zooms& zooms, double time, model::Point center,
                                    double duration);

/// Without the zoom and the silenced clicks that belong to it, which would else come back as zooms
/// of their own.
Zooms withoutZoom(const Zooms& zooms, const model::Uuid& id);
/// Without this event only.
Zooms withoutEvent(const Zooms& zooms, const model::Uuid& id);

/// Whether any was made by hand: it is no recorded click.
bool hasHandmade(const Zooms& zooms, const Zooms& recordedClicks);

/// Where a zoom stands on the time line, as fractions of the source. Nothing for a silenced one,
/// and where the film does not show its click. Clipped to what the film keeps.
struct ZoomPlace {
    double start = 0;
    double end = 0;
    bool operator==(const ZoomPlace&) const = default;
};
std::optional<ZoomPlace> placeOf(const model::ClickEvent& zoom,
                                 std::span<const model::TimelineSegment> segments, double duration);
/// "1.5x"
std::string levelLabel(double level);

} // namespace vantro::timeline
