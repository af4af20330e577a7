// Whole recordings with sound of real, private sound servers, looked at in the finished movie.
#include "capture/sound/SoundOffsets.h"
#include "media/TestMovies.h"
#include "media/pulse/PulseSound.h"

namespace vantro::capture::sound {
namespace {

INSTANTIATE_TEST_SUITE_P(, SoundRecording, testing::Values(Kind::pipewire, Kind::pulseaudio),
                         serverName);

TEST_P(SoundRecording, TellsSpeakersAndMicrophoneApart) {
    const TonePlayer speakers("box", 440);
    const TonePlayer voice("mic_feed", 1000);
    Recording recording(both);
    ASSERT_TRUE(recording.goesOnFor(1500ms));
    recording.stop();
    EXPECT_TRUE(recording.metadata.hasSystemAudio);
    EXPECT_TRUE(recording.metadata.hasMicrophoneAudio);
    EXPECT_THAT(recording.session->statistics().lostSources, testing::IsEmpty());
    const double end = recording.metadata.endTime;
    const struct {
        double own;
        double other;
    } tracks[]{{440, 1000}, {1000, 440}};
    for (std::size_t track = 0; track < 2; ++track) {
        const auto sound = recording.sound(track);
        EXPECT_GT(toneAmplitude(sound, tracks[track].own, 0.1, end - 0.1), 0.4) << track;
        EXPECT_LT(toneAmplitude(sound, tracks[track].other, 0.1, end - 0.1), 0.005) << track;
    }
    for (const auto& track : media::Asset::open(recording.movie).tracks(media::MediaType::audio)) {
        EXPECT_EQ(track.timeRange.start, media::MediaTime{});
        EXPECT_NEAR(track.timeRange.end().seconds(), end, 0.004);
    }
    const auto streams = probe(recording.movie, "streams", "a");
    for (int track = 0; track < 2; ++track) {
        EXPECT_EQ(streams.at(track).at("codec_name"), "aac");
        EXPECT_EQ(streams.at(track).at("sample_rate"), "48000");
        EXPECT_EQ(streams.at(track).at("channels"), track == 0 ? 2 : 1);
    }
}

TEST_P(SoundRecording, KeepsSoundInStepWithThePicture) {
    Recording recording(systemOnly);
    EXPECT_THAT(soundOffsets(GetParam(), recording, 6, 0.57),
                testing::Each(testing::AllOf(testing::Ge(-0.02), testing::Le(0.02))));
}

double longestRun(const std::vector<double>& levels, bool (*counts)(double)) {
    double longest = 0;
    double run = 0;
    for (const double level : levels) {
        run = counts(level) ? run + 0.1 : 0;
        longest = std::max(longest, run);
    }
    return longest;
}
bool isLoud(double level) {
    return level > 0.4;
}
bool isSilent(double level) {
    return level < 0.01;
}

TEST_P(SoundRecording, IsSilentWhileTheMicrophoneIsAwayAndNeverRecordsTheSpeakersInItsPlace) {
    const TonePlayer speakers("box", 440);
    const TonePlayer voice("mic_feed", 1000);
    Recording recording(microphoneOnly);
    ASSERT_TRUE(recording.isHeard(SoundKind::microphone));
    ASSERT_TRUE(recording.goesOnFor(600ms));
    server->removeMicrophone("mic");
    ASSERT_TRUE(eventually([&] { return !recording.session->statistics().lostSources.empty(); }));
    EXPECT_THAT(recording.session->statistics().lostSources,
                testing::ElementsAre(testing::StartsWith("Microphone: ")));
    ASSERT_TRUE(recording.goesOnFor(1500ms));
    server->addMicrophone("mic"); // of the same feed
    ASSERT_TRUE(eventually([&] { return recording.session->statistics().lostSources.empty(); }));
    ASSERT_TRUE(recording.goesOnFor(1200ms));
    recording.stop();
    const auto sound = recording.sound(0);
    EXPECT_NEAR(secondsOf(sound), recording.metadata.endTime, 0.05);
    EXPECT_THAT(loudness(sound, 440), testing::Each(testing::Lt(0.01)));
    const auto voiceHeard = loudness(sound, 1000);
    EXPECT_TRUE(isLoud(voiceHeard.at(5)));
    EXPECT_TRUE(isLoud(voiceHeard.at(voiceHeard.size() - 3)));
    EXPECT_GT(longestRun(voiceHeard, isSilent), 1.2);
}

TEST_P(SoundRecording, FollowsTheDefaultOutput) {
    server->addOutput("tv");
    server->control("set-default-sink box");
    const TonePlayer speakers("box", 440);
    Recording recording(systemOnly);
    ASSERT_TRUE(recording.isHeard(SoundKind::system));
    ASSERT_TRUE(recording.goesOnFor(500ms));
    const TonePlayer elsewhere("tv", 1500);
    ASSERT_TRUE(recording.goesOnFor(300ms));
    server->control("set-default-sink tv");
    ASSERT_TRUE(recording.goesOnFor(1500ms));
    recording.stop();
    const auto sound = recording.sound(0);
    EXPECT_NEAR(secondsOf(sound), recording.metadata.endTime, 0.05);
    EXPECT_TRUE(isLoud(loudness(sound, 440).at(4)));
    const auto other = loudness(sound, 1500);
    EXPECT_TRUE(isLoud(other.at(other.size() - 3)));
    EXPECT_TRUE(isSilent(other.at(5))) << "it was not the default one";
}

TEST_P(SoundRecording, SurvivesItsServer) {
    Recording recording(both);
    {
        const TonePlayer speakers("box", 440);
        ASSERT_TRUE(recording.isHeard(SoundKind::system));
        server->crash();
        ASSERT_TRUE(
            eventually([&] { return recording.session->statistics().lostSources.size() == 2; }));
    }
    server->start();
    server->addMicrophone("mic");
    server->addOutput("box");
    ASSERT_TRUE(eventually([&] { return recording.session->statistics().lostSources.empty(); }));
    const TonePlayer speakers("box", 1500);
    ASSERT_TRUE(recording.isHeard(SoundKind::system));
    ASSERT_TRUE(recording.goesOnFor(700ms));
    recording.stop();
    const auto sound = recording.sound(0);
    EXPECT_NEAR(secondsOf(sound), recording.metadata.endTime, 0.05);
    EXPECT_GT(longestRun(loudness(sound, 1500), isLoud), 0.35);
    EXPECT_NEAR(secondsOf(recording.sound(1)), recording.metadata.endTime, 0.05);
}

TEST_P(SoundRecording, HasNothingOfWhatVantroPlaysItself) {
    const TemporaryFolder folder;
    const auto movie = folder / "tone.mov";
    runFfmpeg("-f lavfi -i \"aevalsrc='0.5*sin(2*PI*1000*t)':s=48000:d=20\" -c:a pcm_s16le", movie);
    const auto asset = media::Asset::open(movie);
    media::Composition composition(asset);
    composition.addTrack(media::MediaType::audio)
        .insert({{}, asset.duration()}, asset.tracks(media::MediaType::audio).at(0), {});
    const auto own = media::pulse::makePulseSound(composition);
    ASSERT_TRUE(eventually([&] { return own->hasDevice(); }));
    own->play({}, 1, {});
    const TonePlayer speakers("box", 440);
    Recording recording(systemOnly);
    ASSERT_TRUE(eventually([&] { return !own->hasDevice(); }));
    ASSERT_TRUE(recording.goesOnFor(1s));
    recording.stop();
    const auto sound = recording.sound(0);
    const double end = secondsOf(sound);
    EXPECT_GT(toneAmplitude(sound, 440, end - 0.5, end - 0.1), 0.4);
    EXPECT_LT(toneAmplitude(sound, 1000, end - 0.5, end - 0.1), 0.01);
    EXPECT_TRUE(eventually([&] { return own->hasDevice(); })) << "it stays silent afterwards";
}

} // namespace
} // namespace vantro::capture::sound
