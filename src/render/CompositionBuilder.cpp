#include "render/CompositionBuilder.h"

#include "model/VantroError.h"

namespace vantro::render {
namespace {

/// A composition under construction: its tracks, and the asset's that fill them, grow together.
class Builder {
  public:
    Builder(const media::Asset& asset, const media::AssetTrack& videoTrack)
        : m_composition(asset), m_audioTracks(asset.tracks(media::MediaType::audio)) {
        m_pairs.push_back({&m_composition.addTrack(media::MediaType::video), &videoTrack});
        for (const auto& track : m_audioTracks)
            m_pairs.push_back({&m_composition.addTrack(media::MediaType::audio), &track});
    }

    void append(media::MediaTimeRange range, media::MediaTime playedDuration) {
        for (const auto& [target, source] : m_pairs) {
            target->insert(range, *source, m_end);
            if (playedDuration != range.duration)
                target->scale({m_end, range.duration}, playedDuration);
        }
        m_end = m_end + playedDuration;
    }

    media::Composition finished() {
        if (m_end == media::MediaTime{})
            throw model::VantroError(model::VantroError::Kind::exportFailed,
                                     "Nothing is left of the recording");
        return std::move(m_composition);
    }

  private:
    struct TrackPair {
        media::CompositionTrack* target;
        const media::AssetTrack* source;
    };

    media::Composition m_composition;
    std::vector<media::AssetTrack> m_audioTracks;
    std::vector<TrackPair> m_pairs;
    media::MediaTime m_end;
};

} // namespace

media::Composition buildComposition(const media::Asset& asset, const media::AssetTrack& videoTrack,
                                    std::span<const model::TimelineSegment> segments) {
    Builder builder(asset, videoTrack);
    const double sourceDuration = asset.duration().seconds();
    for (const auto& segment : segments) {
        const auto start = media::MediaTime::fromSeconds(segment.startFraction * sourceDuration);
        const auto end = media::MediaTime::fromSeconds(segment.endFraction * sourceDuration);
        const media::MediaTimeRange range{start, end - start};
        const auto played =
            segment.speed == 1.0
                ? range.duration
                : media::MediaTime::fromSeconds(range.duration.seconds() / segment.speed);
        if (played > media::MediaTime{}) // else it is shorter than a tick: nothing to show
            builder.append(range, played);
    }
    return builder.finished();
}

media::Composition wholeComposition(const media::Asset& asset,
                                    const media::AssetTrack& videoTrack) {
    Builder builder(asset, videoTrack);
    builder.append({{}, asset.duration()}, asset.duration());
    return builder.finished();
}

} // namespace vantro::render
