#include "capture/pictures/PictureComparison.h"
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

TEST(PictureStore, UsesABufferAgainAndConvertsOnlyWhereChangesWereTold) {
    std::mt19937 random(9);
    const auto source = noise(random);
    pictures::PictureStore store(width, height);
    const auto* memory = store.picture(source->plane(0), source->stride(0)).get();
    scribble(*source, {0, 48, 64, 16}, random); // not told of: stays as it was
    const auto again = store.picture(source->plane(0), source->stride(0));
    EXPECT_EQ(again.get(), memory);
    EXPECT_FALSE(samePixels(*again, *convertedWhole(*source)));
}

TEST(PictureComparison, FindsEachTileThatDiffersFromThePictureBefore) {
    std::mt19937 random(10);
    const auto source = noise(random);
    pictures::PictureComparison comparison(width, height);
    pictures::TileMap changed(width, height);
    comparison.collect(source->plane(0), source->stride(0), changed);
    changed.clear();
    comparison.collect(source->plane(0), source->stride(0), changed);
    EXPECT_TRUE(changed.isEmpty());
    source->mutableRow(0, 73)[std::ptrdiff_t{4} * 329] ^= 1; // the last pixel
    source->mutableRow(0, 17)[std::ptrdiff_t{4} * 64] ^= 1;
    comparison.collect(source->plane(0), source->stride(0), changed);
    std::vector<media::color::PixelRect> runs;
    changed.forEachRun([&](media::color::PixelRect rect) { runs.push_back(rect); });
    EXPECT_EQ(runs, (std::vector<media::color::PixelRect>{{64, 16, 64, 16}, {320, 64, 10, 10}}));
}

} // namespace
} // namespace vantro::capture
