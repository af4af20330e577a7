#pragma once

#include "capture/WakeUp.h"
#include "capture/wayland/compositor/CompositorLink.h"
#include "capture/wayland/portal/PortalSession.h"

#include <memory>
#include <optional>
#include <thread>

namespace vantro::capture::wayland {

/// Which of the outputs a screen cast shows, by the size of the first picture and what the portal
/// tells; nothing where that is in doubt.
std::optional<std::size_t> outputOf(const PortalStream& stream, pipewire::Size picture,
                                    const std::vector<CompositorOutput>& outputs);

/// Hears where the pointer is: at first from within the session's making, then on its thread.
class CursorListener {
  public:
    virtual ~CursorListener() = default;

    /// The hot spot, in the pixels of the screen's upright picture. Not told while the pointer is
    /// on another screen.
    virtual void cursorAt(model::Point place, base::HostTime arrival) = 0;
    /// The compositor tells no more.
    virtual void cursorLost() = 0;
};

/// Tells where the pointer is on one screen, from the compositor itself, for desktops whose portal
/// does not. On a thread of its own, "com.vantro.pointer", until it is destroyed.
class CursorSession {
  public:
    /// Whether the compositor offers any, and each of its screens has a size of its own, so that a
    /// cast shows which it is of. Asks it, which takes a second at most.
    static bool isOffered();
    /// For the screen that a cast shows; null where that is in doubt or the compositor does not
    /// play. `listener` outlives this.
    static std::unique_ptr<CursorSession> of(const PortalStream& stream, pipewire::Size picture,
                                             CursorListener& listener);
    ~CursorSession();

  private:
    struct Listeners;

    CursorSession(std::unique_ptr<CompositorLink> link, std::size_t output,
                  CursorListener& listener);
    void run(const std::stop_token& stop);
    void followPointer();

    const std::unique_ptr<CompositorLink> m_link;
    const std::size_t m_output;
    CursorListener& m_listener;
    int m_pointer = 0; // which one of the link's is followed
    bool m_isStopped = false;
    Owned<ext_image_capture_source_v1> m_source;
    Owned<ext_image_copy_capture_cursor_session_v1> m_session;
    Owned<ext_image_copy_capture_session_v1> m_images; // tells of the end
    WakeUp m_wakeUp;
    std::jthread m_thread;
};

} // namespace vantro::capture::wayland
