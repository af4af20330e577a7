// An encoder that fails in the middle of a film: libx264 goes on, and nobody who plays it notices.
#include "StandInEncoder.h"
#include "TestMovies.h"
#include "media/Asset.h"
#include "media/av/encode/VideoEncoder.h"
#include "media/av/movie/MovieMuxer.h"
#include "media/color/ColorConversion.h"
#include "media/values/MediaError.h"

#include <gmock/gmock.h>
namespace vantro::media {
namespace {

using test::standInEncoder;

constexpr int frameCount = 75;
constexpr std::int64_t frameTicks = 2000; // of 60000 a second

std::shared_ptr<const PixelBuffer> numberedPicture(int number) {
    const auto bgra = test::paintedNumber(number, 320, 180);
    auto picture = PixelBuffer::allocate(PixelFormat::i420, 320, 180);
    color::convertBgraToI420(*bgra, *picture);
    return picture;
}

/// A film of painted numbers from 0 on; the names of the encoders that made it.
std::string writeFilm(const std::filesystem::path& path, av::CodecSession first) {
    av::VideoEncoder encoder(test::filmSettings(), std::move(first));
    av::MovieMuxer muxer(path, path, FileType::mpeg4);
    const int track = muxer.addTrack(encoder.context());
    muxer.begin();
    const auto write = [&](av::EncodedPacket& packet) {
        packet.setDuration(frameTicks);
        muxer.write(track, packet);
    };
    for (int number = 0; number < frameCount; ++number)
        encoder.encode(numberedPicture(number), number * frameTicks, write);
    encoder.drain(write);
    muxer.finish();
    return encoder.name();
}

void expectWholeFilm(const std::filesystem::path& film) {
    FrameSource source(Asset::open(film), 0);
    for (int step = 0; step < frameCount; ++step) {
        const int number = step * 31 % frameCount; // to and fro across the place of the change
        const auto shown = test::shownAt(source, {number, 30});
        EXPECT_EQ(test::numberIn(*shown.pixels), number);
        EXPECT_EQ(shown.presentationTime, (MediaTime{number, 30}));
    }
    const auto stream = test::probe(film, "streams").at(0);
    EXPECT_EQ(stream.at("profile"), "High");
    EXPECT_EQ(stream.at("nb_frames"), std::to_string(frameCount));
    EXPECT_EQ(stream.at("duration_ts"), frameCount * frameTicks);
}

/// Fails from the picture with this number on, as a device that went away.
av::CodecSession::Submit failingAt(int number) {
    return [number](AVCodecContext* codec, const AVFrame* picture) {
        return picture == nullptr || picture->pts >= number * frameTicks
                   ? AVERROR_EXTERNAL
                   : avcodec_send_frame(codec, picture);
    };
}

TEST(VideoEncoder, goesOnWithLibx264WhereTheHardwareFails) {
    const test::TemporaryFolder folder;
    // The first picture, some after it that are held back, a keyframe, the last, and the end.
    for (const int number : {0, 1, 5, 30, 42, frameCount - 1, frameCount}) {
        SCOPED_TRACE(number);
        EXPECT_EQ(writeFilm(folder / "film.mp4", standInEncoder(failingAt(number))),
                  "stand-in, libx264");
        expectWholeFilm(folder / "film.mp4");
    }
}

TEST(VideoEncoder, goesOnWithLibx264WhereTheHardwareKeepsPicturesOrMixesThem) {
    const test::TemporaryFolder folder;
    const auto keepsLast = [](AVCodecContext* codec, const AVFrame* picture) {
        return picture == nullptr ? 0 : avcodec_send_frame(codec, picture);
    };
    EXPECT_EQ(writeFilm(folder / "film.mp4", standInEncoder(keepsLast)), "stand-in, libx264");
    expectWholeFilm(folder / "film.mp4");
    const auto swapsOrder = [](AVCodecContext& codec) { codec.max_b_frames = 3; };
    EXPECT_EQ(writeFilm(folder / "film.mp4", standInEncoder(avcodec_send_frame, swapsOrder)),
              "stand-in, libx264");
    expectWholeFilm(folder / "film.mp4");
}

TEST(VideoEncoder, makesTheWholeFilmWithHardwareThatWorks) {
    const test::TemporaryFolder folder;
    EXPECT_EQ(writeFilm(folder / "film.mp4", standInEncoder()), "stand-in");
    expectWholeFilm(folder / "film.mp4");
}

TEST(VideoEncoder, tellsAFailedWriteFromAFailedEncoder) {
    av::VideoEncoder encoder(test::filmSettings(), standInEncoder());
    const auto fullDisk = [](av::EncodedPacket&) { throw MediaError("No space left on device"); };
    const auto encodeAll = [&] {
        for (int number = 0; number < frameCount; ++number)
            encoder.encode(numberedPicture(number), number * frameTicks, fullDisk);
        encoder.drain(fullDisk);
    };
    EXPECT_THAT(encodeAll, ::testing::ThrowsMessage<MediaError>("No space left on device"));
    EXPECT_EQ(encoder.name(), "stand-in");
}

} // namespace
} // namespace vantro::media
