// Recordings that are paused, of a real X screen and with sound of real, private servers.
#include "capture/sound/SoundOffsets.h"
#include "support/Pointer.h"

namespace vantro::capture::sound {
namespace {

class PausedRecording : public SoundRecording {};

INSTANTIATE_TEST_SUITE_P(, PausedRecording, testing::Values(Kind::pipewire, Kind::pulseaudio),
                         serverName);

constexpr double frame = 1.0 / 60;

TEST_P(PausedRecording, HasNothingOfThePausesAndStaysInStep) {
    constexpr double pauseTone = 2500; // Hz
    TonePlayer tone("box", pauseTone);
    tone.setHeard(false);
    Recording recording(systemOnly);
    Pointer hand(recording.server);
    base::HostDuration paused{};
    std::vector<base::HostTime> clicks;
    const auto pause = [&] {
        hand.moveTo(10, 10);
        clicks.push_back(hand.click(1));
        recording.goesOnFor(200ms); // what the click comes to is known by then
        const auto from = base::hostNow();
        recording.session->pause();
        tone.setHeard(true);
        recording.goesOnFor(5ms); // the server tells of clicks by the millisecond
        hand.click(1);
        hand.moveTo(100, 80);
        recording.window.fill(colors::red);
        recording.goesOnFor(600ms);
        tone.setHeard(false);
        recording.window.fill(colors::blue); // and nothing changes afterwards
        recording.goesOnFor(400ms);
        recording.session->resume();
        paused += base::hostNow() - from;
        recording.goesOnFor(300ms);
    };
    EXPECT_THAT(soundOffsets(GetParam(), recording, 3, 0.57, pause),
                testing::Each(testing::AllOf(testing::Ge(-0.02), testing::Le(0.02))));
    EXPECT_LT(toneAmplitude(recording.sound(0), pauseTone, 0, recording.metadata.endTime), 0.002);

    ASSERT_EQ(recording.metadata.clickEvents.size(), clicks.size());
    // The first click tells when the recording's time began.
    const double length = recording.metadata.clickEvents[0].timestamp +
                          base::inSeconds(recording.ended - clicks[0] - paused);
    EXPECT_NEAR(media::Asset::open(recording.movie).duration().seconds(), length, frame);

    std::vector<double> resumed;
    const auto& path = recording.metadata.cursorPositions;
    for (std::size_t i = 1; i < path.size(); ++i)
        if (path[i].x == 100 && path[i - 1].x == 10) {
            EXPECT_LT(path[i].timestamp - path[i - 1].timestamp, 1e-5);
            resumed.push_back(path[i].timestamp);
        }
    const auto frames = framesOf(recording.movie);
    for (const auto& each : frames)
        EXPECT_FALSE(hasColor(*each.pixels, 80, 60, colors::red, 40));
    const auto turnedBlue = timesOf(turning(frames, [](const media::PixelBuffer& picture) {
        return hasColor(picture, 80, 60, colors::blue, 40);
    }));
    ASSERT_EQ(resumed.size(), clicks.size());
    ASSERT_EQ(turnedBlue.size(), clicks.size());
    for (std::size_t i = 0; i < resumed.size(); ++i)
        EXPECT_NEAR(turnedBlue[i], resumed[i] + frame / 2, frame / 2 + 0.005);
}

} // namespace
} // namespace vantro::capture::sound
