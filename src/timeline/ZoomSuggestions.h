#pragma once

#include "model/Geometry.h"
#include "model/RecordingMetadata.h"
#include "timeline/ZoomRules.h"

#include <optional>
#include <vector>

namespace vantro::timeline {

/// Zooms for what was not clicked, or whose clicks the desktop did not tell: where the pointer came
/// to rest and the picture changed beside it. Pure; times in seconds of source time, places in
/// points from the capture rectangle's top left corner.

/// The pointer stayed in one place, give or take a small motion.
struct Rest {
    double start = 0;
    double end = 0;
    model::Point place;
    bool isReached = false; ///< it came from farther away
    bool operator==(const Rest&) const = default;
};

/// All rests within the capture rectangle, in time order. `positions` as in the metadata.
std::vector<Rest> restsOf(const std::vector<model::CursorPosition>& positions, model::Size area);

/// For each rest, when the picture began to change beside the pointer, if it did.
using ChangesAtRests = std::vector<std::optional<double>>;

struct Suggestion {
    enum class Reason {
        change, ///< the picture changed where the pointer was
        rest,   ///< the pointer went there and stayed
    };
    model::ClickEvent zoom;
    Reason reason = Reason::rest;
};

/// What there is room for among `zooms`, in time order. Without `changes`, where the picture could
/// not be looked at, every place counts where the pointer went and stayed for a moment; with them
/// only those where it stayed for long, or something changed.
std::vector<Suggestion> suggestedZooms(const std::vector<Rest>& rests,
                                       const std::optional<ChangesAtRests>& changes,
                                       const Zooms& zooms, double duration);

/// Those that are not among `zooms` yet, and overlap no active one.
std::vector<Suggestion> openSuggestions(const std::vector<Suggestion>& suggestions,
                                        const Zooms& zooms);
/// `zooms` with `suggestions`, which must be open, among them.
Zooms withSuggestions(const Zooms& zooms, const std::vector<Suggestion>& suggestions);

} // namespace vantro::timeline
