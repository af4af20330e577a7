#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>

namespace vantro::exporting {

/// Carries progress from a working thread to the one that waits for it, one report a whole percent.
///
/// Overflow: a report that was not delivered yet is replaced by a newer one. One thread posts,
/// another delivers, any closes.
class ProgressMailbox {
  public:
    void post(double fraction);
    /// Nothing comes after this.
    void close();
    /// Calls `report` for what arrives until closed.
    void deliver(const std::function<void(double fraction)>& report);

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_lastPercent = 0;    // the posting thread's own
    double m_fraction = 0;    // guarded by m_mutex
    bool m_hasReport = false; // guarded by m_mutex
    bool m_closed = false;    // guarded by m_mutex
};

} // namespace vantro::exporting
