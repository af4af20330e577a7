#include "capture/sound/SimulatedDevice.h"
#include "capture/sound/SoundCatalog.h"
#include "media/Sound.h"

#include <limits>

#include <gmock/gmock.h>

namespace vantro::capture::sound {
namespace {

float tone(double seconds) {
    return 0.5F * static_cast<float>(std::sin(2 * std::numbers::pi * 1000 * seconds));
}

TEST(SteadySound, KeepsAWrongClocksSoundInStep) {
    for (const double ppm : {200.0, -200.0})
        expectStepFor(4, ppm);
}

TEST(SteadySound, NeverJumpsNorLosesWhatTheClocksDifferenceIsStretchedBy) {
    for (const double ppm : {0.0, 200.0}) {
        Device device(ppm, tone);
        device.runUpTo(40);
        const auto& sound = device.output;
        const double end = test::secondsOf(sound);
        EXPECT_NEAR(test::pitch(sound, end - 11, end - 1), 1000, 0.2) << ppm;
        // What is left beside the tone of a short stretch is what the stretching adds.
        for (double from = end - 20; from < end - 1; from += 1.7)
            EXPECT_NEAR(test::toneAmplitude(sound, 1000, from, from + 0.1), 0.5, 0.001) << ppm;
        float steepest = 0;
        for (std::size_t i = 4'000; i + 2 < sound.size(); i += 2)
            steepest = std::max(steepest, std::abs(sound[i + 2] - sound[i]));
        EXPECT_LT(steepest, 0.5 * 2 * std::numbers::pi * 1000 / sampleRate * 1.01) << ppm;
    }
}

TEST(SteadySound, MakesSilenceOfWhatIsMissingAndStaysInStep) {
    const struct {
        const char* what;
        std::function<void(Device&)> happens; ///< from second 5 on, and is over at second 7
    } cases[]{
        {"nothing", [](Device& device) { device.runUpTo(7); }},
        {"sound is lost", [](Device& device) { device.loseUpTo(5.4); }},
        {"a device that stands still for long", [](Device& device) { device.stallUpTo(6.8); }},
        {"a device that goes and comes back",
         [](Device& device) {
             device.passTime(6.9);
             device.replacedAt(6.9);
         }},
        {"a device that takes another's place at once",
         [](Device& device) { device.replacedAt(5.02); }},
    };
    for (const auto& [what, happens] : cases) {
        Device device(50, clicks);
        device.runUpTo(5);
        happens(device);
        device.runUpTo(20.5);
        EXPECT_TRUE(device.isContinuous) << what;
        EXPECT_NEAR(device.endsAt, 20.5, 0.1) << what;
        const auto late = lateness(device);
        for (const int second : {1, 2, 3, 4, 9, 10, 15, 20})
            EXPECT_TRUE(late.contains(second) && std::abs(late.at(second)) < 0.01)
                << what << ", second " << second;
    }
}

TEST(SteadySound, TakesWhatIsNoNumberForSilence) {
    Device device(0, [](double seconds) {
        return seconds < 1 ? std::numeric_limits<float>::quiet_NaN() : tone(seconds);
    });
    device.runUpTo(3);
    EXPECT_EQ(std::ranges::count_if(device.output, [](float x) { return !std::isfinite(x); }), 0);
    EXPECT_NEAR(test::toneAmplitude(device.output, 1000, 2, 2.5), 0.5, 0.01);
}

TEST(SoundCatalog, NeverTakesAMonitorForAMicrophoneNorAMicrophoneForTheSystemsSound) {
    const ServerSource monitor{1, "box.monitor", "Monitor of Box", true, "box"};
    const ServerSource other{2, "tv.monitor", "Monitor of TV", true, "tv"};
    const ServerSource mic{3, "mic", "Microphone", false, ""};
    const ServerSource webcam{4, "webcam", "Webcam", false, ""};
    const struct {
        const char* what;
        SoundKind kind;
        std::string device;
        SoundCatalog catalog;
        std::string chosen; ///< empty: none
    } cases[]{
        {"the default output's monitor",
         SoundKind::system,
         "",
         {"tv", "mic", {monitor, other, mic}},
         "tv.monitor"},
        {"no output", SoundKind::system, "", {"", "mic", {mic}}, ""},
        {"the default input",
         SoundKind::microphone,
         "",
         {"tv", "webcam", {monitor, mic, webcam}},
         "webcam"},
        {"the default input is a monitor",
         SoundKind::microphone,
         "",
         {"tv", "tv.monitor", {other, mic}},
         "mic"},
        {"nothing but monitors", SoundKind::microphone, "", {"tv", "tv.monitor", {other}}, ""},
        {"by name", SoundKind::microphone, "webcam", {"tv", "mic", {mic, webcam}}, "webcam"},
        {"by description", SoundKind::microphone, "Webcam", {"tv", "mic", {mic, webcam}}, "webcam"},
        {"a monitor by name",
         SoundKind::microphone,
         "box.monitor",
         {"box", "mic", {monitor, mic}},
         ""},
        {"the named one is away", SoundKind::microphone, "webcam", {"tv", "mic", {mic}}, ""},
    };
    for (const auto& [what, kind, device, catalog, chosen] : cases) {
        const auto* source = chooseSource(kind, device, catalog);
        EXPECT_EQ(source ? source->name : "", chosen) << what;
    }
}

} // namespace
} // namespace vantro::capture::sound
