#pragma once

#include "media/Asset.h"

#include <deque>
#include <optional>
#include <vector>

namespace vantro::media {

/// A stretch of an asset's track placed on a composition's time line, stretched or squeezed to
/// `target.duration`.
struct CompositionSegment {
    MediaTimeRange source;
    MediaTimeRange target;
};

/// One track of a composition: segments in order, back to back.
class CompositionTrack {
  public:
    CompositionTrack(int id, MediaType type, MediaTime assetDuration)
        : m_id(id), m_type(type), m_assetDuration(assetDuration) {}

    int id() const { return m_id; }
    MediaType type() const { return m_type; }
    const AssetTrack& source() const { return m_source; }
    const std::vector<CompositionSegment>& segments() const { return m_segments; }
    MediaTime duration() const;

    /// Appends `range` of `source` at `at`, which is the track's end; anything else is fatal, as is
    /// a second source. Throws MediaError for a range that leaves the asset by a boundary tick or
    /// more; where the source track is shorter than its asset, its last picture stays.
    void insert(MediaTimeRange range, const AssetTrack& source, MediaTime at);
    /// Gives the segment that stands exactly at `range` a new length; later ones move along.
    void scale(MediaTimeRange range, MediaTime newDuration);

    /// Where `t` of the composition lies in the source; nothing outside of all segments. Exact
    /// wherever a 32-bit timescale can express it, else to the nanosecond.
    std::optional<MediaTime> sourceTime(MediaTime t) const;

  private:
    int m_id;
    MediaType m_type;
    MediaTime m_assetDuration;
    AssetTrack m_source;
    std::vector<CompositionSegment> m_segments;
};

/// Ranges of one asset's tracks put together into a new time line. A value; building it reads no
/// media.
class Composition {
  public:
    explicit Composition(Asset asset) : m_asset(std::move(asset)) {}

    const Asset& asset() const { return m_asset; }
    CompositionTrack& addTrack(MediaType type);
    const std::deque<CompositionTrack>& tracks() const { return m_tracks; }
    const CompositionTrack* track(int id) const;
    MediaTime duration() const;

  private:
    Asset m_asset;
    std::deque<CompositionTrack> m_tracks; // a deque: references that addTrack gave stay valid
};

} // namespace vantro::media
