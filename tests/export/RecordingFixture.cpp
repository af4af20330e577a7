#include "export/RecordingFixture.h"

#include "media/AssetWriter.h"
#include "media/color/ColorConversion.h"
#include "render/RendererFactory.h"
#include "support/Ffmpeg.h"

namespace vantro::test {

std::shared_ptr<const media::PixelBuffer> asBgra(std::shared_ptr<const media::PixelBuffer> pixels) {
    if (pixels->format() == media::PixelFormat::bgra)
        return pixels;
    auto bgra =
        media::PixelBuffer::allocate(media::PixelFormat::bgra, pixels->width(), pixels->height());
    media::color::convertI420ToBgra(*pixels, *bgra);
    return bgra;
}

Rgb meanColor(const media::PixelBuffer& bgra, int x, int y) {
    constexpr int reach = 3;
    long sums[3]{};
    int count = 0;
    for (int row = std::max(0, y - reach); row <= std::min(bgra.height() - 1, y + reach); ++row)
        for (int column = std::max(0, x - reach); column <= std::min(bgra.width() - 1, x + reach);
             ++column) {
            const auto* pixel = bgra.row(0, row) + column * 4;
            for (int channel = 0; channel < 3; ++channel)
                sums[channel] += pixel[channel];
            ++count;
        }
    return {static_cast<int>(sums[2] / count), static_cast<int>(sums[1] / count),
            static_cast<int>(sums[0] / count)};
}

int distance(Rgb a, Rgb b) {
    return std::max(
        {std::abs(a.red - b.red), std::abs(a.green - b.green), std::abs(a.blue - b.blue)});
}

void fill(media::PixelBuffer& bgra, Rgb color) {
    for (int y = 0; y < bgra.height(); ++y) {
        auto* pixel = bgra.mutableRow(0, y);
        for (int x = 0; x < bgra.width(); ++x, pixel += 4) {
            pixel[0] = static_cast<std::uint8_t>(color.blue);
            pixel[1] = static_cast<std::uint8_t>(color.green);
            pixel[2] = static_cast<std::uint8_t>(color.red);
            pixel[3] = 255;
        }
    }
}

void writeMovie(const std::filesystem::path& path, int width, int height, int frameRate,
                int frameCount, const FramePainter& paint, double keyframeInterval) {
    media::AssetWriter writer(path, media::FileType::quickTimeMovie,
                              {.width = width,
                               .height = height,
                               .expectedFrameRate = static_cast<double>(frameRate),
                               .keyframeInterval = keyframeInterval});
    writer.startWriting();
    writer.startSession({0, frameRate});
    for (int index = 0; index < frameCount; ++index) {
        auto pixels = media::PixelBuffer::allocate(media::PixelFormat::bgra, width, height);
        paint(*pixels, index);
        writer.append({pixels, {index, frameRate}, {1, frameRate}});
    }
    writer.finish(media::MediaTime{frameCount, frameRate});
}

Rgb colorOfSecond(int second) {
    constexpr Rgb colors[]{{200, 30, 30}, {30, 180, 30}, {30, 30, 200}, {230, 230, 230}};
    return colors[second % 4];
}

void writeColorClock(const std::filesystem::path& path, int width, int height, int frameRate,
                     int seconds) {
    writeMovie(path, width, height, frameRate, seconds * frameRate,
               [frameRate](media::PixelBuffer& bgra, int frame) {
                   fill(bgra, colorOfSecond(frame / frameRate));
               });
}

model::Project plainProject(const std::filesystem::path& movie, int frameRate,
                            model::RecordingMetadata metadata) {
    metadata.frameRate = frameRate;
    model::Project project{"plain", model::Recording(movie, std::move(metadata)), {}};
    project.edit.background = {.type = model::BackgroundColor{}, .padding = 0, .cornerRadius = 0};
    return project;
}

render::MovieSession film(const model::Project& project) {
    return {project.recording, project.edit,
            render::makeRenderer(render::RendererChoice::software)};
}

nlohmann::json probe(const std::filesystem::path& file) {
    return ffprobe("-count_frames -select_streams v:0 -show_streams -show_format", file);
}

nlohmann::json probeStreams(const std::filesystem::path& file) {
    return ffprobe("-show_streams", file)["streams"];
}

nlohmann::json probePackets(const std::filesystem::path& file, const std::string& stream) {
    return ffprobe("-show_packets -select_streams " + stream, file)["packets"];
}

} // namespace vantro::test
