#include "media/Composition.h"

#include "base/Fatal.h"
#include "media/values/Fraction.h"
#include "media/values/MediaError.h"

#include <algorithm>

#include <fmt/format.h>

namespace vantro::media {

MediaTime CompositionTrack::duration() const {
    return m_segments.empty() ? MediaTime{} : m_segments.back().target.end();
}

void CompositionTrack::insert(MediaTimeRange range, const AssetTrack& source, MediaTime at) {
    base::require(at == duration(), "insertion somewhere else than at the track's end");
    base::require(m_segments.empty() || m_source.id == source.id, "a second source for one track");
    // A boundary rounded to the tick may lie past the end by less than that tick.
    const MediaTime limit = m_assetDuration + MediaTime{1, MediaTime::boundaryTimescale};
    if (range.start < MediaTime{} || range.duration < MediaTime{} || range.end() > limit)
        throw MediaError(fmt::format("The range from {:.3f} s to {:.3f} s lies outside of the "
                                     "recording, which lasts {:.3f} s",
                                     range.start.seconds(), range.end().seconds(),
                                     m_assetDuration.seconds()));
    m_source = source;
    m_segments.push_back({range, {at, range.duration}});
}

void CompositionTrack::scale(MediaTimeRange range, MediaTime newDuration) {
    const auto segment = std::ranges::find(m_segments, range, &CompositionSegment::target);
    base::require(segment != m_segments.end(), "no segment stands at the range to scale");
    base::require(newDuration > MediaTime{}, "a segment scaled to nothing");
    segment->target.duration = newDuration;
    for (auto next = std::next(segment); next != m_segments.end(); ++next)
        next->target.start = std::prev(next)->target.end();
}

std::optional<MediaTime> CompositionTrack::sourceTime(MediaTime t) const {
    const auto after = std::ranges::upper_bound(
        m_segments, t, {}, [](const CompositionSegment& segment) { return segment.target.start; });
    if (after == m_segments.begin())
        return {};
    const CompositionSegment& segment = *std::prev(after);
    if (!segment.target.contains(t))
        return {};
    const Fraction played = Fraction(t) - Fraction(segment.target.start);
    const Fraction rate = Fraction(segment.source.duration) / Fraction(segment.target.duration);
    return MediaTime::nearestTo(Fraction(segment.source.start) + played * rate);
}

CompositionTrack& Composition::addTrack(MediaType type) {
    const int id = static_cast<int>(m_tracks.size()) + 1;
    return m_tracks.emplace_back(id, type, m_asset.duration());
}

const CompositionTrack* Composition::track(int id) const {
    const auto found = std::ranges::find(m_tracks, id, &CompositionTrack::id);
    return found == m_tracks.end() ? nullptr : &*found;
}

MediaTime Composition::duration() const {
    MediaTime longest;
    for (const auto& track : m_tracks)
        longest = std::max(longest, track.duration());
    return longest;
}

} // namespace vantro::media
