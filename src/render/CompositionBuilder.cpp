#include "render/CompositionBuilder.h"

#include "model/VantroError.h"

namespace vantro::render {
namespace {

/// One track of the composition under construction and the asset's track that fills it.
struct TrackPair {
    media::CompositionTrack* target;
    const media::AssetTrack* source;
};

void append(const TrackPair& pair, media::MediaTimeRange range, media::MediaTime at,
            media::MediaTime playedDuration) {
    pair.target->insert(range, *pair.source, at);
    if (playedDuration != range.duration)
        pair.target->scale({at, range.duration}, playedDuration);
}

} // namespace

media::Composition buildComposition(const media::Asset& asset, const media::AssetTrack& videoTrack,
                                    std::span<const model::TimelineSegment> segments) {
    media::Composition composition(asset);
    const auto audioTracks = asset.tracks(media::MediaType::audio);
    std::vector<TrackPair> pairs{{&composition.addTrack(media::MediaType::video), &videoTrack}};
    for (const auto& track : audioTracks)
        pairs.push_back({&composition.addTrack(media::MediaType::audio), &track});

    const double sourceDuration = asset.duration().seconds();
    media::MediaTime cursor;
    for (const auto& segment : segments) {
        const auto start = media::MediaTime::fromSeconds(segment.startFraction * sourceDuration);
        const auto end = media::MediaTime::fromSeconds(segment.endFraction * sourceDuration);
        const media::MediaTimeRange range{start, end - start};
        const auto played =
            segment.speed == 1.0
                ? range.duration
                : media::MediaTime::fromSeconds(range.duration.seconds() / segment.speed);
        if (played <= media::MediaTime{})
            continue; // shorter than a tick: nothing to show
        for (const auto& pair : pairs)
            append(pair, range, cursor, played);
        cursor = cursor + played;
    }
    if (cursor == media::MediaTime{})
        throw model::VantroError(model::VantroError::Kind::exportFailed,
                                 "Nothing is left of the recording");
    return composition;
}

} // namespace vantro::render
