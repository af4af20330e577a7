#include "app/flows/PermissionService.h"

namespace vantro::app::flows {

using namespace std::chrono_literals;

PermissionService::PermissionService(MainTimers& timers, Preflight preflight)
    : m_timers(timers), m_preflight(std::move(preflight)) {}

void PermissionService::setScreenRecordingGranted(bool granted) {
    if (m_granted == granted)
        return;
    m_granted = granted;
    Q_EMIT screenRecordingGrantedChanged();
}

void PermissionService::startPolling() {
    setScreenRecordingGranted(m_preflight());
    m_pollTimer = m_timers.repeat(2s, [this] { setScreenRecordingGranted(m_preflight()); });
}

} // namespace vantro::app::flows
