#include "TestMovies.h"
#include "media/VideoCompositionReader.h"
#include "media/values/MediaError.h"

#include <numeric>

#include <gtest/gtest.h>

namespace vantro::media {
namespace {

/// Hands the source's pixels through and notes what it was asked for.
struct PassThrough : VideoCompositor {
    std::vector<CompositionRequest> requests;

    std::shared_ptr<const PixelBuffer> compose(const CompositionRequest& request) override {
        requests.push_back(request);
        return request.sourceFrame.pixels;
    }
};

class VideoCompositionReading : public testing::Test {
  protected:
    /// 300 painted pictures at 60 a second, a keyframe each half second.
    void SetUp() override {
        test::writeRawPictures(folder / "raw", 300, 160, 90);
        test::runFfmpeg("-f rawvideo -pix_fmt bgra -s 160x90 -r 60 -i raw -c:v libx264 -bf 2 "
                        "-g 30 -movflags faststart",
                        folder / "movie.mp4");
    }

    struct Part {
        int firstPicture;
        int pictures;
        int playedTicks; ///< of 1/600 s
    };

    Composition compose(const std::vector<Part>& parts) const {
        const auto asset = Asset::open(folder / "movie.mp4");
        Composition composition(asset);
        auto& track = composition.addTrack(MediaType::video);
        for (const auto& part : parts) {
            const MediaTime at = track.duration();
            const MediaTimeRange range{{part.firstPicture * 10LL, 600},
                                       {part.pictures * 10LL, 600}};
            track.insert(range, asset.tracks().front(), at);
            track.scale({at, range.duration}, {part.playedTicks, 600});
        }
        return composition;
    }

    VideoComposition at(int frameRate) const { return {1, {1, frameRate}, 160, 90, compositor}; }

    static std::vector<int> read(VideoCompositionReader& reader) {
        std::vector<int> numbers;
        while (const auto frame = reader.copyNextFrame())
            numbers.push_back(test::numberIn(*frame->pixels));
        return numbers;
    }

    test::TemporaryFolder folder;
    std::shared_ptr<PassThrough> compositor = std::make_shared<PassThrough>();
};

TEST_F(VideoCompositionReading, followsCutsJumpsBackAndSpeeds) {
    // Double speed, a jump far ahead, a jump back, half speed.
    const auto composition = compose({{0, 60, 300}, {240, 30, 300}, {100, 20, 200}, {10, 15, 300}});
    VideoCompositionReader reader(composition, at(60), PixelFormat::bgra);
    std::vector<int> expected(110);
    for (int k = 0; k < 30; ++k) {
        expected[k] = 2 * k;
        expected[30 + k] = 240 + k;
        expected[80 + k] = 10 + k / 2;
    }
    std::iota(expected.begin() + 60, expected.begin() + 80, 100);
    EXPECT_EQ(reader.frameCount(), 110);
    EXPECT_EQ(read(reader), expected);
    EXPECT_FALSE(reader.copyNextFrame());
    for (std::size_t k = 0; k < expected.size(); ++k) {
        const auto& request = compositor->requests.at(k);
        EXPECT_EQ(request.compositionTime, (MediaTime{static_cast<std::int64_t>(k), 60}));
        EXPECT_EQ(request.sourceFrame.presentationTime, (MediaTime{expected[k], 60}));
    }
    // Half speed shows each picture twice: the same pixels, not a copy.
    EXPECT_EQ(compositor->requests[82].sourceFrame.pixels,
              compositor->requests[83].sourceFrame.pixels);
}

TEST_F(VideoCompositionReading, keepsItsOwnRateAndScaleWhateverTheSources) {
    const auto composition = compose({{0, 30, 300}});
    VideoComposition video = at(25);
    video.renderScale = 0.5;
    VideoCompositionReader reader(composition, video, PixelFormat::bgra);
    std::vector<int> expected(13); // 12.5 frames begin within half a second
    for (int k = 0; k < 13; ++k)
        expected[k] = k * 60 / 25;
    EXPECT_EQ(read(reader), expected);
    EXPECT_EQ(compositor->requests.front().renderScale, 0.5);
}

} // namespace
} // namespace vantro::media
