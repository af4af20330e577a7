#include "render/TestScenes.h"
#include "render/software/SoftwareRenderer.h"

#include <cmath>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace vantro::render {
namespace {

using media::PixelFormat;

std::shared_ptr<media::PixelBuffer> drawn(const Scene& scene) {
    return test::drawn(*software::makeSoftwareRenderer(1), scene);
}

/// The recording and nothing else over a canvas of that size.
Scene bare(ImagePointer recording, PixelSize canvas) {
    SceneContent content;
    content.recording = std::move(recording);
    return makeScene(canvas, content);
}

TEST(Shrinking, AveragesWhatEachPixelCovers) {
    const auto picture = test::screenPicture(PixelFormat::bgra, 400, 300, 5);
    constexpr PixelSize canvases[]{{200, 150}, {168, 113}, {228, 171}, {97, 31},
                                   {50, 3},    {7, 300},   {1, 1},     {228, 4}};
    for (const PixelSize canvas : canvases)
        EXPECT_LE(test::largestDifference(*drawn(bare(picture, canvas)),
                                          *test::averaged(*picture, canvas)),
                  1)
            << canvas.width << " x " << canvas.height;
}

TEST(Shrinking, PassesFromMixingNeighborsToAveragingWithoutAJump) {
    Scene scene = bare(test::screenPicture(PixelFormat::bgra, 400, 300, 5), {200, 150});
    const auto at = [&](double step) {
        scene.recording.part = {10, 10, 200 * step, 150 * step};
        return drawn(scene);
    };
    for (double step = 1.45; step < 1.8; step += 0.01)
        EXPECT_LE(test::largestDifference(*at(step), *at(step + 1e-5)), 2) << step;
    EXPECT_GT(test::largestDifference(*at(1.5), *at(1.6)), 20);
}

/// A film with everything in it, composed at a scale.
struct Film {
    static constexpr PixelSize canvas{960, 540};
    model::BackgroundSettings background{
        .type = model::BackgroundColor{0.2, 0.4, 0.6}, .padding = 0.08, .cornerRadius = 32};
    SceneContent content;

    Film() {
        content.recording = test::textPicture(960, 540);
        content.camera = {1, 300, 200};
        content.background = &background;
        content.cursor = &test::arrow();
        content.pointer = PixelPoint{300, 200};
        content.cursorScale = 2;
        content.webcam = test::screenPicture(PixelFormat::bgra, 320, 240, 3);
        content.webcamSize = 0.2;
    }
    std::shared_ptr<media::PixelBuffer> at(double scale) {
        content.scale = scale;
        const auto scaled = [scale](int side) {
            return static_cast<int>(std::lround(side * scale));
        };
        return drawn(makeScene({scaled(canvas.width), scaled(canvas.height)}, content));
    }
};

TEST(Shrinking, ComposesTheSameFilmAtASmallerScale) {
    Film film;
    const auto expectSame = [&](std::string_view what) {
        const auto whole = film.at(1);
        for (const double scale : {0.75, 0.5, 1.0 / 3, 0.25}) {
            const auto small = film.at(scale);
            const auto expected = test::averaged(*whole, {small->width(), small->height()});
            EXPECT_LE(test::meanDifference(*small, *expected), 2) << what << ", scale " << scale;
        }
    };
    expectSame("whole");
    for (const double zoom : {1.1, 1.5, 2.0, 3.0}) {
        film.content.camera.scale = zoom;
        expectSame(fmt::format("zoomed by {}", zoom));
    }
    film.background.cornerRadius = 120;
    film.background.padding = 0.2;
    film.background.type = model::BackgroundColor{1, 1, 1}; // on which the shadow shows most
    film.content.camera.scale = 1.2;
    expectSame("light background");
    film.content.background = nullptr;
    expectSame("no background");
}

} // namespace
} // namespace vantro::render
