#pragma once

#include "base/HostClock.h"
#include "capture/sound/DriftController.h"
#include "capture/sound/Resampler.h"
#include "capture/sound/SampleTimes.h"

#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace vantro::capture::sound {

/// Makes of what a device delivers, now and then and by a clock of its own, sound that runs by the
/// host clock at 48 kHz from its first sample on: the clocks' difference is stretched away, what is
/// lost or missing for longer than a moment is silence, what comes twice is left out. Given the
/// time by its callers; one thread.
///
///   waiting --first sound--> settling --its times are known--> running
///      ^                                                          |
///      +----------- interrupted, or nothing comes ----------------+
class SteadySound {
  public:
    /// Gets the host time of its first frame with a stretch of stereo sound; each continues the one
    /// before.
    using Sink = std::function<void(base::HostTime, std::span<const float> stereo)>;

    /// What is captured has one channel or two.
    SteadySound(int channels, Sink sink);

    /// `samples` follow the ones before and have arrived at `now`.
    void captured(base::HostTime now, std::span<const float> samples);
    /// As of `now` it is said that so many frames of this device had been recorded at `at`, of
    /// which some may yet arrive.
    void timed(base::HostTime now, std::int64_t frames, base::HostTime at);
    /// What follows is another device's, or the same one's anew.
    void interrupted();
    /// Called now and then, also where nothing is captured: silence takes the place of what stays
    /// away.
    void passTime(base::HostTime now);
    /// Gives out what still waits for its times to be known. Nothing follows.
    void finish();

  private:
    enum class State { waiting, settling, running };

    void move(State to);
    void begin();
    void follow(base::HostTime now, std::size_t frames);
    void shift(double seconds);
    void take(std::span<const float> samples);
    void addSilence(std::int64_t frames);
    void put(std::span<const float> samples);
    base::HostTime outputTime() const;

    const std::size_t m_channels;
    Sink m_sink;
    State m_state = State::waiting;
    SampleTimes m_times;
    DriftController m_controller;
    Resampler m_resampler;
    double m_stretch = 0;
    std::vector<float> m_held; ///< while settling
    // In frames.
    std::int64_t m_fed = 0;      ///< to the resampler
    std::int64_t m_inserted = 0; ///< by how much what is fed runs ahead of what the device recorded
    std::int64_t m_leftOut = 0;  ///< of what will be captured
    std::optional<base::HostTime> m_start; ///< of the output
    std::int64_t m_given = 0;              ///< of it
    base::HostTime m_latest;               ///< when something came
    std::optional<base::HostTime> m_astraySince;
    std::vector<float> m_output;
};

} // namespace vantro::capture::sound
