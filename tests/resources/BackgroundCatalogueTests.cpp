#include "resources/JpegFile.h"
#include "resources/backgrounds/Generator.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace vantro::backgrounds {
namespace {

constexpr Frame tiny{160, 90};

std::vector<std::string> expectedNames() {
    std::vector<std::string> names;
    for (int number = 1; number <= 26; ++number)
        names.push_back((number < 10 ? "builtin-0" : "builtin-") + std::to_string(number) +
                        (number > 10 ? "-mirelune" : ""));
    return names;
}

float meanLuminance(const Canvas& canvas) {
    float sum = 0;
    for (int row = 0; row < canvas.frame().height; ++row)
        for (int column = 0; column < canvas.frame().width; ++column)
            sum += luminance(canvas.at(column, row));
    return sum / static_cast<float>(canvas.frame().width * canvas.frame().height);
}

/// The picture at a size where only its composition is left, in sRGB code values.
std::vector<float> composition(const Canvas& canvas, base::WorkerPool& pool) {
    const Canvas small = canvas.reduced({16, 9}, pool);
    std::vector<float> values;
    for (int row = 0; row < 9; ++row)
        for (int column = 0; column < 16; ++column)
            for (const float part :
                 {small.at(column, row).x, small.at(column, row).y, small.at(column, row).z})
                values.push_back(255 * encoded(part));
    return values;
}

float meanDifference(const std::vector<float>& a, const std::vector<float>& b) {
    float sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        sum += std::abs(a[i] - b[i]);
    return sum / static_cast<float>(a.size());
}

/// Every background painted small, once for all tests.
const std::vector<Canvas>& tinyPictures() {
    static const std::vector<Canvas> pictures = [] {
        base::WorkerPool pool(1);
        std::vector<Canvas> all;
        for (const auto& entry : catalogue())
            all.push_back(paint(entry, tiny, pool));
        return all;
    }();
    return pictures;
}

TEST(BackgroundCatalogue, NamesFiveWallpaperPairsThenSixteenPhotographs) {
    std::vector<std::string> names;
    for (const auto& entry : catalogue())
        names.emplace_back(entry.name);
    EXPECT_EQ(names, expectedNames());
}

TEST(BackgroundCatalogue, PicturesAreTheSameOnEachRunAndWithAnyNumberOfThreads) {
    base::WorkerPool one(1);
    base::WorkerPool three(3);
    for (std::size_t i = 0; i < catalogue().size(); ++i) {
        const auto& entry = catalogue()[i];
        const auto again = paint(entry, tiny, three).toBytes(entry.finish.grain, three);
        EXPECT_EQ(tinyPictures()[i].toBytes(entry.finish.grain, one).pixels, again.pixels)
            << entry.name;
    }
}

TEST(BackgroundCatalogue, WallpaperPairsAreDarkThenLight) {
    for (std::size_t i = 0; i < 10; i += 2) {
        const float dark = meanLuminance(tinyPictures()[i]);
        const float light = meanLuminance(tinyPictures()[i + 1]);
        EXPECT_LT(dark, 0.25F) << catalogue()[i].name;
        EXPECT_GT(light, 0.45F) << catalogue()[i + 1].name;
    }
}

TEST(BackgroundCatalogue, NoPixelIsBrokenAndHardlyAnyBurntOut) {
    for (std::size_t i = 0; i < catalogue().size(); ++i) {
        const Canvas& canvas = tinyPictures()[i];
        int broken = 0;
        int burnt = 0;
        for (int row = 0; row < tiny.height; ++row) {
            for (int column = 0; column < tiny.width; ++column) {
                const Rgb rgb = canvas.at(column, row);
                broken +=
                    std::isfinite(rgb.x + rgb.y + rgb.z) && rgb.x >= 0 && rgb.y >= 0 && rgb.z >= 0
                        ? 0
                        : 1;
                burnt += std::min({rgb.x, rgb.y, rgb.z}) >= 1 ? 1 : 0;
            }
        }
        EXPECT_EQ(broken, 0) << catalogue()[i].name;
        EXPECT_LT(burnt, tiny.width * tiny.height / 25) << catalogue()[i].name;
    }
}

TEST(BackgroundCatalogue, NoTwoPicturesAreAlike) {
    base::WorkerPool pool(1);
    std::vector<std::vector<float>> compositions;
    for (const auto& picture : tinyPictures())
        compositions.push_back(composition(picture, pool));
    for (std::size_t a = 0; a < compositions.size(); ++a)
        for (std::size_t b = 0; b < a; ++b)
            EXPECT_GT(meanDifference(compositions[a], compositions[b]), 9)
                << catalogue()[a].name << " and " << catalogue()[b].name;
}

TEST(BackgroundCatalogue, TheCompositionDoesNotDependOnTheSize) {
    base::WorkerPool pool(2);
    for (std::size_t i = 0; i < catalogue().size(); ++i) {
        const auto larger = paint(catalogue()[i], {288, 162}, pool);
        EXPECT_LT(meanDifference(composition(tinyPictures()[i], pool), composition(larger, pool)),
                  4)
            << catalogue()[i].name;
    }
}

TEST(BackgroundGenerator, WritesEachPictureAndATenthAsThumbnail) {
    const test::TemporaryFolder folder;
    base::WorkerPool pool(2);
    constexpr Frame frame{320, 180};
    const auto& entry = catalogue()[5];
    writeBackground(entry, frame, folder.path() / "new" / "Backgrounds", pool);

    const auto directory = folder.path() / "new" / "Backgrounds";
    const auto picture = readJpeg(directory / "builtin-06.jpeg");
    const auto thumbnail = readJpeg(directory / "Thumbnails" / "builtin-06.jpeg");
    EXPECT_EQ(picture.width, 320);
    EXPECT_EQ(picture.height, 180);
    EXPECT_EQ(thumbnail.width, 32);
    EXPECT_EQ(thumbnail.height, 18);

    const Canvas expected = paint(entry, frame, pool).reduced({32, 18}, pool);
    for (int row = 0; row < 18; ++row) {
        for (int column = 0; column < 32; ++column) {
            const Rgb mean = expected.at(column, row);
            const auto* got = &thumbnail.pixels[static_cast<std::size_t>(row * 32 + column) * 3];
            ASSERT_NEAR(got[1], 255 * encoded(mean.y), 12) << column << ", " << row;
        }
    }
}

} // namespace
} // namespace vantro::backgrounds
