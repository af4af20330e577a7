#include "render/scene/CursorTextures.h"
#include "support/Environment.h"
#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <memory>

#include <gtest/gtest.h>
// Behind all others, for its macros.
#include <X11/Xcursor/Xcursor.h>

namespace vantro::render {
namespace {

const std::uint8_t* pixel(const media::PixelBuffer& picture, double x, double y) {
    return picture.row(0, static_cast<int>(y)) + static_cast<std::ptrdiff_t>(x) * 4;
}

/// Writes a theme's cursor file with a bitmap for each nominal size, one and a half times as large
/// as that, in one premultiplied color (blue 16 + size, green 32, red 64, alpha 128); the hot spot
/// lies at a quarter and an eighth of the nominal size. False when it cannot.
bool writeCursorFile(const std::filesystem::path& path, const std::vector<unsigned>& sizes) {
    const std::unique_ptr<XcursorImages, decltype(&XcursorImagesDestroy)> images(
        XcursorImagesCreate(static_cast<int>(sizes.size())), &XcursorImagesDestroy);
    for (const unsigned size : sizes) {
        const int side = static_cast<int>(size * 3 / 2);
        XcursorImage* image = XcursorImageCreate(side, side);
        image->size = size;
        image->xhot = size / 4;
        image->yhot = size / 8;
        std::fill_n(image->pixels, image->width * image->height, 0x80402010U + size);
        images->images[images->nimage++] = image;
    }
    return XcursorFilenameSaveImages(path.c_str(), images.get()) != 0;
}

/// A folder in which the only cursor theme is looked for.
struct ThemeFolder : test::TemporaryFolder {
    ThemeFolder() {
        variables.set("XCURSOR_PATH", path());
        variables.set("XCURSOR_THEME", "test");
    }
    test::Environment variables;
};

TEST(ThemeCursor, IsTheThemesLargestArrowInUnitsOfItsNominalSize) {
    const ThemeFolder themes;
    std::filesystem::create_directories(themes / "test/cursors");
    ASSERT_TRUE(writeCursorFile(themes / "test/cursors/left_ptr", {24, 96, 48}));
    const CursorImage cursor = standardCursor(CursorStyle::theme);
    ASSERT_EQ(cursor.pixels->width(), 144);
    EXPECT_FLOAT_EQ(cursor.width, 36);
    EXPECT_FLOAT_EQ(cursor.height, 36);
    EXPECT_FLOAT_EQ(cursor.hotSpotX, 6);
    EXPECT_FLOAT_EQ(cursor.hotSpotY, 3);
    const auto* p = pixel(*cursor.pixels, 70, 70);
    EXPECT_EQ((std::array{p[0], p[1], p[2], p[3]}),
              (std::array<std::uint8_t, 4>{0x10 + 96, 0x20, 0x40, 0x80}));
}

TEST(CursorTextures, KeepEachLevelsPictureInPlaceAndItsEdgeClear) {
    const CursorImage plain = standardCursor(CursorStyle::builtIn);
    const CursorTextures textures(plain);
    const CursorImage& image = textures.image();
    const double unit = plain.width / plain.pixels->width();
    EXPECT_NEAR(image.width / image.pixels->width(), unit, 1e-6);
    EXPECT_NEAR(image.height / image.pixels->height(), unit, 1e-6);
    for (const double width : {10.0, 19.0, 36.5, 70.0, 130.0, 250.0}) {
        const media::PixelBuffer& level = *textures.textureFor(width);
        const double scale = level.width() / image.width;
        EXPECT_NEAR(level.height() / image.height, scale, 1e-4);
        const auto* body = pixel(level, (image.hotSpotX + 2) * scale, (image.hotSpotY + 7) * scale);
        EXPECT_LT(body[1], 60);
        EXPECT_GT(body[3], 230);
        for (int y = 0; y < level.height(); ++y)
            EXPECT_EQ(pixel(level, 0, y)[3] + pixel(level, level.width() - 1, y)[3], 0);
        for (int x = 0; x < level.width(); ++x)
            EXPECT_EQ(pixel(level, x, 0)[3] + pixel(level, x, level.height() - 1)[3], 0);
    }
}

} // namespace
} // namespace vantro::render
