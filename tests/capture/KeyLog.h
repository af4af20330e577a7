#pragma once

#include "capture/GlobalKeys.h"
#include "support/Eventually.h"

#include <mutex>

namespace vantro::test {

/// What keys from anywhere have told.
class KeyLog {
  public:
    capture::GlobalKeys::Listener listener() {
        return {.pressed =
                    [this](auto action) {
                        const std::lock_guard lock(m_mutex);
                        m_pressed.push_back(action);
                    },
                .changed =
                    [this](auto state) {
                        const std::lock_guard lock(m_mutex);
                        m_state = std::move(state);
                    }};
    }
    std::vector<capture::GlobalAction> pressed() const {
        const std::lock_guard lock(m_mutex);
        return m_pressed;
    }
    capture::GlobalKeysState state() const {
        const std::lock_guard lock(m_mutex);
        return m_state;
    }
    bool becomes(capture::GlobalKeysState::Kind kind) const {
        return eventually([&] { return state().kind == kind; });
    }
    bool hasPressed(const std::vector<capture::GlobalAction>& actions) const {
        return eventually([&] { return pressed().size() >= actions.size(); }) &&
               pressed() == actions;
    }

  private:
    mutable std::mutex m_mutex;
    std::vector<capture::GlobalAction> m_pressed;
    capture::GlobalKeysState m_state;
};

} // namespace vantro::test
