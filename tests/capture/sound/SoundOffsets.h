#pragma once

#include "capture/MovieFrames.h"
#include "capture/sound/SoundRecordingFixture.h"

#include <algorithm>
#include <functional>

namespace vantro::capture::sound {

/// Has the recording's window flash and the output beep, so often and so many seconds apart, with
/// whatever is done after each beep, and stops it. How much later each beep comes after its flash
/// in the movie than it was heard; seconds.
inline std::vector<double> soundOffsets(
    Kind kind, Recording& recording, int beeps, double interval,
    const std::function<void()>& afterBeep = [] {}) {
    TonePlayer beeper("box", 1000);
    beeper.setHeard(false);
    if (!eventually([&] { return recording.session->statistics().framesCaptured > 0; }))
        throw std::runtime_error("nothing is recorded");
    const MonitorRecorder monitor(kind, "box");
    recording.goesOnFor(300ms);
    std::vector<double> flashed;
    for (int beep = 0; beep < beeps; ++beep) {
        beeper.setHeard(true);
        recording.window.fill(colors::white);
        flashed.push_back(base::inSeconds(base::hostNow().time_since_epoch()));
        monitor.hear(0.2);
        beeper.setHeard(false);
        recording.window.fill(colors::black);
        for (double left = interval - 0.2; left > 0; --left)
            monitor.hear(std::min(left, 1.0));
        afterBeep();
    }
    recording.stop();
    std::vector<double> heard;
    for (const double beep : beepTimes(monitor.sound()))
        heard.push_back(monitor.timeOf(static_cast<std::size_t>(beep * media::mixing::sampleRate)));
    const auto recorded = beepTimes(recording.sound(0));
    const auto flashes = timesOf(turning(framesOf(recording.movie), [](const auto& picture) {
        return picture.row(0, 60)[80] > 128;
    }));
    if (flashes.size() != flashed.size())
        throw std::runtime_error("flashes are missing");
    // A server that is held up tears a beep apart: its beginning counts.
    const auto firstAfter = [](const std::vector<double>& times, double flash) {
        const auto found = std::ranges::lower_bound(times, flash - 0.05);
        return found == times.end() ? -1 : *found;
    };
    std::vector<double> offsets;
    offsets.reserve(flashed.size());
    for (std::size_t i = 0; i < flashed.size(); ++i)
        offsets.push_back((firstAfter(recorded, flashes[i]) - flashes[i]) -
                          (firstAfter(heard, flashed[i]) - flashed[i]));
    return offsets;
}

} // namespace vantro::capture::sound
