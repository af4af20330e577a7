#pragma once

#include "media/values/PixelBuffer.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace vantro::test {

/// A GIF as a viewer shows it, read by giflib.
struct DecodedGif {
    struct Image {
        std::vector<std::uint32_t> shown; ///< the whole screen once this image is drawn, 0xRRGGBB
        int delay = 0;                    ///< hundredths of a second
        int pixels = 0;                   ///< of the region that the image covers
    };
    int width = 0;
    int height = 0;
    bool loopsForEver = false;
    std::vector<Image> images;
    std::uintmax_t bytes = 0;

    int totalDelay() const;
    /// What is on screen `hundredths` after the start.
    const Image& at(int hundredths) const;
};

/// Reports a test failure and returns no images where giflib refuses the file.
DecodedGif decodeGif(const std::filesystem::path& path);

/// The largest difference in any channel of any pixel.
int largestError(const DecodedGif::Image& image, const media::PixelBuffer& expected);
/// The mean over all pixels and channels.
double meanError(const DecodedGif::Image& image, const media::PixelBuffer& expected);

} // namespace vantro::test
