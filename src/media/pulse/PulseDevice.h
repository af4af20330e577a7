#pragma once

#include "base/HostClock.h"
#include "media/pulse/SoundQueue.h"
#include "pulse/Pulse.h"

#include <atomic>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>

namespace vantro::media::pulse {

/// Plays what a queue holds through the sound server, on a thread of its own, where all of libpulse
/// is called. While the system's sound is recorded it does as if there were no device.
///
///            server answers            playing               all is heard
///   absent ------------------> ready ---------> running --------------------> ready
///     any --- server or device goes ---> absent, tried again every second
class PulseDevice {
  public:
    /// The queue must outlive it.
    explicit PulseDevice(SoundQueue& queue);
    ~PulseDevice();
    PulseDevice(const PulseDevice&) = delete;
    PulseDevice& operator=(const PulseDevice&) = delete;

    /// What the queue wants may have changed. Any thread; returns at once.
    void wakeUp();
    /// Whether there is a device that plays, or will when it is asked to. Any thread.
    bool isThere() const { return m_isThere; }

  private:
    enum class State { absent, ready, running };

    void run(const std::stop_token& stop);
    void update();
    void move(State to);
    int waitingTime() const;
    void connect();
    void openStream();
    void contextChanged(const pa_context& context);
    void streamChanged();
    void write(std::size_t bytes);
    void growBuffer();
    void askForTiming();
    void takeTiming();
    void lose(const std::string& reason);

    SoundQueue& m_queue;
    vantro::pulse::Loop m_loop;
    vantro::pulse::Context m_context;
    vantro::pulse::Stream m_stream;
    State m_state = State::absent;
    std::atomic<bool> m_isThere = false; ///< not absent
    std::optional<base::HostTime> m_retryAt;
    bool m_hasComplained = false;
    std::string m_lost; ///< why, noted inside of a callback, where nothing can be freed
    std::int64_t m_written = 0;
    std::uint32_t m_latency; ///< bytes asked for
    base::HostTime m_askAt;  ///< what the device plays
    int m_asked = 0;         ///< how often, since it runs
    std::jthread m_thread;   // the last member: it uses the others
};

} // namespace vantro::media::pulse
