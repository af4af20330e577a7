#pragma once

#include "capture/PointerSource.h"
#include "capture/WakeUp.h"
#include "capture/x11/X11CapturedPlace.h"
#include "capture/x11/X11Presses.h"

#include <memory>
#include <thread>

namespace vantro::capture::x11 {

/// The pointer of one X server, asked every 16 ms on a connection and thread of its own, which also
/// watches the buttons. Ends with the server.
class X11PointerSource final : public PointerSource {
  public:
    X11PointerSource(X11Connection connection, const RecordingTarget& target,
                     IsOwnProcess isOwnProcess);
    ~X11PointerSource() override;

    void start(PointerOutput& output) override;
    void stop() override;

  private:
    void run(const std::stop_token& stop, PointerOutput& output);
    std::optional<PointerSample> ask();

    X11Connection m_connection;
    X11CapturedPlace m_place;
    X11Presses m_presses;
    WakeUp m_wakeUp;
    std::jthread m_thread;
};

} // namespace vantro::capture::x11
