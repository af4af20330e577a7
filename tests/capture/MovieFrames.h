#pragma once

#include "media/Asset.h"
#include "media/FrameSource.h"

#include <filesystem>
#include <vector>

namespace vantro::test {

/// Every picture of a movie's video track, in order.
inline std::vector<media::VideoFrame> framesOf(const std::filesystem::path& movie) {
    const media::Asset asset = media::Asset::open(movie);
    media::FrameSource source(asset, asset.tracks(media::MediaType::video).at(0).id);
    std::vector<media::VideoFrame> frames;
    const auto look = [&](media::MediaTime time) {
        auto frame = source.frameAt(time);
        if (frame && (frames.empty() || frame->presentationTime > frames.back().presentationTime))
            frames.push_back(*frame);
    };
    // Frames are at least 12 ms apart: no step of 4 ms leaves one out, but the last may be shorter.
    for (media::MediaTime time{0, 250}; time < asset.duration(); ++time.value)
        look(time);
    look(asset.duration());
    return frames;
}

} // namespace vantro::test
