#pragma once

namespace vantro::media {

/// How one sound track is heard beside the others. A value.
struct TrackMix {
    float volume = 1; ///< 0 to 2
    bool noiseReduced = false;
    bool operator==(const TrackMix&) const = default;
};

} // namespace vantro::media
