#pragma once

#include "base/HostClock.h"
#include "capture/wayland/portal/PortalBus.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>

namespace vantro::capture::wayland {

/// What the desktop's screen-cast portal can do. A plain record.
struct PortalOffer {
    std::string whyNot = noPortalText; ///< empty where it answers
    bool screens = false;
    bool windows = false;
    // How the pointer may be had:
    bool pointerApart = false;
    bool pointerInPicture = false;
    bool pointerHidden = false;
};

/// Knows what the portal offers, also when it comes and goes. The portal is started once, by the
/// construction; later it is only listened to. Any thread asks it.
class PortalWatch {
  public:
    /// Waits for the portal's first answer, but no longer than `longestWait`. Throws
    /// std::runtime_error where there is no session bus.
    explicit PortalWatch(base::HostDuration longestWait);
    ~PortalWatch();

    PortalOffer offer() const;

  private:
    void ask();
    void answered(PortalOffer offer);

    PortalBus m_bus;
    std::unique_ptr<sdbus::IProxy> m_portal;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    PortalOffer m_offer;        // guarded by m_mutex
    bool m_hasAnswered = false; // guarded by m_mutex
};

} // namespace vantro::capture::wayland
