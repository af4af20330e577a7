#include "capture/camera/CameraFeed.h"

#include "base/Log.h"

#include <chrono>
#include <utility>

namespace vantro::capture::camera {
namespace {

using namespace std::chrono_literals;

// In the dark cameras take a picture in half a second; one that is silent for longer has a fault.
constexpr auto longestGap = 2s;
// What is older was not stamped by our clock.
constexpr auto oldest = 1s;
constexpr auto inaccuracy = 5ms;

} // namespace

base::HostTime plausibleTime(std::optional<base::HostTime> said, base::HostTime arrival) {
    const bool isPossible = said && *said > arrival - oldest && *said <= arrival + inaccuracy;
    return isPossible ? *said : arrival;
}

void CameraFeed::arrived(const media::RawPicture& raw, base::HostTime time, base::HostTime now) {
    auto pixels = m_pictures.convert(raw);
    if (!pixels) {
        if (m_broken++ == 0)
            base::logWarning("A picture of the camera is left out: {}", pixels.error());
        return;
    }
    m_broken = 0;
    m_dueSince = now;
    m_missing.clear();
    tell();
    if (time > m_latest) {
        m_latest = time;
        deliver({*std::move(pixels), time});
    }
    const std::lock_guard lock(m_mutex);
    m_hasPicture = true;
    m_came.notify_all();
}

void CameraFeed::deliver(CameraPicture picture) {
    auto* output = m_output.load();
    if (!output) {
        m_early = std::move(picture);
        return;
    }
    if (m_early.pixels)
        output->picture(std::exchange(m_early, {}));
    output->picture(picture);
}

void CameraFeed::opened(base::HostTime now) {
    m_dueSince = now;
    m_broken = 0;
}

void CameraFeed::missing(const std::string& reason) {
    m_dueSince.reset();
    if (m_missing.empty())
        m_missing = reason;
    tell();
}

base::HostDuration CameraFeed::overdue(base::HostTime now) const {
    return m_dueSince ? now - *m_dueSince : 0ns;
}

void CameraFeed::passTime(base::HostTime now) {
    if (overdue(now) > longestGap && m_missing.empty())
        m_missing = m_broken > 0 ? "it sends damaged pictures" : "it sends no pictures";
    if (m_early.pixels && m_output.load())
        m_output.load()->picture(std::exchange(m_early, {}));
    tell();
}

/// Once for each absence, also of one that began before anybody listened.
void CameraFeed::tell() {
    auto* output = m_output.load();
    if (!output || m_isToldMissing == !m_missing.empty())
        return;
    m_isToldMissing = !m_isToldMissing;
    if (m_isToldMissing)
        output->cameraMissing(m_missing);
    else
        output->cameraReturned();
}

bool CameraFeed::awaitPicture(base::HostTime until) {
    std::unique_lock lock(m_mutex);
    return m_came.wait_until(lock, until, [this] { return m_hasPicture; });
}

} // namespace vantro::capture::camera
