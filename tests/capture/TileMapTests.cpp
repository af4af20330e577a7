#include "capture/pictures/TileMap.h"

#include <gmock/gmock.h>

namespace vantro::capture {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<media::color::PixelRect> runs(const pictures::TileMap& map) {
    std::vector<media::color::PixelRect> found;
    map.forEachRun([&](media::color::PixelRect rect) { found.push_back(rect); });
    return found;
}

std::vector<media::color::PixelRect> bands(const pictures::TileMap& map) {
    std::vector<media::color::PixelRect> found;
    map.forEachBand([&](media::color::PixelRect rect) { found.push_back(rect); });
    return found;
}

TEST(TileMap, CoversEachAddedPixelWithWholeTiles) {
    pictures::TileMap map(300, 100);
    map.add({63, 15, 2, 2}); // touches four tiles
    EXPECT_THAT(runs(map), ElementsAre(media::color::PixelRect{0, 0, 128, 16},
                                       media::color::PixelRect{0, 16, 128, 16}));
    map.add({256, 96, 1, 1}); // the last column and row of tiles are cut off by the picture
    EXPECT_EQ(runs(map).back(), (media::color::PixelRect{256, 96, 44, 4}));
    EXPECT_EQ(map.tileCount(), 5);
}

TEST(TileMap, IgnoresWhatLiesOutsideOfThePicture) {
    pictures::TileMap map(300, 100);
    for (const media::color::PixelRect outside :
         {media::color::PixelRect{300, 0, 10, 10}, media::color::PixelRect{0, 100, 10, 10},
          media::color::PixelRect{-20, 0, 20, 10}, media::color::PixelRect{10, 10, 0, 5}})
        map.add(outside);
    EXPECT_TRUE(map.isEmpty());
    EXPECT_THAT(bands(map), IsEmpty());
    map.add({-1000, -1000, 4000, 4000});
    EXPECT_THAT(bands(map), ElementsAre(media::color::PixelRect{0, 0, 300, 100}));
}

TEST(TileMap, JoinsNeighbouringRowsIntoFullWidthBands) {
    pictures::TileMap map(300, 100);
    map.add({10, 0, 5, 20});
    map.add({200, 70, 5, 5});
    EXPECT_THAT(bands(map), ElementsAre(media::color::PixelRect{0, 0, 300, 32},
                                        media::color::PixelRect{0, 64, 300, 16}));
    pictures::TileMap other(300, 100);
    other.add({0, 40, 300, 10});
    map.add(other);
    EXPECT_THAT(bands(map), ElementsAre(media::color::PixelRect{0, 0, 300, 80}));
    map.clear();
    EXPECT_TRUE(map.isEmpty());
}

} // namespace
} // namespace vantro::capture
