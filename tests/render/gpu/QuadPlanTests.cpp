#include "render/gpu/QuadPlan.h"
#include "render/gpu/TestPictures.h"

#include <vector>

#include <gmock/gmock.h>

namespace vantro::render::gpu {
namespace {

using testing::ElementsAre;
using testing::FloatEq;

CursorImage arrow() {
    return {.pixels = translucentPicture(8, 8, 1),
            .width = 20,
            .height = 30,
            .hotSpotX = 2,
            .hotSpotY = 3};
}

/// A 400 × 200 recording in the middle of an 800 × 600 canvas, everything switched on.
RenderParams fullFrame() {
    RenderParams params;
    params.source = screenPicture(media::PixelFormat::bgra, 400, 200, 1);
    params.canvasWidth = 800;
    params.canvasHeight = 600;
    params.hasBackground = true;
    params.insetX = 200;
    params.insetY = 100; // from the bottom: the recording's upper edge is at 300
    params.insetW = 400;
    params.insetH = 200;
    params.cornerRadius = 12;
    params.cursorX = 10.0F;
    params.cursorY = 20.0F;
    params.webcam = screenPicture(media::PixelFormat::bgra, 128, 72, 2);
    params.webcamRect = RenderRect{600, 50, 100, 100};
    params.webcamDrawRect = RenderRect{561, 50, 178, 100};
    params.webcamCornerRadius = 27;
    return params;
}

std::vector<PictureRole> pictures(const QuadList& quads) {
    std::vector<PictureRole> roles;
    for (const QuadDraw& quad : quads.draws())
        roles.push_back(quad.picture);
    return roles;
}

TEST(QuadPlan, choosesThePathFromBackgroundZoomAndCursor) {
    RenderParams params = fullFrame();
    const auto pathAt = [&](double scale) {
        params.keyframe.scale = scale;
        return drawPath(params);
    };
    EXPECT_EQ(pathAt(1.001), DrawPath::direct);
    EXPECT_EQ(pathAt(1.0011), DrawPath::scene);
    params.hasBackground = false;
    EXPECT_EQ(pathAt(1.001), DrawPath::plain);
    EXPECT_EQ(pathAt(1.0011), DrawPath::zoomWithoutBackground);
    params.cursorX.reset();
    EXPECT_EQ(pathAt(1), DrawPath::plain) << "the webcam needs the source beneath it";
    EXPECT_EQ(pathAt(2), DrawPath::zoomWithoutBackground);
    params.webcam.reset();
    EXPECT_EQ(pathAt(1), DrawPath::nothing);
}

TEST(QuadPlan, drawsLayersInOrderAndZoomsAllButTheWebcam) {
    using enum PictureRole;
    RenderParams params = fullFrame();
    const QuadPlan direct = planQuads(params, arrow());
    EXPECT_THAT(pictures(direct.scene), ElementsAre());
    EXPECT_THAT(pictures(direct.output), ElementsAre(none, shadow, source, cursor, webcam));

    params.keyframe.scale = 2;
    params.backgroundImage = screenPicture(media::PixelFormat::bgra, 4, 4, 3);
    const QuadPlan zoomed = planQuads(params, arrow());
    EXPECT_THAT(pictures(zoomed.scene), ElementsAre(background, shadow, source, cursor));
    EXPECT_THAT(pictures(zoomed.output), ElementsAre(scene, webcam));

    params.hasBackground = false;
    EXPECT_THAT(pictures(planQuads(params, arrow()).output), ElementsAre(source, cursor, webcam));
    params.keyframe.scale = 1;
    params.cursorY.reset(); // half a position is none
    EXPECT_THAT(pictures(planQuads(params, arrow()).output), ElementsAre(source, webcam));
}

TEST(QuadPlan, givesAbsentColourOpaqueGrey) {
    const QuadPlan plan = planQuads(fullFrame(), arrow());
    EXPECT_THAT(plan.output.draws()[0].uniforms.color, ElementsAre(0.15F, 0.15F, 0.15F, 1.0F));
}

TEST(QuadPlan, placesPicturesFromTheTopAndLeavesRoomForSoftRims) {
    const QuadPlan plan = planQuads(fullFrame(), arrow());
    const QuadDraw& recording = plan.output.draws()[2];
    EXPECT_THAT(recording.uniforms.rectangle, ElementsAre(200, 300, 400, 200));
    EXPECT_EQ(recording.uniforms.cornerRadius, 12);
    // One pixel beyond on every side: 199…601 of 800, 299…501 of 600.
    EXPECT_THAT(recording.vertices[0].x, FloatEq(2 * 199.0F / 800 - 1));
    EXPECT_THAT(recording.vertices[0].y, FloatEq(1 - 2 * 299.0F / 600));
    EXPECT_THAT(recording.vertices[5].x, FloatEq(2 * 601.0F / 800 - 1));
    EXPECT_THAT(recording.vertices[5].y, FloatEq(1 - 2 * 501.0F / 600));
    // The hot spot, 2 and 3 units from the picture's corner, is at the cursor's position.
    EXPECT_THAT(plan.output.draws()[3].uniforms.rectangle, ElementsAre(208, 317, 20, 30));
}

TEST(QuadPlan, cropsTheWebcamToItsCentreSquare) {
    RenderParams params = fullFrame();
    const auto crop = [&] { return planQuads(params, arrow()).output.draws()[4].uniforms; };
    EXPECT_THAT(crop().rectangle, ElementsAre(600, 450, 100, 100));
    EXPECT_THAT(crop().origin, ElementsAre(FloatEq(28.0F / 128), 0));
    EXPECT_THAT(crop().size, ElementsAre(FloatEq(72.0F / 128), 1));
    params.webcam = screenPicture(media::PixelFormat::bgra, 72, 128, 2);
    EXPECT_THAT(crop().origin, ElementsAre(0, FloatEq(28.0F / 128)));
    EXPECT_THAT(crop().size, ElementsAre(1, FloatEq(72.0F / 128)));
}

TEST(QuadPlan, shiftsTheZoomWindowAtEdgesAndNeverShrinksIt) {
    RenderParams params = fullFrame();
    params.hasBackground = false;
    params.keyframe = {4, 0, 200}; // the lower left corner
    const QuadPlan plan = planQuads(params, arrow());
    const QuadUniforms& sample = plan.output.draws()[0].uniforms;
    EXPECT_THAT(sample.origin, ElementsAre(0, FloatEq(0.75F)));
    EXPECT_THAT(sample.size, ElementsAre(FloatEq(0.25F), FloatEq(0.25F)));
}

} // namespace
} // namespace vantro::render::gpu
