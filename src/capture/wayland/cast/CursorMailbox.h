#pragma once

#include "base/Guarded.h"
#include "capture/wayland/cast/CastReceiver.h"
#include "capture/wayland/compositor/CursorSession.h"

#include <deque>
#include <functional>
#include <optional>

namespace vantro::capture::wayland {

/// Takes what a CursorSession tells on its thread to the thread of a cast. Bounded: the oldest
/// places go first.
class CursorMailbox final : public CursorListener {
  public:
    /// `wakeUp` is called whenever there is something; any thread.
    explicit CursorMailbox(std::function<void()> wakeUp) : m_wakeUp(std::move(wakeUp)) {}

    /// Hands over what has come. On the receiver's thread.
    void deliver(CastReceiver& receiver);

  private:
    struct News {
        std::optional<model::Point> place; // nothing: the compositor tells no more
        base::HostTime arrival;
    };

    void cursorAt(model::Point place, base::HostTime arrival) override {
        note({.place = place, .arrival = arrival});
    }
    void cursorLost() override { note({.place = {}, .arrival = base::hostNow()}); }
    void note(const News& news);

    const std::function<void()> m_wakeUp;
    base::Guarded<std::deque<News>> m_waiting;
};

} // namespace vantro::capture::wayland
