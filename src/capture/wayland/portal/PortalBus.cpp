#include "capture/wayland/portal/PortalBus.h"

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
    m_loop.emplace(*m_connection, "com.vantro.portal", std::move(lost));
}

void PortalBus::stop() {
    m_loop.reset();
}

} // namespace vantro::capture::wayland
