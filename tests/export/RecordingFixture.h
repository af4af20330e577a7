#pragma once

#include "media/values/PixelBuffer.h"
#include "model/Project.h"
#include "render/MovieSession.h"
#include "support/TemporaryFolder.h"

#include <functional>

#include <nlohmann/json.hpp>

namespace vantro::test {

using test::TemporaryFolder;

struct Rgb {
    int red = 0;
    int green = 0;
    int blue = 0;
};

/// The same picture as bgra.
std::shared_ptr<const media::PixelBuffer> asBgra(std::shared_ptr<const media::PixelBuffer> pixels);

/// The mean color of a small square round (x, y).
Rgb meanColor(const media::PixelBuffer& bgra, int x, int y);
/// Largest difference of any channel.
int distance(Rgb a, Rgb b);

using FramePainter = std::function<void(media::PixelBuffer& bgra, int frame)>;

/// Writes a real H.264 movie at a constant rate, as a recording would be.
void writeMovie(const std::filesystem::path& path, int width, int height, int frameRate,
                int frameCount, const FramePainter& paint, double keyframeInterval = 0.5);

/// One flat color over the whole frame.
void fill(media::PixelBuffer& bgra, Rgb color);

/// A movie whose color tells the source second: red, green, blue, white, then again.
Rgb colorOfSecond(int second);
void writeColorClock(const std::filesystem::path& path, int width, int height, int frameRate,
                     int seconds);

/// Without padding, corners, cursor or zooms: output pixels are the recording's own.
model::Project plainProject(const std::filesystem::path& movie, int frameRate,
                            model::RecordingMetadata metadata = {});

/// Its film, drawn by the software renderer.
render::MovieSession film(const model::Project& project);

/// What an independent reader (ffprobe) says of a file's first video stream and format.
nlohmann::json probe(const std::filesystem::path& file);
/// What it says of all streams.
nlohmann::json probeStreams(const std::filesystem::path& file);
/// What it says of the packets of one stream, named as in "a:0".
nlohmann::json probePackets(const std::filesystem::path& file, const std::string& stream);

} // namespace vantro::test
