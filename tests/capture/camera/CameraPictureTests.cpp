// What a camera sends, made into pixels: each layout by its colors, odd and padded rows, and what
// is broken.
#include "media/CameraPictures.h"
#include "media/color/ColorConversion.h"
#include "support/FakeCamera.h"

#include <array>
#include <cstring>

#include <gmock/gmock.h>

namespace vantro::media {
namespace {

using test::FakeCamera;
using Layout = FakeCamera::Layout;

RawLayout rawLayout(Layout layout) {
    constexpr std::array layouts{RawLayout::yuyv, RawLayout::uyvy, RawLayout::nv12,
                                 RawLayout::i420, RawLayout::rgb,  RawLayout::bgrx,
                                 RawLayout::gray, RawLayout::mjpeg};
    return layouts.at(static_cast<std::size_t>(layout));
}

RawPicture raw(const FakeCamera::Format& format, std::span<const std::uint8_t> bytes,
               int stride = 0) {
    return {.layout = rawLayout(format.layout),
            .width = format.width,
            .height = format.height,
            .planes = {{{.bytes = std::as_bytes(bytes), .stride = stride}, {}, {}}}};
}

using Pixel = std::array<int, 4>;

Pixel pixelAt(const PixelBuffer& picture, int x, int y) {
    auto bgra = PixelBuffer::allocate(PixelFormat::bgra, picture.width(), picture.height());
    if (picture.format() == PixelFormat::i420)
        color::convertI420ToBgra(picture, *bgra);
    const auto* at = (picture.format() == PixelFormat::bgra ? &picture : bgra.get())->row(0, y) +
                     std::ptrdiff_t{4} * x;
    return {at[0], at[1], at[2], at[3]};
}

auto isNear(int blue, int green, int red) {
    using testing::AllOf;
    const auto near = [](int value) {
        return AllOf(testing::Ge(value - 4), testing::Le(value + 4));
    };
    return testing::ElementsAre(near(blue), near(green), near(red), 255);
}

TEST(CameraPictures, EveryLayoutShowsItsColors) {
    for (const auto layout : {Layout::yuyv, Layout::uyvy, Layout::nv12, Layout::i420, Layout::rgb,
                              Layout::bgrx, Layout::gray, Layout::mjpeg}) {
        // Odd: the last row and column stay out.
        const FakeCamera::Format format{.layout = layout, .width = 203, .height = 101};
        CameraPictures pictures;
        const auto bytes = fakePicture(format, 5, true);
        const auto picture = pictures.convert(raw(format, bytes));
        ASSERT_TRUE(picture) << static_cast<int>(layout) << picture.error();
        EXPECT_EQ((*picture)->width(), 202);
        EXPECT_EQ((*picture)->height(), 100);
        EXPECT_THAT(pixelAt(**picture, 40, 60), isNear(235, 235, 235)) << static_cast<int>(layout);
        EXPECT_THAT(pixelAt(**picture, 4, 4), isNear(235, 235, 235)) << static_cast<int>(layout);
        EXPECT_THAT(pixelAt(**picture, 12, 4), isNear(16, 16, 16)) << static_cast<int>(layout);
        const bool isGray = layout == Layout::gray;
        EXPECT_THAT(pixelAt(**picture, 198, 95),
                    isGray ? isNear(100, 100, 100)
                           : isNear(FakeCamera::blue, FakeCamera::green, FakeCamera::red))
            << static_cast<int>(layout);
    }
}

TEST(CameraPictures, RowsMayBePadded) {
    const FakeCamera::Format format{.layout = Layout::rgb, .width = 131, .height = 20};
    const auto bytes = fakePicture(format, 0, true);
    constexpr std::size_t height = 20;
    constexpr std::size_t row = std::size_t{131} * 3;
    for (const int stride : {396, 512}) { // the first one is the next multiple of 4
        const auto distance = static_cast<std::size_t>(stride);
        std::vector<std::uint8_t> padded(distance * height, 77);
        for (std::size_t y = 0; y < height; ++y)
            std::memcpy(padded.data() + y * distance, bytes.data() + y * row, row);
        CameraPictures pictures;
        const auto picture = pictures.convert(raw(format, padded, stride == 396 ? 0 : stride));
        ASSERT_TRUE(picture);
        EXPECT_THAT(pixelAt(**picture, 20, 18), isNear(235, 235, 235)) << stride;
        EXPECT_THAT(pixelAt(**picture, 129, 18),
                    isNear(FakeCamera::blue, FakeCamera::green, FakeCamera::red))
            << stride;
    }
}

TEST(CameraPictures, BrokenOnesAreRefusedAndTheNextIsShown) {
    for (const auto layout : {Layout::yuyv, Layout::nv12, Layout::mjpeg}) {
        const FakeCamera::Format format{.layout = layout, .width = 160, .height = 120};
        const auto whole = fakePicture(format, 1, true);
        CameraPictures pictures;
        for (const std::size_t length : {std::size_t{0}, std::size_t{1}, whole.size() / 2}) {
            const auto broken = pictures.convert(raw(format, std::span(whole).first(length)));
            EXPECT_FALSE(broken) << static_cast<int>(layout) << " of " << length;
        }
        EXPECT_FALSE(pictures.convert(raw({.layout = layout, .width = 0, .height = 1}, {})));
        EXPECT_TRUE(pictures.convert(raw(format, whole)));
    }
}

TEST(CameraPictures, AnotherSizeIsFittedIntoTheFirstOne) {
    CameraPictures pictures;
    const FakeCamera::Format first{.layout = Layout::yuyv, .width = 160, .height = 120};
    ASSERT_TRUE(pictures.convert(raw(first, fakePicture(first, 0, true))));
    const FakeCamera::Format wide{.layout = Layout::rgb, .width = 320, .height = 120};
    const auto bytes = fakePicture(wide, 0, true);
    const auto picture = pictures.convert(raw(wide, bytes));
    ASSERT_TRUE(picture);
    EXPECT_EQ((*picture)->width(), 160);
    EXPECT_EQ((*picture)->height(), 120);
    EXPECT_THAT(pixelAt(**picture, 40, 60), isNear(235, 235, 235));
    EXPECT_THAT(pixelAt(**picture, 40, 10), testing::ElementsAre(0, 0, 0, testing::_));
    EXPECT_THAT(pixelAt(**picture, 40, 110), testing::ElementsAre(0, 0, 0, testing::_));
}

} // namespace
} // namespace vantro::media
