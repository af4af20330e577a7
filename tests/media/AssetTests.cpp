#include "TestMovies.h"
#include "media/Asset.h"
namespace vantro::media {
namespace {

using test::colorAt;
using test::makeNumberedMovie;
using test::numberIn;
using test::runFfmpeg;
using test::shownAt;

constexpr int width = 240;
constexpr int height = 136;

/// One way to store painted pictures.
struct Storage {
    const char* name;
    const char* extension;
    const char* arguments;
    int tolerance = 6; ///< of colors, for lossy coding
};

class StoredPictures : public testing::TestWithParam<Storage> {};

TEST_P(StoredPictures, showTheirNumbersAndColors) {
    const test::TemporaryFolder folder;
    const auto movie = folder / (std::string("movie.") + GetParam().extension);
    makeNumberedMovie(movie, {20, width, height, 20}, GetParam().arguments);
    const auto asset = Asset::open(movie);
    FrameSource source(asset, asset.tracks(MediaType::video).at(0).id);
    for (const int number : {0, 7, 19, 3}) {
        const auto frame = shownAt(source, {2LL * number + 1, 40});
        EXPECT_NEAR(frame.presentationTime.seconds(), number / 20.0, 0.0006);
        EXPECT_EQ(frame.pixels->width(), width);
        EXPECT_EQ(frame.pixels->height(), height);
        EXPECT_EQ(numberIn(*frame.pixels), number);
        const auto color = colorAt(*frame.pixels, 121, 99);
        const test::Rgb painted{30, 120, 200};
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(color[channel], painted[channel], GetParam().tolerance);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Formats, StoredPictures,
    testing::Values(
        Storage{"h264Bt601", "mp4", "-c:v libx264 -bf 3 -pix_fmt yuv420p"},
        Storage{"h264Bt709", "mkv",
                "-vf scale=out_color_matrix=bt709 -colorspace bt709 -c:v libx264 "
                "-pix_fmt yuv420p"},
        Storage{"h264TenBit", "mp4", "-c:v libx264 -pix_fmt yuv420p10le"},
        Storage{"h264FullChroma", "mov", "-c:v libx264 -pix_fmt yuv444p"},
        Storage{"vp9", "webm", "-c:v libvpx-vp9 -deadline realtime -b:v 2M -pix_fmt yuv420p"},
        Storage{"motionJpegFullRange", "mov", "-c:v mjpeg -q:v 2 -pix_fmt yuvj420p"},
        Storage{"proRes", "mov", "-c:v prores_ks"},
        Storage{"pngWithAlpha", "mov", "-c:v png -pix_fmt rgba", 0},
        Storage{"transportStreamFromAnyTime", "ts", "-c:v libx264 -bf 2 -pix_fmt yuv420p"},
        Storage{"sampleAspect", "mp4",
                "-vf scale=120:136,setsar=2/1 -c:v libx264 -qp 4 -pix_fmt yuv420p", 8}),
    [](const auto& storage) { return storage.param.name; });

TEST(Asset, showsRotatedMoviesUpright) {
    const test::TemporaryFolder folder;
    runFfmpeg("-f lavfi -i color=blue:s=160x96:r=10:d=0.5 -vf drawbox=w=80:h=48:c=red:t=fill,"
              "drawbox=x=80:w=80:h=48:c=lime:t=fill -c:v libx264 -qp 4 -pix_fmt yuv420p",
              folder / "flat.mp4");
    for (const int rotation : {0, 90, 180, 270}) {
        SCOPED_TRACE(rotation);
        const auto movie = folder / "turned.mp4";
        runFfmpeg("-i flat.mp4 -c copy -metadata:s:v rotate=" + std::to_string(rotation), movie);
        const auto asset = Asset::open(movie);
        const bool turned = rotation % 180 != 0;
        EXPECT_EQ(asset.tracks().at(0).naturalSize.width, turned ? 96 : 160);
        FrameSource source(asset, 0);
        const auto frame = shownAt(source, {0, 1});
        ASSERT_EQ(frame.pixels->width(), turned ? 96 : 160);

        // The red quarter, stored at the top left, goes round as other players turn it.
        const auto size = std::pair(frame.pixels->width(), frame.pixels->height());
        const bool right = rotation == 180 || rotation == 270;
        const bool below = rotation == 90 || rotation == 180;
        const auto color = colorAt(*frame.pixels, size.first * (right ? 3 : 1) / 4,
                                   size.second * (below ? 3 : 1) / 4);
        EXPECT_NEAR(color[0], 255, 8);
        EXPECT_NEAR(color[1] + color[2], 0, 16);
    }
}

TEST(Asset, startsWhereAPlayerStarts) {
    const test::TemporaryFolder folder;
    makeNumberedMovie(folder / "whole.mp4", {40, width, height, 20},
                      "-c:v libx264 -g 40 -pix_fmt yuv420p");
    // An edit list that begins between keyframes, without encoding again.
    const auto movie = folder / "trimmed.mp4";
    runFfmpeg("-ss 0.5 -i whole.mp4 -c copy", movie);
    const auto asset = Asset::open(movie);
    FrameSource source(asset, 0);
    const auto first = shownAt(source, {0, 1});
    EXPECT_EQ(numberIn(*first.pixels), 10);
    EXPECT_EQ(first.presentationTime, (MediaTime{0, 1}));
    EXPECT_EQ(numberIn(*shownAt(source, {1, 1}).pixels), 30);
    EXPECT_EQ(asset.duration(), (MediaTime{3, 2}));
}

TEST(Asset, lastsAsLongAsItsPicturesWhateverTheTracksEntrySays) {
    const test::TemporaryFolder folder;
    const auto movie = folder / "variable.mov";
    for (const std::string sound : {"", "-f lavfi -i sine=d=2 "}) {
        makeNumberedMovie(
            movie, {90, width, height, 30},
            sound + "-vf \"select='lt(n,60)+not(mod(n,5))'\" -vsync vfr -c:v libx264 -bf 3");
        const auto told = test::probe(movie, "streams").at(0).at("duration").get<std::string>();
        ASSERT_LT(std::stod(told), 2.8) << "no such movie";
        const auto asset = Asset::open(movie);
        EXPECT_EQ(asset.duration(), (MediaTime{86, 30}));
        FrameSource source(asset, 0);
        const auto last = shownAt(source, asset.duration());
        EXPECT_EQ(numberIn(*last.pixels), 85);
        EXPECT_EQ(last.presentationTime + last.duration, asset.duration());
    }
}

} // namespace
} // namespace vantro::media
