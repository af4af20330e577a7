#pragma once

#include "export/gif/DecodedGif.h"
#include "export/gif/GifWriter.h"
#include "support/TemporaryFolder.h"

#include <concepts>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <memory>

#include <gtest/gtest.h>

namespace vantro::test {

inline constexpr media::MediaTime twelfth{1, 12};

/// A picture whose pixel at (x, y) is `color(x, y)`, 0xRRGGBB.
template <std::invocable<int, int> ColorAt>
std::shared_ptr<media::PixelBuffer> picture(int width, int height, ColorAt color) {
    auto buffer = media::PixelBuffer::allocate(media::PixelFormat::bgra, width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto value = static_cast<std::uint32_t>(color(x, y));
            auto* pixel = buffer->mutableRow(0, y) + static_cast<std::ptrdiff_t>(x) * 4;
            pixel[0] = static_cast<std::uint8_t>(value);
            pixel[1] = static_cast<std::uint8_t>(value >> 8);
            pixel[2] = static_cast<std::uint8_t>(value >> 16);
            pixel[3] = 255;
        }
    }
    return buffer;
}

inline int packed(int red, int green, int blue) {
    return red << 16 | green << 8 | blue;
}

/// Tests with a folder of their own.
class GifTest : public testing::Test {
  protected:
    std::ptrdiff_t filesInFolder() const {
        return std::distance(std::filesystem::directory_iterator(m_folder.path()), {});
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_target = m_folder / "movie.gif";
};

} // namespace vantro::test
