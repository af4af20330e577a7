#pragma once

#include "base/HostClock.h"
#include "capture/wayland/compositor/CompositorProxies.h"
#include "model/Geometry.h"
#include "pipewire/VideoBuffer.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vantro::capture::wayland {

/// A screen as the compositor tells of it. A plain record.
struct CompositorOutput {
    model::Point position; ///< in the compositor's units
    pipewire::Size pixels; ///< of its picture, upright
};

/// A connection of our own to the compositor: its screens, its pointer, what tells of that one, and
/// what shows things. One thread at a time.
class CompositorLink {
  public:
    /// To the compositor of the environment, once it has told of all that; null where none answers
    /// within `longestWait`, and in a sandbox, which would not let us have what we want.
    static std::unique_ptr<CompositorLink> open(base::HostDuration longestWait);
    ~CompositorLink();
    CompositorLink(const CompositorLink&) = delete;
    CompositorLink& operator=(const CompositorLink&) = delete;

    /// Whether it can tell where the pointer is on a screen.
    bool tellsPointer() const { return m_sources && m_copies && m_pointer; }
    const std::vector<CompositorOutput>& outputs() const { return m_told; }

    /// One of the outputs, while it is there; `number` counts through `outputs`.
    Owned<ext_image_capture_source_v1> sourceOf(std::size_t number) const;
    bool isThere(std::size_t number) const;
    /// Counts the pointers that there have been: devices come and go.
    int pointersSoFar() const { return m_pointersSoFar; }
    /// Null while there is no pointer.
    Owned<ext_image_copy_capture_cursor_session_v1>
    cursorSession(ext_image_capture_source_v1& source) const;

    /// Whether programs can put things of their own on its screens.
    bool hasLayers() const { return m_surfaces && m_memory && m_layers; }
    // What that takes; null where the compositor has none.
    wl_compositor* surfaces() const { return m_surfaces.get(); }
    wl_shm* memory() const { return m_memory.get(); }
    zwlr_layer_shell_v1* layers() const { return m_layers.get(); }
    /// One of the outputs; null once it has gone.
    wl_output* output(std::size_t number) const;

    /// Waits for news, or until `wakeUp` can be read, and handles it. False when the compositor has
    /// gone.
    bool turn(int wakeUp, base::HostDuration longestWait);
    /// Handles news until it is so; false when the compositor has gone or the time is over first.
    bool turnUntil(const std::function<bool()>& isSo, base::HostDuration longestWait);
    /// Until the compositor has handled all that was asked; false when it does not in time.
    bool roundTrip(base::HostDuration longestWait);

  private:
    struct Output;
    struct Listeners;

    explicit CompositorLink(wl_display* display);
    void announced(std::uint32_t name, const std::string& interface, std::uint32_t version);
    void withdrawn(std::uint32_t name);
    void setPointer(bool isThere);
    bool learn(base::HostDuration longestWait);

    Owned<wl_display> m_display;
    Owned<wl_registry> m_registry;
    Owned<zxdg_output_manager_v1> m_places;
    Owned<ext_output_image_capture_source_manager_v1> m_sources;
    Owned<ext_image_copy_capture_manager_v1> m_copies;
    Owned<wl_compositor> m_surfaces;
    Owned<wl_shm> m_memory;
    Owned<zwlr_layer_shell_v1> m_layers;
    Owned<wl_seat> m_seat;
    Owned<wl_pointer> m_pointer;
    int m_pointersSoFar = 0;
    std::vector<std::unique_ptr<Output>> m_outputs; // those of the beginning; null once gone
    std::vector<CompositorOutput> m_told;           // as they were at the beginning
    bool m_isLearnt = false;
};

} // namespace vantro::capture::wayland
