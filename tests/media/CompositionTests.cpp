#include "TestMovies.h"
#include "media/Composition.h"
#include "media/values/MediaError.h"

#include <random>

#include <gtest/gtest.h>

namespace vantro::media {
namespace {

Asset assetOfSeconds(int seconds) {
    const test::TemporaryFolder folder;
    test::runFfmpeg("-f lavfi -i color=s=16x16:r=1:d=" + std::to_string(seconds) +
                        " -c:v libx264 -pix_fmt yuv420p",
                    folder / "m.mov");
    return Asset::open(folder / "m.mov");
}

TEST(Composition, refusesRangesThatLeaveTheAsset) {
    const auto asset = assetOfSeconds(2);
    Composition composition(asset);
    auto& track = composition.addTrack(MediaType::video);
    const auto& source = asset.tracks().front();
    EXPECT_THROW(track.insert({{0, 1}, {3, 1}}, source, {0, 1}), MediaError);
    EXPECT_THROW(track.insert({{-1, 600}, {1, 1}}, source, {0, 1}), MediaError);
    EXPECT_EQ(track.segments().size(), 0U);
    track.insert({{0, 600}, {1201, 600}}, source, {0, 1}); // an end rounded up by a tick
    EXPECT_DEATH(track.insert({{0, 1}, {1, 1}}, source, {1, 1}), "track's end");
}

TEST(Composition, fiveHundredSegmentsDoNotDrift) {
    const auto asset = assetOfSeconds(600);
    Composition composition(asset);
    auto& track = composition.addTrack(MediaType::video);
    const auto& source = asset.tracks().front();
    std::mt19937 random(11);
    std::int64_t sourceTicks = 0;
    std::int64_t playedTicks = 0;
    for (int i = 0; i < 500; ++i) {
        const std::int64_t length = 100 + random() % 500;
        const std::int64_t played = 30 + random() % 1500;
        track.insert({{sourceTicks, 600}, {length, 600}}, source, {playedTicks, 600});
        if (played != length)
            track.scale({{playedTicks, 600}, {length, 600}}, {played, 600});
        ASSERT_EQ(track.sourceTime({playedTicks, 600}), (MediaTime{sourceTicks, 600}));
        // A time inside: (source − start) / length = (t − target start) / played, exactly.
        const std::int64_t inside = random() % played;
        const auto mapped = track.sourceTime({playedTicks + inside, 600}).value_or(MediaTime{});
        ASSERT_EQ((mapped.value * 600 - sourceTicks * mapped.timescale) * played,
                  inside * length * mapped.timescale);
        sourceTicks += length + random() % 100;
        playedTicks += played;
    }
    EXPECT_EQ(composition.duration(), (MediaTime{playedTicks, 600}));
}

} // namespace
} // namespace vantro::media
