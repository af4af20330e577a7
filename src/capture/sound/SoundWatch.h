#pragma once

#include "base/Guarded.h"
#include "base/HostClock.h"
#include "capture/SoundDevices.h"
#include "capture/sound/PulseQuery.h"

#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace vantro::capture::sound {

/// Knows what sound can be recorded from, as devices and server come and go. It asks on a thread of
/// its own, so that nobody waits. Any thread.
class SoundWatch {
  public:
    using Devices = std::expected<std::vector<SoundDevice>, std::string>;

    /// `changed` is called on that thread when the answer is another than before, the first one
    /// included; not after the destruction, which waits for a call under way.
    explicit SoundWatch(std::function<void()> changed);
    ~SoundWatch();
    SoundWatch(const SoundWatch&) = delete;
    SoundWatch& operator=(const SoundWatch&) = delete;

    /// As far as it is known: nothing until the server has answered, or failed to.
    std::optional<Devices> devices() const {
        return m_devices.with([](auto& value) { return value; });
    }

  private:
    void run(const std::stop_token& stop);
    std::optional<base::HostTime> due() const;
    int waitingTime() const;
    void contextChanged(pa_context& context);
    void know(Devices devices);

    const std::function<void()> m_changed;
    base::Guarded<std::optional<Devices>> m_devices;
    PulseQuery m_query;
    pulse::Loop m_loop;
    pulse::Context m_context;
    bool m_isLost = true;
    std::string m_whyLost;
    base::HostTime m_retryAt;
    std::optional<base::HostTime> m_answerBy; ///< while nothing has been answered
    std::jthread m_thread;                    // the last member: it uses the others
};

} // namespace vantro::capture::sound
