#pragma once

#include "base/Guarded.h"
#include "capture/GlobalKeys.h"
#include "support/Eventually.h"

namespace vantro::test {

/// What keys from anywhere have told.
class KeyLog {
  public:
    capture::GlobalKeys::Listener listener() {
        return {.pressed =
                    [this](auto action) {
                        m_told.with([&](Told& told) { told.first.push_back(action); });
                    },
                .changed =
                    [this](auto state) { m_told.with([&](Told& told) { told.second = state; }); }};
    }
    std::vector<capture::GlobalAction> pressed() const {
        return m_told.with([](const Told& told) { return told.first; });
    }
    capture::GlobalKeysState state() const {
        return m_told.with([](const Told& told) { return told.second; });
    }
    bool becomes(capture::GlobalKeysState::Kind kind) const {
        return eventually([&] { return state().kind == kind; });
    }
    bool hasPressed(const std::vector<capture::GlobalAction>& actions) const {
        return eventually([&] { return pressed().size() >= actions.size(); }) &&
               pressed() == actions;
    }

  private:
    using Told = std::pair<std::vector<capture::GlobalAction>, capture::GlobalKeysState>;
    base::Guarded<Told> m_told;
};

} // namespace vantro::test
