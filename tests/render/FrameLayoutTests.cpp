#include "render/scene/FrameLayout.h"

#include <gtest/gtest.h>

namespace vantro::render {
namespace {

RenderParams framed(int canvasWidth, int canvasHeight, int sourceWidth, int sourceHeight) {
    RenderParams params;
    params.source =
        media::PixelBuffer::allocate(media::PixelFormat::bgra, sourceWidth, sourceHeight);
    params.canvasWidth = canvasWidth;
    params.canvasHeight = canvasHeight;
    return params;
}

TEST(FrameLayout, FitsTheRecordingIntoTheCanvasLessItsPadding) {
    model::BackgroundSettings settings;
    settings.padding = 0.1;
    settings.cornerRadius = 40;
    const auto wide = recordingInset({1920, 1080}, {1600, 1000}, settings);
    EXPECT_NEAR(wide.rect.x, 268.8, 1e-9);
    EXPECT_NEAR(wide.rect.y, 108, 1e-9);
    EXPECT_NEAR(wide.rect.width, 1382.4, 1e-9);
    EXPECT_NEAR(wide.rect.height, 864, 1e-9);
    EXPECT_EQ(wide.cornerRadius, 40);

    const auto tall = recordingInset({1080, 1920}, {1600, 900}, settings);
    EXPECT_NEAR(tall.rect.width, 864, 1e-9);
    EXPECT_NEAR(tall.rect.height, 486, 1e-9);
    EXPECT_NEAR(tall.rect.y, (1920 - 486) / 2.0, 1e-9);
}

TEST(FrameLayout, FillsTheCanvasWithoutABackground) {
    const auto inset = recordingInset({640, 360}, {100, 900}, std::nullopt);
    EXPECT_EQ(inset.rect, (model::Rect{0, 0, 640, 360}));
    EXPECT_EQ(inset.cornerRadius, 0);
}

TEST(FrameLayout, KeepsTheInsetWithinTheCanvasForAbsurdPadding) {
    model::BackgroundSettings settings;
    for (const double padding : {0.5, 0.9, 1e300}) {
        settings.padding = padding;
        const auto inset = recordingInset({640, 360}, {640, 360}, settings);
        EXPECT_EQ(inset.rect, (model::Rect{320, 180, 0, 0})) << padding;
    }
    settings.padding = -1e300;
    EXPECT_EQ(recordingInset({640, 360}, {640, 360}, settings).rect, (model::Rect{0, 0, 640, 360}));
}

TEST(FrameLayout, ShiftsTheZoomWindowAtTheEdgesWithoutShrinkingIt) {
    RenderParams params = framed(1000, 500, 2000, 1000);
    params.insetX = 100;
    params.insetY = 50;
    params.insetW = 800;
    params.insetH = 400;
    params.keyframe = {2, 1000, 500};
    const auto middle = sceneZoomWindow(params);
    EXPECT_NEAR(middle.x, 250, 1e-9); // the recording's centre stands at canvas (500, 250)
    EXPECT_NEAR(middle.y, 125, 1e-9);

    for (const double x : {-500.0, 0.0, 150.0, 1950.0, 9000.0}) {
        params.keyframe.centerX = x;
        params.keyframe.centerY = x;
        const auto scene = sceneZoomWindow(params);
        const auto source = sourceZoomWindow(params);
        EXPECT_EQ(scene.width, 500);
        EXPECT_EQ(scene.height, 250);
        EXPECT_GE(scene.x, 0);
        EXPECT_LE(scene.x, 500);
        EXPECT_EQ(source.width, 1000);
        EXPECT_GE(source.x, 0);
        EXPECT_LE(source.x, 1000);
        EXPECT_GE(source.y, 0);
        EXPECT_LE(source.y, 500);
    }
    EXPECT_EQ(sceneZoomWindow(params).x, 500);
    EXPECT_EQ(sourceZoomWindow(params).y, 500);
}

TEST(FrameLayout, PutsTheCursorsHotSpotOnItsPosition) {
    const CursorImage cursor{nullptr, 20, 30, 5, 6};
    RenderParams params = framed(1000, 500, 2000, 1000);
    params.hasBackground = true;
    params.insetX = 100;
    params.insetY = 70; // 30 from the top
    params.insetW = 800;
    params.insetH = 400;
    params.cursorX = 500.0F;
    params.cursorY = 250.0F;
    params.cursorScale = 3;
    const model::Rect rect = cursorRect(params, cursor);
    EXPECT_NEAR(rect.x + 5 * 3 * 0.4, 100 + 500 * 0.4, 1e-4);
    EXPECT_NEAR(rect.y + 6 * 3 * 0.4, 30 + 250 * 0.4, 1e-4);
    EXPECT_NEAR(rect.width, 20 * 3 * 0.4, 1e-4);
    EXPECT_NEAR(rect.height, 30 * 3 * 0.4, 1e-4);

    params.hasBackground = false; // then the recording is the whole canvas
    const model::Rect bare = cursorRect(params, cursor);
    EXPECT_NEAR(bare.x + 5 * 3 * 0.5, 250, 1e-4);
    EXPECT_NEAR(bare.y + 6 * 3 * 0.5, 125, 1e-4);
}

TEST(FrameLayout, PlacesTheWebcamSquareInItsCornerAndShrinksItWhileZoomed) {
    const model::Size canvas{1000, 600};
    const auto lower =
        webcamPlacement(canvas, {1280, 720}, model::WebcamPosition::bottomRight, 0.2, 1.001);
    EXPECT_EQ(lower.square, (RenderRect{1000 - 200 - 16, 16, 200, 200}));
    EXPECT_FLOAT_EQ(lower.cornerRadius, 54);
    EXPECT_FLOAT_EQ(lower.drawRect.height, 200);
    EXPECT_FLOAT_EQ(lower.drawRect.width, 200 * 16 / 9.0F);
    EXPECT_FLOAT_EQ(lower.drawRect.x + lower.drawRect.width / 2, 884);

    const auto upper = webcamPlacement(canvas, {480, 640}, model::WebcamPosition::topLeft, 0.2, 4);
    EXPECT_EQ(upper.square, (RenderRect{8, 600 - 100 - 8, 100, 100})); // half of it at scale 4
    EXPECT_FLOAT_EQ(upper.drawRect.width, 100);
    EXPECT_FLOAT_EQ(upper.drawRect.height, 100 * 640 / 480.0F);
}

} // namespace
} // namespace vantro::render
