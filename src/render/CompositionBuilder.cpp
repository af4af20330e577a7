#include "render/CompositionBuilder.h"

#include "model/VantroError.h"

namespace vantro {
namespace {

/// One track of the composition under construction and the asset's track that fills it.
struct TrackPair {
    CompositionTrack* target;
    const AssetTrack* source;
};

void append(const TrackPair& pair, MediaTimeRange range, MediaTime at, MediaTime playedDuration) {
    pair.target->insert(range, *pair.source, at);
    if (playedDuration != range.duration)
        pair.target->scale({at, range.duration}, playedDuration);
}

} // namespace

Composition buildComposition(const Asset& asset, const AssetTrack& videoTrack,
                             std::span<const TimelineSegment> segments) {
    Composition composition(asset);
    const auto audioTracks = asset.tracks(MediaType::audio);
    std::vector<TrackPair> pairs{{&composition.addTrack(MediaType::video), &videoTrack}};
    for (const auto& track : audioTracks)
        pairs.push_back({&composition.addTrack(MediaType::audio), &track});

    const double sourceDuration = asset.duration().seconds();
    MediaTime cursor;
    for (const auto& segment : segments) {
        const auto start = MediaTime::fromSeconds(segment.startFraction * sourceDuration);
        const auto end = MediaTime::fromSeconds(segment.endFraction * sourceDuration);
        const MediaTimeRange range{start, end - start};
        const auto played = segment.speed == 1.0
                                ? range.duration
                                : MediaTime::fromSeconds(range.duration.seconds() / segment.speed);
        if (played <= MediaTime{})
            continue; // shorter than a tick: nothing to show
        for (const auto& pair : pairs)
            append(pair, range, cursor, played);
        cursor = cursor + played;
    }
    if (cursor == MediaTime{})
        throw VantroError(VantroError::Kind::exportFailed, "Nothing is left of the recording");
    return composition;
}

VideoComposition buildVideoComposition(const Composition& composition, int frameRate,
                                       int renderWidth, int renderHeight,
                                       std::shared_ptr<VideoCompositor> compositor) {
    VideoComposition video;
    video.trackID = composition.tracks().front().id();
    video.frameDuration = {1, frameRate};
    video.renderWidth = renderWidth;
    video.renderHeight = renderHeight;
    video.compositor = std::move(compositor);
    return video;
}

} // namespace vantro
