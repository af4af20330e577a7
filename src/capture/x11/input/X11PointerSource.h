#pragma once

#include "capture/PointerSource.h"
#include "capture/WakeUp.h"
#include "capture/x11/input/X11Presses.h"
#include "capture/x11/windows/X11CapturedPlace.h"

#include <memory>
#include <thread>

namespace vantro::capture::x11 {

/// The pointer of one X server, asked every 16 ms on a connection and thread of its own, which also
/// watches the buttons. Once it rests, events of motion are waited for instead. Ends with the
/// server.
class X11PointerSource final : public PointerSource {
  public:
    X11PointerSource(X11Connection connection, const RecordingTarget& target,
                     IsOwnProcess isOwnProcess);
    ~X11PointerSource() override;

    void start(PointerOutput& output) override;
    void stop() override;

  private:
    /// moving ──(another place no more for a while)──→ resting
    ///   ↑                                                │
    ///   └──────────(any event, or another place)─────────┘
    enum class State { moving, resting };

    void run(const std::stop_token& stop, PointerOutput& output);
    bool takeEvents(PointerOutput& output);
    void tell(PointerOutput& output);
    void advance(State to);
    std::optional<PointerSample> ask();

    X11Connection m_connection;
    X11CapturedPlace m_place;
    X11Presses m_presses;
    State m_state = State::moving; // this and what follows: the thread's, once it runs
    int m_unchanged = 0;           // answers since the pointer was somewhere else
    std::optional<model::Point> m_newest;
    WakeUp m_wakeUp;
    std::jthread m_thread;
};

} // namespace vantro::capture::x11
