#include "capture/pictures/PictureFit.h"

#include <array>

#include <gtest/gtest.h>

namespace vantro::capture {
namespace {

/// A BGRX picture of one colour for each pixel.
struct Picture {
    Picture(int pictureWidth, int pictureHeight, std::uint8_t level)
        : width(pictureWidth)
        , height(pictureHeight)
        , bytes(static_cast<std::size_t>(pictureWidth) * pictureHeight * 4, level) {}

    pictures::PictureView view() const {
        return {.pixels = bytes.data(),
                .stride = std::ptrdiff_t{4} * width,
                .width = width,
                .height = height};
    }

    int width;
    int height;
    std::vector<std::uint8_t> bytes;
};

int levelAt(const pictures::PictureView& view, int x, int y) {
    return view.pixels[y * view.stride + std::ptrdiff_t{4} * x];
}

TEST(PictureFit, PassesAPictureOfTheRightSizeOnUntouched) {
    pictures::PictureFit fit(100, 50);
    const Picture odd(101, 51, 77);
    pictures::TileMap sourceChanged(101, 51);
    pictures::TileMap changed(100, 50);
    const auto first = fit.fit(odd.view(), sourceChanged, changed);
    EXPECT_EQ(first.pixels, odd.bytes.data());
    EXPECT_EQ(changed.tileCount(), 8) << "a new picture is all changed";
    changed.clear();
    sourceChanged.add({70, 40, 1, 1});
    fit.fit(odd.view(), sourceChanged, changed);
    EXPECT_EQ(changed.tileCount(), 1);
}

TEST(PictureFit, KeepsTheAspectOnBlackWhenTheSizeChanges) {
    pictures::PictureFit fit(100, 60);
    pictures::TileMap changed(100, 60);
    const Picture wide(200, 60, 200); // becomes 100 × 30
    const auto fitted = fit.fit(wide.view(), pictures::TileMap(200, 60), changed);
    EXPECT_EQ(fitted.width, 100);
    EXPECT_EQ(fitted.height, 60);
    EXPECT_EQ(levelAt(fitted, 50, 14), 0);
    EXPECT_EQ(levelAt(fitted, 0, 15), 200);
    EXPECT_EQ(levelAt(fitted, 99, 44), 200);
    EXPECT_EQ(levelAt(fitted, 50, 45), 0);
    const Picture small(10, 12, 90); // becomes 50 × 60
    const auto grown = fit.fit(small.view(), pictures::TileMap(10, 12), changed);
    EXPECT_EQ(levelAt(grown, 24, 30), 0);
    EXPECT_EQ(levelAt(grown, 25, 0), 90);
    EXPECT_EQ(levelAt(grown, 74, 59), 90);
    EXPECT_EQ(levelAt(grown, 75, 30), 0);
}

TEST(PictureFit, AveragesWhatShrinksAndBlendsWhatGrows) {
    Picture stripes(4, 1, 0);
    for (int x = 0; x < 4; ++x)
        stripes.bytes[static_cast<std::size_t>(x) * 4] = static_cast<std::uint8_t>(x * 60);
    std::uint8_t half[8];
    pictures::scalePicture(stripes.view(), half, sizeof half, 2, 1);
    EXPECT_EQ(half[0], 30);
    EXPECT_EQ(half[4], 150);
    std::array<std::uint8_t, 32> twice{};
    pictures::scalePicture(stripes.view(), twice.data(), twice.size(), 8, 1);
    EXPECT_EQ(twice[0], 0) << "an edge stays what it is";
    EXPECT_EQ(twice[12], 75) << "a quarter of a sample beyond the second one's centre";
    EXPECT_EQ(twice[28], 180);
}

} // namespace
} // namespace vantro::capture
