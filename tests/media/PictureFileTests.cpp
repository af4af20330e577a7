#include "media/PictureFile.h"
#include "media/values/MediaError.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace vantro::media {
namespace {

namespace fs = std::filesystem;

const fs::path samples = VANTRO_TEST_PICTURES;

void expectPixel(const PixelBuffer& picture, int x, int y, std::array<int, 4> bgra) {
    for (int channel = 0; channel < 4; ++channel)
        EXPECT_NEAR(picture.row(0, y)[4 * x + channel], bgra[static_cast<std::size_t>(channel)], 3)
            << x << ", " << y << ", channel " << channel;
}

TEST(PictureFile, StandsUprightAsExifSays) {
    test::TemporaryFolder folder;
    // Where the bright quarter, stored at the top left, is to be seen.
    const struct {
        bool right, below;
    } places[]{{false, false}, {true, false}, {true, true}, {false, true},
               {false, false}, {true, false}, {true, true}, {false, true}};
    auto bytes = test::contentOf(samples / "turned.jpg");
    const std::string tag("\x01\x12\x00\x03\x00\x00\x00\x01\x00", 9);
    const auto value = bytes.find(tag) + tag.size();
    ASSERT_LT(value, bytes.size());
    for (char orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(static_cast<int>(orientation));
        bytes[value] = orientation;
        const auto picture = readPicture(folder.write("turned", bytes));
        ASSERT_EQ(picture->width(), orientation < 5 ? 32 : 16);
        ASSERT_EQ(picture->height(), orientation < 5 ? 16 : 32);
        const auto [right, below] = places[orientation - 1];
        const auto at = [&](bool toRight, bool low, std::array<int, 4> color) {
            expectPixel(*picture, picture->width() * (toRight ? 3 : 1) / 4,
                        picture->height() * (low ? 3 : 1) / 4, color);
        };
        at(right, below, {230, 240, 250, 255});
        at(!right, below, {60, 40, 20, 255});
        at(right, !below, {60, 40, 20, 255});
    }
}

TEST(PictureFile, ReadsEveryKindInItsColors) {
    for (const auto* name : {"alpha.png", "alpha.webp"}) {
        SCOPED_TRACE(name);
        const auto picture = readPicture(samples / name);
        expectPixel(*picture, 0, 0, {25, 50, 100, 128});
        expectPixel(*picture, 1, 0, {0, 0, 0, 0});
        // What is transparent does not brighten its neighbor.
        expectPixel(*readPicture(samples / name, {2, 1}), 0, 0, {12, 25, 50, 64});
    }
    expectPixel(*readPicture(samples / "cmyk.jpg"), 8, 8, {0, 0, 255, 255});
}

TEST(PictureFile, ReadsBackThePngThatItWrote) {
    const test::TemporaryFolder folder;
    const auto path = folder.path() / "picture.png";
    auto picture = PixelBuffer::allocate(PixelFormat::bgra, 37, 11);
    for (int y = 0; y < 11; ++y)
        for (int x = 0; x < 37 * 4; ++x)
            picture->mutableRow(0, y)[x] = static_cast<std::uint8_t>(x * 5 + y * 17);
    writePng(path, *picture); // whatever the alpha bytes hold
    const auto read = readPicture(path);
    ASSERT_EQ(read->width(), 37);
    ASSERT_EQ(read->height(), 11);
    for (int y = 0; y < 11; ++y)
        for (int x = 0; x < 37 * 4; ++x)
            ASSERT_EQ(read->row(0, y)[x], x % 4 == 3 ? 255 : picture->row(0, y)[x]);

    EXPECT_THROW(writePng(folder.path() / "absent" / "x.png", *picture), fs::filesystem_error);
}

TEST(PictureFile, SaysWhichFileIsNoPictureAndWhy) {
    const test::TemporaryFolder folder;
    const auto path = folder.path() / "picture";
    writePng(path, *PixelBuffer::allocate(PixelFormat::bgra, 300, 300));
    const auto png = test::contentOf(path);
    auto huge = png; // claims 65536 by 65536 pixels
    huge.replace(16, 8, std::string("\0\1\0\0\0\1\0\0", 8));
    const auto jpeg = test::contentOf(samples / "turned.jpg");
    for (const std::string& bytes :
         {std::string(), std::string("\xFF\xD8\xFF\xE0 but no more"), std::string("GIF89a and on"),
          std::string("\x89PNG\r\n\x1A\n and then nonsense"), png.substr(0, png.size() / 2), huge,
          jpeg.substr(0, jpeg.size() - 40)}) {
        std::ofstream(path, std::ios::binary) << bytes;
        try {
            readPicture(path);
            ADD_FAILURE() << bytes.substr(0, 20);
        } catch (const MediaError& error) {
            EXPECT_THAT(error.what(),
                        testing::HasSubstr("Cannot read the picture " + path.string() + ": "));
        }
    }
    EXPECT_THROW(readPicture(folder.path() / "absent"), MediaError);
    EXPECT_THROW(readPicture(folder.path()), MediaError);
}

} // namespace
} // namespace vantro::media
