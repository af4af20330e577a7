#include "media/player/PlayerServices.h"

#include <condition_variable>
#include <mutex>

namespace vantro::media::player {
namespace {

class HostPlayerTime : public PlayerTime {
  public:
    base::HostTime now() override { return base::hostNow(); }

    void waitUntil(base::HostTime deadline, const std::stop_token& stop) override {
        std::unique_lock lock(m_mutex);
        const auto isWoken = [this] { return m_isWoken; };
        if (deadline == base::HostTime::max()) // which conversions to a system's time overflow
            m_wake.wait(lock, stop, isWoken);
        else
            m_wake.wait_until(lock, stop, deadline, isWoken);
        m_isWoken = false;
    }

    void wakeUp() override {
        {
            const std::lock_guard lock(m_mutex);
            m_isWoken = true;
        }
        m_wake.notify_one();
    }

  private:
    std::mutex m_mutex;
    std::condition_variable_any m_wake;
    bool m_isWoken = false; // guarded by m_mutex; stays until somebody waits
};

} // namespace

std::unique_ptr<PlayerTime> hostPlayerTime() {
    return std::make_unique<HostPlayerTime>();
}

} // namespace vantro::media::player
