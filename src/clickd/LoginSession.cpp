#include "clickd/LoginSession.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace vantro::clickd {
namespace {

constexpr auto logind = "org.freedesktop.login1";
constexpr auto managerPath = "/org/freedesktop/login1";
constexpr auto managerInterface = "org.freedesktop.login1.Manager";
constexpr auto userInterface = "org.freedesktop.login1.User";
constexpr auto sessionInterface = "org.freedesktop.login1.Session";
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";

using Place = sdbus::Struct<std::string, sdbus::ObjectPath>; // of what has a name

} // namespace

LoginSession::LoginSession(sdbus::IConnection& bus, uid_t user, std::function<void()> changed)
    : m_bus(bus)
    , m_changed(std::move(changed))
    , m_manager(sdbus::createProxy(bus, logind, managerPath)) {
    m_manager->callMethodAsync("GetUser")
        .onInterface(managerInterface)
        .withArguments(static_cast<std::uint32_t>(user))
        .uponReplyInvoke([this](const sdbus::Error* error, const sdbus::ObjectPath& path) {
            error == nullptr ? askForDisplay(path) : m_changed();
        });
}

void LoginSession::askForDisplay(const std::string& userPath) {
    m_user = sdbus::createProxy(m_bus, logind, userPath);
    m_user->callMethodAsync("Get")
        .onInterface(propertiesInterface)
        .withArguments(std::string(userInterface), std::string("Display"))
        .uponReplyInvoke([this](const sdbus::Error* error, const sdbus::Variant& display) {
            if (error == nullptr && display.containsValueOfType<Place>())
                follow(std::get<1>(display.get<Place>()));
            else
                m_changed();
        });
}

/// Listens before it asks, so that nothing is missed between.
void LoginSession::follow(const std::string& sessionPath) {
    m_session = sdbus::createProxy(m_bus, logind, sessionPath);
    m_session->uponSignal("PropertiesChanged")
        .onInterface(propertiesInterface)
        .call([this](const std::string& interface, const Properties& changed,
                     const std::vector<std::string>& /*invalidated*/) {
            if (interface == sessionInterface)
                update(changed);
        });
    m_session->finishRegistration();
    m_manager->uponSignal("SessionRemoved")
        .onInterface(managerInterface)
        .call([this, sessionPath](const std::string& /*id*/, const sdbus::ObjectPath& removed) {
            if (removed == sessionPath)
                update({{"Active", sdbus::Variant(false)}});
        });
    m_manager->finishRegistration();
    m_session->callMethodAsync("GetAll")
        .onInterface(propertiesInterface)
        .withArguments(std::string(sessionInterface))
        .uponReplyInvoke([this](const sdbus::Error* error, const Properties& all) {
            error == nullptr ? update(all) : m_changed();
        });
}

void LoginSession::update(const Properties& properties) {
    const auto set = [&]<typename Value>(const char* name, Value& value) {
        const auto found = properties.find(name);
        if (found != properties.end() && found->second.containsValueOfType<Value>())
            value = found->second.get<Value>();
    };
    Place seat;
    set("Active", m_isActive);
    set("LockedHint", m_isLocked);
    set("Seat", seat);
    if (!std::get<0>(seat).empty())
        m_seat = std::get<0>(seat);
    m_changed();
}

} // namespace vantro::clickd
