// What a real sound server may do to a recording that asks for something else.
#include "capture/sound/SoundRecordingFixture.h"
#include "capture/sound/SoundWatch.h"

#include <optional>

namespace vantro::capture::sound {
namespace {

class SoundFault : public SoundRecording {};

INSTANTIATE_TEST_SUITE_P(, SoundFault, testing::Values(Kind::pipewire, Kind::pulseaudio),
                         serverName);

TEST_P(SoundFault, WhateverIsDoneToItsStreamTheMicrophoneIsRecordedAndNothingElse) {
    const TonePlayer speakers("box", 440);
    const TonePlayer voice("mic_feed", 1000);
    Recording recording(microphoneOnly);
    ASSERT_TRUE(recording.isHeard(SoundKind::microphone));
    ASSERT_TRUE(recording.goesOnFor(300ms));
    // Both servers heed its wish to stay where it is.
    EXPECT_THROW(server->control("move-source-output $(pactl list short source-outputs | "
                                 "awk '$3 != \"-\" { print $1 }' | tail -1) box.monitor"),
                 std::runtime_error);
    const auto lost = [&] { return recording.session->statistics().lostSources; };
    if (GetParam() == Kind::pipewire) { // a patch bay can still take it off its device
        server->unlink("mic:capture_MONO", "Vantro:input_MONO");
        ASSERT_TRUE(eventually([&] { return !lost().empty(); }));
        ASSERT_TRUE(eventually([&] { return lost().empty(); }));
    }
    ASSERT_TRUE(recording.goesOnFor(1s));
    recording.stop();
    const auto sound = recording.sound(0);
    EXPECT_NEAR(secondsOf(sound), recording.metadata.endTime, 0.05);
    EXPECT_THAT(loudness(sound, 440), testing::Each(testing::Lt(0.01)));
    const auto own = loudness(sound, 1000);
    EXPECT_GT(own.at(2), 0.4);
    EXPECT_GT(own.at(own.size() - 3), 0.4);
    EXPECT_THAT(lost(), testing::IsEmpty());
}

TEST_P(SoundFault, StaysInTuneAndInTimeWhenTheDeviceChangesItsRate) {
    Recording recording(systemOnly);
    std::optional<TonePlayer> player(std::in_place, "box", 1000);
    ASSERT_TRUE(recording.isHeard(SoundKind::system));
    player.reset(); // PulseAudio would move it along, and two tones may cancel each other
    server->addOutput("tv", 44'100);
    player.emplace("tv", 1000);
    ASSERT_TRUE(recording.goesOnFor(1500ms));
    ASSERT_TRUE(recording.isHeard(SoundKind::system));
    ASSERT_TRUE(recording.goesOnFor(1200ms));
    recording.stop();
    const auto sound = recording.sound(0);
    const double end = recording.metadata.endTime;
    EXPECT_NEAR(secondsOf(sound), end, 0.05);
    EXPECT_GT(toneAmplitude(sound, 1000, end - 0.5, end - 0.1), 0.4);
    EXPECT_NEAR(pitch(sound, end - 0.5, end - 0.1), 1000, 5);
}

class SoundPermission : public testing::TestWithParam<Kind> {};

INSTANTIATE_TEST_SUITE_P(, SoundPermission, testing::Values(Kind::pipewire, Kind::pulseaudio),
                         serverName);

TEST_P(SoundPermission, WhereItIsRefusedOrNeverAnsweredTheRecordingGoesOnAndSaysSo) {
    if (!SoundServer::isInstalled(GetParam()))
        GTEST_SKIP() << "its programs are not installed";
    SoundServer server(GetParam());
    server.startDenying();
    const std::string reason = GetParam() == Kind::pipewire ? "the sound server does not answer"
                                                            : "the sound server denies access";
    Recording recording(both);
    ASSERT_TRUE(recording.goesOnFor(200ms));
    EXPECT_THAT(recording.session->statistics().lostSources,
                testing::ElementsAre("Microphone: " + reason, "System audio: " + reason));
    recording.stop();
    EXPECT_TRUE(media::Asset::open(recording.movie).tracks(media::MediaType::audio).empty());
    EXPECT_GT(recording.metadata.endTime, 0.1);
    const SoundWatch watch([] {});
    EXPECT_TRUE(eventually([&] { return watch.devices().has_value(); }))
        << "switches tell before anybody records";
    const auto devices = watch.devices();
    EXPECT_TRUE(devices && !*devices);
}

} // namespace
} // namespace vantro::capture::sound
