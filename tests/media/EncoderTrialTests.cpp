// Trials of encoders: real libx264 set up rightly and wrongly, and the hardware that there is.
#include "StandInEncoder.h"
#include "TestMovies.h"
#include "media/AssetWriter.h"
#include "media/av/encode/EncoderSelection.h"
#include "media/av/encode/EncoderTrial.h"
#include "media/av/encode/SoftwareEncoder.h"

#include <utility>

#include <gmock/gmock.h>
namespace vantro::media {
namespace {

using test::filmSettings;
using test::standInEncoder;
using ::testing::HasSubstr;

std::string faultIn(const std::function<void(AVCodecContext&)>& prepare) {
    return av::faultInTrial(standInEncoder(avcodec_send_frame, prepare), filmSettings());
}

TEST(EncoderTrial, passesAnEncoderThatDoesAsItIsTold) {
    EXPECT_EQ(av::faultInTrial(standInEncoder(), filmSettings()), "");
    auto tall = filmSettings();
    tall.height = 270; // no whole number of macroblocks
    EXPECT_EQ(av::faultInTrial(av::openSucceedingEncoder(tall), tall), "");
}

TEST(EncoderTrial, findsWhatAnEncoderMakesOfItsOrders) {
    EXPECT_THAT(faultIn([](auto& codec) { av::setOption(codec, "profile", "main"); }),
                HasSubstr("High profile"));
    EXPECT_THAT(faultIn([](auto& codec) { codec.colorspace = AVCOL_SPC_UNSPECIFIED; }),
                HasSubstr("colors mean"));
    EXPECT_THAT(faultIn([](auto& codec) { codec.max_b_frames = 2; }), HasSubstr("order"));
}

TEST(EncoderTrial, findsWrongPicturesMissingOnesAndFailure) {
    const auto swapsChroma = [](AVCodecContext* codec, const AVFrame* picture) {
        if (picture == nullptr)
            return avcodec_send_frame(codec, nullptr);
        const av::FrameHandle swapped(av_frame_clone(picture));
        std::swap(swapped->data[1], swapped->data[2]);
        return avcodec_send_frame(codec, swapped.get());
    };
    EXPECT_THAT(av::faultInTrial(standInEncoder(swapsChroma), filmSettings()),
                HasSubstr("wrong colors"));
    const auto drops = [](AVCodecContext* codec, const AVFrame* picture) {
        return picture != nullptr && picture->pts > 0 ? 0 : avcodec_send_frame(codec, picture);
    };
    EXPECT_THAT(av::faultInTrial(standInEncoder(drops), filmSettings()), HasSubstr("1 pictures"));
    const auto breaks = [](AVCodecContext*, const AVFrame*) { return AVERROR_EXTERNAL; };
    EXPECT_THAT(av::faultInTrial(standInEncoder(breaks), filmSettings()), HasSubstr("external"));
}

TEST(EncoderSelection, remembersLastingVerdictsOnly) {
    av::Verdicts verdicts;
    const auto settings = filmSettings();
    const auto ask = [&](VideoEncoderChoice choice, av::Verdict answer) {
        return verdicts.problem(choice, settings, [&] { return answer; });
    };
    EXPECT_EQ(ask(VideoEncoderChoice::nvenc, {"busy", false}), "busy");
    EXPECT_EQ(ask(VideoEncoderChoice::nvenc, {""}), "");
    EXPECT_EQ(ask(VideoEncoderChoice::nvenc, {"wrong colors"}), "");
    EXPECT_EQ(ask(VideoEncoderChoice::vaapi, {"wrong colors"}), "wrong colors");
    EXPECT_EQ(ask(VideoEncoderChoice::vaapi, {""}), "wrong colors");
}

TEST(EncoderSelection, encodesWhateverThereIsAndLiveSourcesWithLibx264) {
    const test::TemporaryFolder folder;
    const auto encoderOf = [&](VideoSettings settings) {
        AssetWriter writer(folder / "film.mp4", FileType::mpeg4, settings);
        writer.startWriting();
        writer.startSession({});
        writer.append({test::paintedNumber(7, 320, 180), {0, 30}, {1, 30}});
        writer.finish();
        return writer.encoderName();
    };
    auto settings = filmSettings();
    settings.encoder = VideoEncoderChoice::automatic;
    EXPECT_NE(encoderOf(settings), "");
    EXPECT_EQ(test::probe(folder / "film.mp4", "streams").at(0).at("profile"), "High");
    settings.encoder = VideoEncoderChoice::nvenc;
    settings.expectsRealTime = true;
    EXPECT_EQ(encoderOf(settings), "libx264");
}

} // namespace
} // namespace vantro::media
