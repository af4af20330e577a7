#pragma once

#include "export/RecordingFixture.h"
#include "export/gif/GifWriter.h"
#include "media/FrameSource.h"

#include <concepts>
#include <cstdint>
#include <memory>
#include <numeric>

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

/// A GIF as a player shows it.
class PlayedGif {
  public:
    explicit PlayedGif(const std::filesystem::path& path)
        : m_source(media::Asset::open(path), 0), m_bytes(contentOf(path)) {
        for (const auto& packet : probePackets(path, "v:0"))
            m_delays.push_back(packet.at("duration"));
    }

    std::size_t bytes() const { return m_bytes.size(); }
    bool loopsForEver() const { return m_bytes.contains(std::string("NETSCAPE2.0\3\1\0\0", 15)); }
    /// Of each of its images, hundredths of a second.
    const std::vector<int>& delays() const { return m_delays; }
    int totalDelay() const { return std::reduce(m_delays.begin(), m_delays.end()); }

    /// What is on screen `hundredths` after the start.
    std::shared_ptr<const media::PixelBuffer> at(int hundredths) {
        return m_source.frameAt({hundredths, 100}).value().pixels;
    }

  private:
    media::FrameSource m_source;
    std::string m_bytes;
    std::vector<int> m_delays;
};

/// Tests with a file of their own.
class GifTest : public testing::Test {
  protected:
    TemporaryFolder m_folder;
    std::filesystem::path m_target = m_folder / "movie.gif";
};

} // namespace vantro::test
