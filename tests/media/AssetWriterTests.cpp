#include "Sound.h"
#include "TestMovies.h"
#include "media/Asset.h"
#include "media/AssetWriter.h"
#include "media/values/MediaError.h"

#include <limits>
#include <random>
#include <thread>

namespace vantro::media {
namespace {

constexpr test::Rgb painted{200, 60, 90};

VideoSettings settings(int width, int height, bool realTime) {
    return {width, height, 20'000'000, 60, 0.5, realTime};
}

/// Opens, and starts a session at time zero.
std::unique_ptr<AssetWriter> startedWriter(const std::filesystem::path& path, FileType type,
                                           const VideoSettings& video) {
    auto writer = std::make_unique<AssetWriter>(path, type, video);
    writer->startWriting();
    writer->startSession({0, 1});
    return writer;
}

void appendWaiting(AssetWriter& writer, const VideoFrame& frame) {
    while (!writer.isReadyForMoreMediaData())
        std::this_thread::yield();
    ASSERT_TRUE(writer.append(frame));
}

std::shared_ptr<PixelBuffer> noise(int width, int height, unsigned seed) {
    auto picture = PixelBuffer::allocate(PixelFormat::bgra, width, height);
    std::mt19937 random(seed);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width * 4; ++x)
            picture->mutableRow(0, y)[x] = static_cast<std::uint8_t>(random());
    return picture;
}

TEST(AssetWriter, writesAnExportAsAnyPlayerExpectsIt) {
    const test::TemporaryFolder folder;
    const auto movie = folder / "export.mp4";
    auto writer = startedWriter(movie, FileType::mpeg4, settings(480, 270, false));
    for (int number = 0; number < 90; ++number)
        ASSERT_TRUE(writer->append(
            {test::paintedNumber(number, 480, 270, painted), {number, 60}, {1, 60}}));
    EXPECT_EQ(folder.names().size(), 1U);
    EXPECT_NE(folder.names().front(), "export.mp4"); // not before it is whole
    writer->finish();
    EXPECT_EQ(folder.names(), std::vector<std::string>{"export.mp4"});
    EXPECT_EQ(writer->frameCount(), 90);

    const auto stream = test::probe(movie, "streams").at(0);
    EXPECT_EQ(stream.at("codec_name"), "h264");
    EXPECT_EQ(stream.at("profile"), "High");
    EXPECT_EQ(stream.at("pix_fmt"), "yuv420p");
    EXPECT_EQ(stream.at("nb_frames"), "90");
    EXPECT_EQ(stream.at("r_frame_rate"), "60/1");
    EXPECT_EQ(stream.at("start_pts"), 0);
    EXPECT_EQ(stream.at("time_base"), "1/60000");
    EXPECT_EQ(stream.at("duration_ts"), 90'000);
    EXPECT_EQ(stream.at("color_range"), "tv");
    for (const char* tag : {"color_space", "color_transfer", "color_primaries"})
        EXPECT_EQ(stream.at(tag), "bt709") << tag;
    const auto bytes = test::contentOf(movie);
    EXPECT_NE(bytes.find(std::string("colrnclx\0\1\0\1\0\1", 14)), std::string::npos);
    EXPECT_LT(bytes.find("moov"), bytes.find("mdat")); // starts to play before it is loaded

    const auto asset = Asset::open(movie);
    EXPECT_EQ(asset.duration(), (MediaTime{3, 2}));
    FrameSource source(asset, 0);
    for (int number = 0; number < 90; number += 13) {
        const auto frame = test::shownAt(source, {number, 60});
        EXPECT_EQ(frame.presentationTime, (MediaTime{number, 60}));
        EXPECT_EQ(test::numberIn(*frame.pixels), number);
        const auto color = test::colorAt(*frame.pixels, 300, 200);
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(color[channel], painted[channel], 3);
    }
}

TEST(AssetWriter, keepsTheTimesOfALiveSourceToTheTickAndItsEnd) {
    const test::TemporaryFolder folder;
    const auto movie = folder / "recording.mov";
    AssetWriter writer(movie, FileType::quickTimeMovie, settings(320, 180, true));
    writer.startWriting();
    constexpr std::int64_t start = 86'400'123'456'789; // nanoseconds of a host clock
    writer.startSession({start, 1'000'000'000});
    EXPECT_TRUE(std::filesystem::exists(movie)); // it grows under its own name
    std::vector<std::int64_t> times{0, 7'000'001, 16'683'350, 900'000'000, 3'400'000'000};
    for (int extra = 1; extra <= 60; ++extra)
        times.push_back(3'400'000'000 + extra * 16'666'667LL);
    for (std::size_t i = 0; i < times.size(); ++i)
        appendWaiting(writer, {test::paintedNumber(static_cast<int>(i), 320, 180),
                               {start + times[i], 1'000'000'000},
                               {}});
    EXPECT_FALSE(writer.append({test::paintedNumber(0, 320, 180), {start, 1'000'000'000}, {}}));
    writer.finish(MediaTime{start + 9'000'000'000, 1'000'000'000});

    const auto frames = test::probe(movie, "frames");
    ASSERT_EQ(frames.size(), times.size());
    std::int64_t lastKeyframe = 0;
    for (std::size_t i = 0; i < times.size(); ++i) {
        const std::int64_t pts = frames[i].at("pts");
        EXPECT_EQ(pts, std::llround(static_cast<double>(times[i]) * 60'000 / 1e9));
        const bool due = i == 0 || pts - lastKeyframe >= 30'000;
        EXPECT_EQ(frames[i].at("key_frame"), due ? 1 : 0) << i;
        if (due)
            lastKeyframe = pts;
    }
    const auto stream = test::probe(movie, "streams").at(0);
    EXPECT_EQ(stream.at("profile"), "High");
    EXPECT_EQ(stream.at("has_b_frames"), 0);
    EXPECT_EQ(stream.at("duration_ts"), 540'000);
    const auto asset = Asset::open(movie);
    EXPECT_EQ(asset.duration(), (MediaTime{9, 1}));
    FrameSource source(asset, 0);
    EXPECT_EQ(test::numberIn(*test::shownAt(source, {3, 1}).pixels), 3);
    const auto last = test::shownAt(source, {9, 1});
    EXPECT_EQ(last.presentationTime + last.duration, (MediaTime{9, 1}));
}

TEST(AssetWriter, extendsTheLastPictureOfReorderedOnes) {
    const test::TemporaryFolder folder;
    auto tight = settings(320, 180, false);
    tight.averageBitRate = 200'000; // too few bits to do without B-frames
    for (const MediaTime end : {MediaTime{3, 1}, {89 * 10 + 1, 600}}) {
        auto writer = startedWriter(folder / "m.mp4", FileType::mpeg4, tight);
        for (int index = 0; index < 90; ++index)
            ASSERT_TRUE(writer->append({noise(320, 180, index), {index, 60}, {1, 60}}));
        writer->finish(end);
        EXPECT_GT(test::probe(folder / "m.mp4", "streams").at(0).at("has_b_frames"), 0);
        EXPECT_EQ(Asset::open(folder / "m.mp4").duration(), end);
    }
}

TEST(AssetWriter, keepsTheRateInEveryQuality) {
    const test::TemporaryFolder folder;
    constexpr int seconds = 4;
    for (const auto quality : allVideoQualities) {
        auto video = settings(320, 180, false);
        video.averageBitRate = 2'000'000;
        video.quality = quality;
        auto writer = startedWriter(folder / "m.mp4", FileType::mpeg4, video);
        for (int index = 0; index < 60 * seconds; ++index)
            ASSERT_TRUE(writer->append({noise(320, 180, index), {index, 60}, {1, 60}}));
        writer->finish();
        const auto bits = 8.0 * static_cast<double>(std::filesystem::file_size(folder / "m.mp4"));
        const double share = bits / seconds / static_cast<double>(video.averageBitRate);
        EXPECT_LT(share, 1.15) << optionName(quality); // a ceiling has half a second in reserve
        EXPECT_GT(share, 0.8) << optionName(quality);
    }
}

TEST(AssetWriter, writesOtherColorSpacesAndRepeatedPicturesInTheRightColors) {
    const test::TemporaryFolder folder;
    auto writer = startedWriter(folder / "m.mp4", FileType::mpeg4, settings(64, 64, false));
    const ColorDescription fullRange601{ColorMatrix::bt601, true};
    auto i420 = PixelBuffer::allocate(PixelFormat::i420, 64, 64, fullRange601);
    const std::uint8_t samples[]{100, 90, 180};
    for (int plane = 0; plane < 3; ++plane)
        for (int y = 0; y < i420->planeHeight(plane); ++y)
            std::fill_n(i420->mutableRow(plane, y), i420->stride(plane), samples[plane]);
    for (int index = 0; index < 10; ++index)
        ASSERT_TRUE(writer->append({i420, {index, 60}, {1, 60}}));
    writer->finish();
    FrameSource source(Asset::open(folder / "m.mp4"), 0);
    for (const int index : {0, 9}) {
        const auto written = test::colorAt(*test::shownAt(source, {index, 60}).pixels, 32, 32);
        const auto original = test::colorAt(*i420, 32, 32);
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(written[channel], original[channel], 3);
    }
}

TEST(AssetWriter, doesNotLoseAFilmsSoundInSilence) {
    const test::TemporaryFolder folder;
    AssetWriter writer(folder / "m.mp4", FileType::mpeg4, settings(64, 64, false), {{}});
    writer.startWriting();
    writer.startSession({0, 1});
    ASSERT_TRUE(writer.append({noise(64, 64, 1), {0, 60}, {1, 60}}));
    constexpr auto noNumber = std::numeric_limits<float>::quiet_NaN(); // which no encoder takes
    ASSERT_TRUE(writer.appendAudio(0, {{0, 1}, std::vector<float>(9600, noNumber)}));
    EXPECT_THROW(writer.finish(MediaTime{1, 60}), MediaError);
}

} // namespace
} // namespace vantro::media
