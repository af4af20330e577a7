#include "TestMovies.h"
#include "media/Composition.h"
#include "media/values/MediaError.h"

#include <gtest/gtest.h>

namespace vantro::media {
namespace {

TEST(Composition, refusesRangesThatLeaveTheAsset) {
    const test::TemporaryFolder folder;
    test::runFfmpeg("-f lavfi -i color=s=16x16:r=1:d=2 -c:v libx264 -pix_fmt yuv420p",
                    folder / "m.mov");
    const auto asset = Asset::open(folder / "m.mov");
    Composition composition(asset);
    auto& track = composition.addTrack(MediaType::video);
    const auto& source = asset.tracks().front();
    EXPECT_THROW(track.insert({{0, 1}, {3, 1}}, source, {0, 1}), MediaError);
    EXPECT_THROW(track.insert({{-1, 600}, {1, 1}}, source, {0, 1}), MediaError);
    EXPECT_EQ(track.segments().size(), 0U);
    track.insert({{0, 600}, {1201, 600}}, source, {0, 1}); // an end rounded up by a tick
    EXPECT_DEATH(track.insert({{0, 1}, {1, 1}}, source, {1, 1}), "track's end");
}

} // namespace
} // namespace vantro::media
