#include "capture/CaptureClock.h"

#include <condition_variable>
#include <mutex>

namespace vantro::capture {
namespace {

class HostCaptureClock final : public CaptureClock {
  public:
    base::HostTime now() override { return base::hostNow(); }

    void sleepUntil(base::HostTime deadline, std::stop_token stop) override {
        std::mutex mutex;
        std::condition_variable_any wake;
        std::unique_lock lock(mutex);
        wake.wait_until(lock, std::move(stop), deadline, [] { return false; });
    }
};

} // namespace

CaptureClock& hostCaptureClock() {
    static HostCaptureClock clock;
    return clock;
}

base::HostTime hostTimeOf(std::uint32_t milliseconds, base::HostTime now) {
    constexpr std::chrono::milliseconds longestDelay(1000); // between the press and its event
    const auto nowInMilliseconds =
        std::chrono::floor<std::chrono::milliseconds>(now.time_since_epoch()).count();
    // They wrap around after 49 days; so does this difference.
    const std::chrono::milliseconds age(static_cast<std::uint32_t>(nowInMilliseconds) -
                                        milliseconds);
    return age <= longestDelay ? now - age : now;
}

} // namespace vantro::capture
