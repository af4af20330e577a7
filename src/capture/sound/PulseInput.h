#pragma once

#include "base/HostClock.h"
#include "capture/sound/PulseQuery.h"
#include "pulse/Pulse.h"

#include <cstdint>
#include <optional>
#include <span>
#include <stop_token>
#include <string>

namespace vantro::capture::sound {

/// Hears from a PulseInput, on its thread.
class PulseListener {
  public:
    virtual ~PulseListener() = default;

    /// Interleaved sound of the input's channels has arrived at `now`.
    virtual void captured(base::HostTime now, std::span<const float> samples) = 0;
    /// The server says, as of `now`, that it had recorded so many frames of the device at `at`.
    virtual void timed(base::HostTime now, std::int64_t frames, base::HostTime at) = 0;
    /// A device is being recorded from now on; what comes does not continue what came before.
    virtual void opened(const std::string& description) = 0;
    /// There is nothing to record. Said again at each attempt that fails.
    virtual void missing(const SoundRefusal& refusal) = 0;
    /// Called a few times a second at least.
    virtual void timePassed(base::HostTime now) = 0;
};

/// Records the device of a kind through the sound server, for as long as it runs: the one that
/// chooseSource names, also when that becomes another one. The server is told not to put another
/// device in its place, and what it does regardless is not recorded.
///
///            it names a device           that is open
///   absent -------------------> opening ------------> recording
///     ^                          ^  |                  |  |
///     |                          |  |  another is due  |  |
///     |                          |  +<-----------------+  |
///     +--- device or server goes +------------------------+
/// Where it is absent it tries again every second, and when the server has news. A device from
/// which nothing arrives for seconds counts as gone: somebody may have taken the stream off it.
class PulseInput {
  public:
    /// What is wanted of the sound: all of it, or only the highest samples of each 40 ms, of all
    /// channels together, without the times at which they were recorded.
    enum class Detail { everything, peaks };

    /// `device` as chooseSource takes it. The listener outlives this.
    PulseInput(SoundKind kind, std::string device, PulseListener& listener,
               Detail detail = Detail::everything);
    ~PulseInput();
    PulseInput(const PulseInput&) = delete;
    PulseInput& operator=(const PulseInput&) = delete;

    static int channelsOf(SoundKind kind) { return kind == SoundKind::system ? 2 : 1; }

    /// Works until it is to stop; the one thread that may do so.
    void run(const std::stop_token& stop);
    /// Makes `run` look at its token. Any thread.
    void wakeUp();

  private:
    enum class State { absent, opening, recording };

    void update();
    void move(State to);
    int waitingTime() const;
    void connect();
    void contextChanged(pa_context& context);
    void decide(const SoundCatalog& catalog);
    void open(const ServerSource& source);
    bool connectStream();
    void streamChanged();
    void streamMoved();
    bool asksForTimes() const {
        return m_state == State::recording && m_detail == Detail::everything;
    }
    void askForTiming(base::HostTime now);
    void takeTiming();
    void read();
    std::int64_t frameSize() const {
        return static_cast<std::int64_t>(sizeof(float)) * channelsOf(m_kind);
    }
    void lose(const SoundRefusal& refusal);

    const SoundKind m_kind;
    const std::string m_device;
    PulseListener& m_listener;
    const Detail m_detail;
    State m_state = State::absent;
    PulseQuery m_query;
    pulse::Loop m_loop;
    pulse::Context m_context;
    pulse::Stream m_stream;
    std::optional<base::HostTime> m_retryAt;
    base::HostTime m_heardAt; ///< when something arrived, while recording
    base::HostTime m_askAt;   ///< what the server has recorded, while recording
    int m_asked = 0;          ///< how often, of this stream
    // What callbacks leave to be done outside of them, where things can be freed.
    std::optional<SoundRefusal> m_lost;
    std::optional<ServerSource> m_chosen; ///< to be opened
    ServerSource m_source;                ///< of the stream
};

} // namespace vantro::capture::sound
