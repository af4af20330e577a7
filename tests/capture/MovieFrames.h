#pragma once

#include "media/Asset.h"
#include "media/FrameSource.h"

#include <filesystem>
#include <vector>

namespace vantro::test {

/// Every picture of a movie's video track, in order.
inline std::vector<VideoFrame> framesOf(const std::filesystem::path& movie) {
    const Asset asset = Asset::open(movie);
    FrameSource source(asset, asset.tracks(MediaType::video).at(0).id);
    std::vector<VideoFrame> frames;
    const auto look = [&](MediaTime time) {
        auto frame = source.frameAt(time);
        if (frame && (frames.empty() || frame->presentationTime > frames.back().presentationTime))
            frames.push_back(*frame);
    };
    // Frames are at least 12 ms apart: no step of 4 ms leaves one out, but the last may be shorter.
    for (MediaTime time{0, 250}; time < asset.duration(); ++time.value)
        look(time);
    look(asset.duration());
    return frames;
}

} // namespace vantro::test
