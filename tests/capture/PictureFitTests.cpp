#include "capture/pictures/PictureFit.h"

#include <array>

#include <gtest/gtest.h>

namespace vantro::capture {
namespace {

TEST(PictureFit, AveragesWhatShrinksAndBlendsWhatGrows) {
    const std::array<std::uint8_t, 16> stripes{0, 0, 0, 0, 60, 0, 0, 0, 120, 0, 0, 0, 180};
    const pictures::PictureView view{
        .pixels = stripes.data(), .stride = stripes.size(), .width = 4, .height = 1};
    std::array<std::uint8_t, 8> half{};
    pictures::scalePicture(view, half.data(), half.size(), 2, 1);
    EXPECT_EQ(half[0], 30);
    EXPECT_EQ(half[4], 150);
    std::array<std::uint8_t, 32> twice{};
    pictures::scalePicture(view, twice.data(), twice.size(), 8, 1);
    EXPECT_EQ(twice[0], 0) << "an edge stays what it is";
    EXPECT_EQ(twice[12], 75) << "a quarter of a sample beyond the second one's centre";
    EXPECT_EQ(twice[28], 180);
}

} // namespace
} // namespace vantro::capture
