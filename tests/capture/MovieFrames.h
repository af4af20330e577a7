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

/// Those of the pictures that turn to what is looked for, as `isIt` says of their pixels.
template <typename IsIt>
std::vector<media::VideoFrame> turning(const std::vector<media::VideoFrame>& frames, IsIt isIt) {
    std::vector<media::VideoFrame> found;
    bool was = false;
    for (const auto& frame : frames) {
        const bool is = isIt(*frame.pixels);
        if (is && !was)
            found.push_back(frame);
        was = is;
    }
    return found;
}

/// When these pictures are shown, seconds.
inline std::vector<double> timesOf(const std::vector<media::VideoFrame>& frames) {
    std::vector<double> times;
    times.reserve(frames.size());
    for (const auto& frame : frames)
        times.push_back(frame.presentationTime.seconds());
    return times;
}

} // namespace vantro::test
