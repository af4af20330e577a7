#include "media/writing/TrackPace.h"

namespace vantro::media::writing {

void TrackPace::reach(MediaTime time) {
    {
        const std::lock_guard lock(m_mutex);
        m_reached = time;
    }
    m_changed.notify_all();
}

void TrackPace::end(MediaTime time) {
    {
        const std::lock_guard lock(m_mutex);
        m_end = time;
    }
    m_changed.notify_all();
}

void TrackPace::release() {
    {
        const std::lock_guard lock(m_mutex);
        m_released = true;
    }
    m_changed.notify_all();
}

std::optional<MediaTime> TrackPace::waitFor(MediaTime time) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_reached >= time || m_end || m_released; });
    return m_end;
}

std::optional<MediaTime> TrackPace::waitBeyond(MediaTime time) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_reached > time || m_end || m_released; });
    if (m_end || m_released)
        return {};
    return m_reached;
}

} // namespace vantro::media::writing
