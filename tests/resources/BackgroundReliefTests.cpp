#include "resources/backgrounds/Relief.h"

#include <cmath>

#include <gtest/gtest.h>

namespace vantro::backgrounds {
namespace {

constexpr Frame frame{320, 180};
constexpr Camera camera{.height = 2, .horizon = 0.4F, .focal = 1.2F, .nearest = 1, .farthest = 300};

Relief makeRelief(HeightField height) {
    base::WorkerPool pool(2);
    return {frame, camera, std::move(height), pool};
}

TEST(BackgroundRelief, LevelGroundLiesWherePerspectivePutsIt) {
    const Relief relief = makeRelief([](Vec2, float) { return 0.F; });
    for (int row = 80; row < 180; row += 7) {
        for (int column = 0; column < 320; column += 31) {
            const Vec2 p = frame.place(column, row);
            const float expected = camera.focal * camera.height / (p.y - camera.horizon);
            const auto hit = relief.at(p);
            ASSERT_NEAR(hit.distance / expected, 1, 0.01) << column << ", " << row;
            const Vec2 ground = relief.ground(p, hit.distance);
            ASSERT_NEAR(ground.x, (p.x - frame.aspect() / 2) / camera.focal * hit.distance, 1e-3);
        }
    }
    EXPECT_EQ(relief.at(frame.place(100, 60)).distance, Relief::sky);
}

TEST(BackgroundRelief, AnOutlineSharesItsPixelWithWhatLiesBehind) {
    // A wall across the view, 20 away and 3 high: its top is at 0.4 + 1.2 * (2 - 3) / 20 = 0.34.
    const Relief relief = makeRelief([](Vec2 place, float) { return place.y > 20 ? 3.F : 0.F; });
    constexpr float top = 0.34F * 180; // row 61, 0.2 of it above the wall
    const int row = static_cast<int>(top);
    const Vec2 p = frame.place(160, row);
    EXPECT_EQ(relief.at(frame.place(160, row - 1)).distance, Relief::sky);
    const auto hit = relief.at(p);
    EXPECT_NEAR(hit.distance, 20, 0.3);
    EXPECT_EQ(hit.other, Relief::sky);
    EXPECT_NEAR(hit.otherShare, 0.2F, 0.1);
    EXPECT_NEAR(relief.at(frame.place(160, row + 3)).distance, 20, 0.3);
    const auto whiteSky = [](Vec2, float distance) {
        return distance == Relief::sky ? Rgb{1, 1, 1} : Rgb{};
    };
    EXPECT_NEAR(seen(relief, p, whiteSky).x, hit.otherShare, 1e-5);
}

TEST(BackgroundRelief, ASharpCrestHasASmoothOutline) {
    // A ridge whose crest runs across the view: between the steps of the search it must not be cut.
    const Relief relief =
        makeRelief([](Vec2 place, float) { return 6 - 1.5F * std::abs(place.y - 41.3F); });
    const float top = (camera.horizon + camera.focal * (camera.height - 6) / 41.3F) * 180;
    for (int column = 0; column < 320; ++column) {
        float highest = 0;
        for (int row = 0; row < 180; ++row) {
            const auto hit = relief.at(frame.place(column, row));
            const float own = hit.distance == Relief::sky ? 0.F : 1.F;
            const float other = hit.other == Relief::sky ? 0.F : 1.F;
            highest += mix(own, other, hit.otherShare);
        }
        ASSERT_NEAR(180 - highest, top, 0.1) << column;
    }
}

TEST(BackgroundRelief, SlopesPointTheirNormalsAndWallsCastShadows) {
    const Relief slope =
        makeRelief([](Vec2 place, float) { return 0.5F * place.x - 0.2F * place.y; });
    const auto surface = slope.surface({1, 12}, 0.05F);
    EXPECT_NEAR(surface.height, 0.5F - 2.4F, 1e-4);
    EXPECT_NEAR(surface.normal.x / surface.normal.z, -0.5F, 1e-3);
    EXPECT_NEAR(surface.normal.y / surface.normal.z, 0.2F, 1e-3);
    EXPECT_NEAR(dot(surface.normal, surface.normal), 1, 1e-5);

    // A wall to the left of x = -2, 2 high; the sun stands to the left at 45 degrees.
    const Relief wall = makeRelief([](Vec2 place, float) { return place.x < -2 ? 2.F : 0.F; });
    const Vec3 toSun = normalized({-1, 0, 1});
    EXPECT_EQ(wall.sunlight({-1, 15}, toSun, 8, 0.05F), 0);
    EXPECT_EQ(wall.sunlight({1.5F, 15}, toSun, 8, 0.05F), 1);
    EXPECT_EQ(wall.sunOn({1.5F, 15}, {0, 0, -1}, toSun, 8, 0.05F), 0);
    EXPECT_NEAR(wall.sunOn({1.5F, 15}, {0, 0, 1}, toSun, 8, 0.05F), 0.7071, 1e-3);
}

} // namespace
} // namespace vantro::backgrounds
