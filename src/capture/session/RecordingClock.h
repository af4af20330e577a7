#pragma once

#include "base/Guarded.h"
#include "base/HostClock.h"

#include <optional>
#include <vector>

namespace vantro::capture {

/// A stretch of host time, and where it begins in a movie.
struct MoviePart {
    base::HostTime from;
    base::HostTime to;
    base::HostDuration movieTime;
    bool operator==(const MoviePart&) const = default;
};

/// Maps host time to the movie's time, which begins with the first picture and leaves out the spans
/// in which the recording was paused. The one place that does. A value; instants are arguments, and
/// those of the changes ascend, else it is fatal.
///
///     held <--pause-- waiting --start--> running --pause--> paused
///      | --resume-->     |                |  ^                |  |
///      |                 |                |  +----resume------+  |
///      +-----------------+----> stopped <-+----------------------+
///
/// Held: paused before its zero, which is then a picture from after the pause.
class RecordingClock {
  public:
    /// Once. False, and nothing has changed, while it is held and for an instant before the end of
    /// that.
    bool start(base::HostTime zero);
    /// False, and nothing has changed, when it is paused already or stopped.
    bool pause(base::HostTime at);
    /// False, and nothing has changed, unless it is paused.
    bool resume(base::HostTime at);
    void stop(base::HostTime at);

    bool isWaiting() const { return m_state == State::waiting || m_state == State::held; }
    bool isPaused() const { return m_state == State::paused || m_state == State::held; }
    bool isStopped() const { return m_state == State::stopped; }

    /// Nothing for what is not part of the movie: before its zero, after its end, and from a pause
    /// up to, but without, the instant of resuming.
    std::optional<base::HostDuration> movieTime(base::HostTime time) const;
    /// What part of the movie the host times from `from` up to `to` make.
    std::vector<MoviePart> parts(base::HostTime from, base::HostTime to) const;
    /// Once it has been stopped.
    base::HostTime stopTime() const;
    /// How long the movie is at that instant.
    base::HostDuration length(base::HostTime now) const;
    /// How long it has been paused up to that instant, and no later than its stop.
    base::HostDuration pausedFor(base::HostTime now) const;

  private:
    enum class State { waiting, held, running, paused, stopped };
    struct Pause {
        base::HostTime start;
        base::HostTime end; ///< the far future while it lasts
    };

    void advanceTo(base::HostTime time, State state);
    base::HostDuration pausedWithin(base::HostTime end) const;

    State m_state = State::waiting;
    base::HostTime m_zero;
    base::HostTime m_changed; ///< when it got into its state
    base::HostDuration m_heldFor{};
    std::vector<Pause> m_pauses;
};

/// The clock of one recording, which all its sources share.
using SharedRecordingClock = base::Guarded<RecordingClock>;

} // namespace vantro::capture
