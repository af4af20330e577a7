#include "capture/wayland/PortalBus.h"

#include "base/Log.h"
#include "base/SerialQueue.h"

#include <algorithm>
#include <stdexcept>

#include <fmt/format.h>

namespace vantro::capture::wayland {

PortalBus::PortalBus() {
    try {
        m_connection = sdbus::createSessionBusConnection();
    } catch (const sdbus::Error& error) {
        throw std::runtime_error("the session bus cannot be reached: " + error.getMessage());
    }
}

PortalBus::~PortalBus() {
    stop();
}

std::string PortalBus::handle(const char* kind, const std::string& token) const {
    auto sender = m_connection->getUniqueName().substr(1);
    std::ranges::replace(sender, '.', '_');
    return fmt::format("{}/{}/{}/{}", portalPath, kind, sender, token);
}

void PortalBus::watchPortal(std::function<void(bool isThere)> told) {
    const std::string match = "type='signal',sender='org.freedesktop.DBus',interface='org."
                              "freedesktop.DBus',member='NameOwnerChanged',arg0='" +
                              std::string(portalName) + "'";
    m_portalWatch = m_connection->addMatch(match, [told = std::move(told)](sdbus::Message& news) {
        std::string name;
        std::string before;
        std::string now;
        news >> name >> before >> now;
        told(!now.empty());
    });
}

void PortalBus::start(std::function<void()> lost) {
    m_thread = std::jthread([this, lost = std::move(lost)] {
        base::setThreadName("com.vantro.portal");
        try {
            m_connection->enterEventLoop();
        } catch (const sdbus::Error& error) {
            base::logWarning("The session bus is lost: {}", error.getMessage());
            lost();
        }
    });
}

void PortalBus::stop() {
    if (!m_thread.joinable())
        return;
    m_connection->leaveEventLoop();
    m_thread.join();
}

} // namespace vantro::capture::wayland
