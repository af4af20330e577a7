#include "export/ProgressMailbox.h"

#include <algorithm>

namespace vantro::exporting {

void ProgressMailbox::post(double fraction) {
    const int percent = static_cast<int>(fraction * 100);
    if (percent <= m_lastPercent)
        return;
    m_lastPercent = percent;
    {
        const std::lock_guard lock(m_mutex);
        m_fraction = std::min(fraction, 1.0);
        m_hasReport = true;
    }
    m_changed.notify_one();
}

void ProgressMailbox::close() {
    {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
    }
    m_changed.notify_one();
}

void ProgressMailbox::deliver(const std::function<void(double)>& report) {
    for (;;) {
        double fraction = 0;
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return m_hasReport || m_closed; });
            if (!m_hasReport)
                return;
            fraction = m_fraction;
            m_hasReport = false;
        }
        if (report)
            report(fraction);
    }
}

} // namespace vantro::exporting
