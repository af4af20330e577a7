#include "render/TestScenes.h"

#include <gtest/gtest.h>

namespace vantro::render {
namespace {

/// A recording of 1600 × 1000 pixels, around which everything else can be switched on.
struct Stage {
    model::BackgroundSettings background{
        .type = model::BackgroundColor{}, .padding = 0.1, .cornerRadius = 40};
    SceneContent content;

    Stage() {
        content.recording = media::PixelBuffer::allocate(media::PixelFormat::bgra, 1600, 1000);
        content.camera = {1, 800, 500};
        content.background = &background;
        content.cursor = &test::arrow();
    }
    void addWebcam(int width, int height) {
        content.webcam = media::PixelBuffer::allocate(media::PixelFormat::bgra, width, height);
        content.webcamSize = 0.2;
    }
    Scene scene(PixelSize canvas = {1920, 1080}) const { return makeScene(canvas, content); }
};

void expectNear(const PixelRect& actual, const PixelRect& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
    EXPECT_NEAR(actual.width, expected.width, 1e-9);
    EXPECT_NEAR(actual.height, expected.height, 1e-9);
}

TEST(Scene, FitsTheRecordingIntoTheCanvasLessItsPadding) {
    Stage stage;
    expectNear(stage.scene().recording.place, {268.8, 108, 1382.4, 864});
    EXPECT_EQ(stage.scene().recording.part, (PixelRect{0, 0, 1600, 1000}));
    EXPECT_EQ(stage.scene().recording.cornerRadius, 40);
    expectNear(stage.scene({1080, 1920}).recording.place, {108, 690, 864, 540});

    stage.content.scale = 0.5; // the same film, smaller
    const Scene small = stage.scene({960, 540});
    expectNear(small.recording.place, {134.4, 54, 691.2, 432});
    EXPECT_EQ(small.recording.cornerRadius, 20);
    EXPECT_EQ(small.background->shadow.scale, 0.5);
}

TEST(Scene, MagnifiesTheCanvasOrWithoutABackgroundTheRecordingItself) {
    Stage stage;
    stage.addWebcam(128, 72);
    stage.content.pointer = PixelPoint{10, 20};
    stage.content.camera.scale = 1.001; // does not count as zoomed
    EXPECT_EQ(stage.scene().background->shown, (PixelRect{0, 0, 1920, 1080}));
    stage.content.camera = {2, 800, 500}; // the recording's center is the canvas's
    const Scene framed = stage.scene();
    expectNear(framed.background->shown, {480, 270, 960, 540});
    EXPECT_EQ(framed.recording.part, (PixelRect{0, 0, 1600, 1000}));
    expectNear(framed.recording.place, {-422.4, -324, 2764.8, 1728});
    EXPECT_EQ(framed.recording.cornerRadius, 80);
    expectNear(framed.background->shadow.place, {268.8, 108, 1382.4, 864});

    stage.content.background = nullptr;
    const Scene bare = stage.scene();
    EXPECT_FALSE(bare.background);
    EXPECT_EQ(bare.recording.part, (PixelRect{400, 250, 800, 500}));
    EXPECT_EQ(bare.recording.place, (PixelRect{0, 0, 1920, 1080}));
    EXPECT_EQ(bare.recording.cornerRadius, 0);
    EXPECT_TRUE(bare.cursor && bare.webcam);
}

TEST(Scene, ShiftsTheMagnifiedPartAtTheEdgesWithoutShrinkingIt) {
    Stage stage;
    for (const double center : {-500.0, 0.0, 150.0, 1550.0, 9000.0}) {
        stage.content.camera = {4, center, center};
        stage.content.background = &stage.background;
        const PixelRect canvas = stage.scene().background->shown;
        stage.content.background = nullptr;
        const PixelRect source = stage.scene().recording.part;
        EXPECT_EQ(canvas.width, 480);
        EXPECT_EQ(source.height, 250);
        for (const auto& [value, most] :
             {std::pair(canvas.x, 1440), {canvas.y, 810}, {source.x, 1200}, {source.y, 750}}) {
            EXPECT_GE(value, 0) << center;
            EXPECT_LE(value, most) << center;
        }
    }
    EXPECT_EQ(stage.scene().recording.part, (PixelRect{1200, 750, 400, 250}));
}

TEST(Scene, PutsTheCursorsHotSpotOnThePointer) {
    Stage stage;
    stage.content.pointer = PixelPoint{500, 250};
    stage.content.cursorScale = 3;
    const CursorImage& arrow = test::arrow().image();
    const struct {
        bool background;
        PixelPoint tip;
        double scale; // output pixels to one of the recording's
        double zoom = 1;
    } cases[]{{true, {268.8 + 500 * 0.864, 108 + 250 * 0.864}, 0.864},
              {true, {-422.4 + 500 * 1.728, -324 + 250 * 1.728}, 1.728, 2},
              {false, {500 * 1.2, 250 * 1.08}, 1.2},
              {false, {500 * 1.2, 250 * 1.08}, 1.2, 2}};
    for (const auto& [background, tip, scale, zoom] : cases) {
        stage.content.camera.scale = zoom;
        stage.content.background = background ? &stage.background : nullptr;
        const auto cursor = stage.scene().cursor;
        ASSERT_TRUE(cursor);
        EXPECT_NEAR(cursor->place.x + arrow.hotSpotX * 3 * scale, tip.x, 1e-4);
        EXPECT_NEAR(cursor->place.y + arrow.hotSpotY * 3 * scale, tip.y, 1e-4);
        EXPECT_NEAR(cursor->place.width, arrow.width * 3 * scale, 1e-4);
        EXPECT_NEAR(cursor->place.height, arrow.height * 3 * scale, 1e-4);
    }
    stage.content.cursorScale = 0;
    EXPECT_FALSE(stage.scene().cursor);
    stage.content.cursorScale = 1;
    stage.content.pointer.reset();
    EXPECT_FALSE(stage.scene().cursor);
}

TEST(Scene, StandsTheWebcamsMiddleSquareInItsCornerSmallerWhileZoomed) {
    Stage stage;
    using enum model::WebcamPosition;
    const struct {
        model::WebcamPosition position;
        double scale;
        PixelSize picture;
        PixelRect part;
        PixelRect place;
    } cases[]{
        {bottomRight, 1.001, {1280, 720}, {280, 0, 720, 720}, {784, 384, 200, 200}},
        {topLeft, 4, {480, 640}, {0, 80, 480, 480}, {8, 8, 100, 100}}, // half of it at scale 4
        {topRight, 1, {480, 640}, {0, 80, 480, 480}, {784, 16, 200, 200}},
        {bottomLeft, 1, {90, 90}, {0, 0, 90, 90}, {16, 384, 200, 200}},
    };
    for (const auto& [position, scale, picture, part, place] : cases) {
        stage.addWebcam(picture.width, picture.height);
        stage.content.webcamPosition = position;
        stage.content.camera.scale = scale;
        const auto webcam = stage.scene({1000, 600}).webcam;
        ASSERT_TRUE(webcam);
        EXPECT_EQ(webcam->part, part);
        EXPECT_EQ(webcam->place, place);
        EXPECT_DOUBLE_EQ(webcam->cornerRadius, 0.27 * place.width);
    }
}

} // namespace
} // namespace vantro::render
