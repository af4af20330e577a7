#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace vantro::base {

/// A thread for work that nobody waits for. Where it works only while a processor is idle, it may
/// not be let to work at all, not even to end; at the end of the program it is then left to itself,
/// so `work` must own all that it uses. One thread makes, stops and destroys it.
class IdleThread {
  public:
    using Work = std::function<void(const std::stop_token& stop)>;

    /// `yields`: works only while a processor is idle. `work` may throw nothing.
    IdleThread(const std::string& name, bool yields, Work work);
    /// Stops. One that yields is waited for a moment, any other until it has ended.
    ~IdleThread();
    IdleThread(const IdleThread&) = delete;
    IdleThread& operator=(const IdleThread&) = delete;

    void stop() { m_thread.request_stop(); }
    bool hasEnded() const;

    /// Whether threads are still under way that nobody waits for. The program must then end without
    /// destroying what is static. Any thread.
    static bool areLeft();

  private:
    struct End;

    bool m_yields;
    std::shared_ptr<End> m_end;
    std::jthread m_thread;
};

} // namespace vantro::base
