#include "render/gpu/TestPictures.h"

namespace vantro::render::gpu {
namespace {

/// One channel of the picture at a pixel: a gradient, broken up by blocks with a fine pattern.
std::uint8_t sampleAt(int x, int y, std::uint32_t seed) {
    const auto block = static_cast<std::uint32_t>((x / 23) * 7 + (y / 17) * 13) + seed;
    const std::uint32_t mixed = (block * 2654435761U) >> 24U;
    if (mixed % 3 == 0)
        return static_cast<std::uint8_t>((x + static_cast<int>(seed)) % 4 == 0 ? 20 : 235);
    const int gradient = (x * 2 + y + static_cast<int>(seed)) & 511;
    return static_cast<std::uint8_t>(gradient < 256 ? gradient : 511 - gradient);
}

} // namespace

std::shared_ptr<media::PixelBuffer> screenPicture(media::PixelFormat format, int width, int height,
                                                  std::uint32_t seed,
                                                  media::ColorDescription color) {
    auto picture = media::PixelBuffer::allocate(format, width, height, color);
    for (int plane = 0; plane < picture->planeCount(); ++plane) {
        const bool isColor = format == media::PixelFormat::bgra;
        const int columns = plane == 0 ? width : (width + 1) / 2;
        for (int y = 0; y < picture->planeHeight(plane); ++y) {
            std::uint8_t* row = picture->mutableRow(plane, y);
            for (int x = 0; x < columns * (isColor ? 4 : 1); ++x) {
                const auto channel = static_cast<std::uint32_t>(isColor ? x % 4 : plane);
                row[x] = channel == 3 ? 255 : sampleAt(isColor ? x / 4 : x, y, seed + channel * 31);
            }
        }
    }
    return picture;
}

std::shared_ptr<media::PixelBuffer> translucentPicture(int width, int height, std::uint32_t seed) {
    auto picture = screenPicture(media::PixelFormat::bgra, width, height, seed);
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = picture->mutableRow(0, y);
        for (int x = 0; x < width; ++x) {
            const int alpha = (x * 3 + y * 2) % 256;
            for (int channel = 0; channel < 3; ++channel)
                row[x * 4 + channel] =
                    static_cast<std::uint8_t>(row[x * 4 + channel] * alpha / 255);
            row[x * 4 + 3] = static_cast<std::uint8_t>(alpha);
        }
    }
    return picture;
}

} // namespace vantro::render::gpu
