#pragma once

#include "base/Guarded.h"
#include "capture/OwnPresses.h"
#include "capture/PointerSource.h"
#include "capture/WakeUp.h"
#include "capture/wayland/clicks/PointerTrail.h"
#include "capture/wayland/clicks/PressReader.h"

#include <deque>
#include <memory>
#include <thread>

namespace vantro::capture::wayland {

/// Stands between the pointer of a screen cast and the output of a recording, and tells that one of
/// presses, too, each with the place that the pointer had at that instant. Presses in our own
/// windows are left out. Presses count from the construction on; the destruction tells at once of
/// those that are still waited with. On a thread of its own, "com.vantro.clicks".
class PlacedPresses final : public PointerOutput {
  public:
    /// Without a reader only places pass. `output` and `own` outlive this.
    PlacedPresses(std::unique_ptr<PressReader> reader, PointerOutput& output,
                  const OwnPresses& own);
    ~PlacedPresses() override;
    PlacedPresses(const PlacedPresses&) = delete;
    PlacedPresses& operator=(const PlacedPresses&) = delete;

    void pointerAt(const PointerSample& sample) override;
    void pressed(const PointerPress& press) override { m_output.pressed(press); }
    void pointerUnknown(const std::string& why) override { m_output.pointerUnknown(why); }
    void pointerStopped(const std::string& error) override { m_output.pointerStopped(error); }

  private:
    void run(const std::stop_token& stop);
    bool waitForPresses();
    bool take();
    void tellUntil(base::HostTime pressedBefore);

    const std::unique_ptr<PressReader> m_reader;
    PointerOutput& m_output;
    const OwnPresses& m_own;
    const base::HostTime m_start = base::hostNow();
    base::Guarded<PointerTrail> m_trail;
    std::deque<PointerPress> m_waiting; // the thread's
    bool m_isLossTold = false;          // likewise
    WakeUp m_wakeUp;
    std::jthread m_thread;
};

} // namespace vantro::capture::wayland
