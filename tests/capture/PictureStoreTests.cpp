#include "capture/pictures/PictureStore.h"

#include <cstring>
#include <deque>
#include <random>

#include <gtest/gtest.h>

namespace vantro::capture {
namespace {

constexpr int width = 330; // no multiple of a tile
constexpr int height = 74;

std::shared_ptr<media::PixelBuffer> noise(std::mt19937& random) {
    auto picture = media::PixelBuffer::allocate(media::PixelFormat::bgra, width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width * 4; ++x)
            picture->mutableRow(0, y)[x] = static_cast<std::uint8_t>(random());
    return picture;
}

void scribble(media::PixelBuffer& picture, media::color::PixelRect rect, std::mt19937& random) {
    for (int y = rect.y; y < rect.y + rect.height; ++y)
        for (int x = rect.x * 4; x < (rect.x + rect.width) * 4; ++x)
            picture.mutableRow(0, y)[x] = static_cast<std::uint8_t>(random());
}

media::color::PixelRect randomRect(std::mt19937& random) {
    const auto below = [&](int limit) { return static_cast<int>(random() % limit); };
    const int x = below(width);
    const int y = below(height);
    return {x, y, 1 + below(width - x), 1 + below(height - y)};
}

bool samePixels(const media::PixelBuffer& a, const media::PixelBuffer& b) {
    for (int plane = 0; plane < a.planeCount(); ++plane) {
        const auto bytes = static_cast<std::size_t>(plane == 0 ? width : (width + 1) / 2);
        for (int y = 0; y < a.planeHeight(plane); ++y)
            if (std::memcmp(a.row(plane, y), b.row(plane, y), bytes) != 0)
                return false;
    }
    return true;
}

std::shared_ptr<media::PixelBuffer> convertedWhole(const media::PixelBuffer& source) {
    auto picture = media::PixelBuffer::allocate(media::PixelFormat::i420, width, height);
    media::color::convertBgraToI420(source, *picture);
    return picture;
}

TEST(PictureStore, GivesTheWholeSourceWhateverChangedAndWhateverIsStillHeld) {
    std::mt19937 random(7);
    const auto source = noise(random);
    pictures::PictureStore store(width, height);
    struct Held {
        std::shared_ptr<const media::PixelBuffer> picture;
        std::shared_ptr<const media::PixelBuffer> expected;
    };
    std::deque<Held> held;
    for (int step = 0; step < 300; ++step) {
        pictures::TileMap changed(width, height);
        for (unsigned count = random() % 3; count > 0; --count) {
            const media::color::PixelRect rect = randomRect(random);
            scribble(*source, rect, random);
            changed.add(rect);
        }
        for (const media::color::PixelRect outside :
             {media::color::PixelRect{width, 0, 9, 9}, {0, height, 9, 9}, {-9, 5, 9, 9}})
            changed.add(outside);
        store.sourceChanged(changed);
        held.push_back(
            {store.picture(source->plane(0), source->stride(0)), convertedWhole(*source)});
        for (const auto& each : held)
            ASSERT_TRUE(samePixels(*each.picture, *each.expected)) << "at step " << step;
        while (!held.empty() && random() % 3 == 0)
            held.pop_front();
        if (held.size() > 6)
            held.clear();
    }
}

} // namespace
} // namespace vantro::capture
