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

} // namespace vantro::capture
