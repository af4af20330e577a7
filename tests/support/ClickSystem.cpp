#include "support/ClickSystem.h"

#include "support/Program.h"
#include "support/SessionBus.h"

#include <filesystem>
#include <map>

#include <fmt/format.h>

namespace vantro::test {
namespace {

using Properties = std::map<std::string, sdbus::Variant>;

constexpr auto name = "com.vantro.Clicks1";
constexpr auto sessionPath = "/org/freedesktop/login1/session/_1";
constexpr auto sessionInterface = "org.freedesktop.login1.Session";
constexpr auto managerInterface = "org.freedesktop.login1.Manager";
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr auto umockdev = "libumockdev-preload.so.0";

Properties propertiesOf(const ClickScript& script) {
    const sdbus::Struct<std::string, sdbus::ObjectPath> seat("seat0", "/");
    return {{"Active", sdbus::Variant(script.isActive)},
            {"LockedHint", sdbus::Variant(script.isLocked)},
            {"Seat", sdbus::Variant(seat)}};
}

} // namespace

bool ClickSystem::isInstalled() {
    return std::filesystem::exists("/usr/bin/dbus-daemon");
}

ClickSystem::ClickSystem(const ClickScript& script) : m_state(State{.script = script}) {
    const auto path = m_folder.path().string();
    // A service that nobody uses goes after a second here, instead of half a minute.
    if (script.isInstalled)
        m_folder.write("services/clicks.service",
                       fmt::format("[D-BUS Service]\nName={}\nExec=/usr/bin/env LD_PRELOAD={}:{} "
                                   "ASAN_OPTIONS=verify_asan_link_order=0 {} 1\n",
                                   name, UDEV_LIBRARY, umockdev, CLICKD_PROGRAM));
    const auto file =
        m_folder
            .write("bus.conf", busConfiguration("unix:path=" + path + "/bus", path + "/services"))
            .string();
    m_environment.set("DBUS_SYSTEM_BUS_ADDRESS", fmt::format("unix:path={}/bus", path));
    std::string address;
    m_bus = startAndRead({"dbus-daemon", "--nofork", "--config-file=" + file,
                          fmt::format("--print-address={}", givenFile)},
                         address);
    m_connection = sdbus::createSystemBusConnection();
    offerPolkit();
    offerLogind();
    m_connection->requestName("org.freedesktop.PolicyKit1");
    m_connection->requestName("org.freedesktop.login1");
    m_connection->enterEventLoopAsync();
}

ClickSystem::~ClickSystem() {
    m_connection->leaveEventLoop();
    endProgram(m_bus); // and with it the service
}

void ClickSystem::offerPolkit() {
    using Subject = sdbus::Struct<std::string, Properties>;
    using Details = std::map<std::string, std::string>;
    constexpr auto interface = "org.freedesktop.PolicyKit1.Authority";
    auto& polkit = *m_objects.emplace_back(
        sdbus::createObject(*m_connection, "/org/freedesktop/PolicyKit1/Authority"));
    polkit.registerMethod("CheckAuthorization")
        .onInterface(interface)
        .implementedAs([this](sdbus::Result<Decision>&& answer, const Subject& subject,
                              const std::string& action, const Details&, std::uint32_t flags,
                              const std::string&) {
            const auto script = m_state.with([](State& state) {
                ++state.questions;
                return state.script;
            });
            const bool isRight = std::get<0>(subject) == "system-bus-name" && flags == 1 &&
                                 action == "com.vantro.app.watch-clicks";
            if (script.answer == ClickScript::never)
                m_unanswered.push_back(std::move(answer));
            else
                answer.returnResults(
                    Decision(isRight && script.answer == ClickScript::allows, false, {}));
        });
    polkit.registerMethod("CancelCheckAuthorization")
        .onInterface(interface)
        .implementedAs(
            [this](const std::string&) { m_state.with([](State& state) { ++state.withdrawn; }); });
    polkit.finishRegistration();
}

void ClickSystem::offerLogind() {
    using Path = sdbus::ObjectPath;
    constexpr auto userPath = "/org/freedesktop/login1/user/_1";
    const auto add = [this](const char* path) -> sdbus::IObject& {
        return *m_objects.emplace_back(sdbus::createObject(*m_connection, path));
    };
    auto& user = add(userPath);
    user.registerProperty("Display").onInterface("org.freedesktop.login1.User").withGetter([] {
        return sdbus::Struct<std::string, Path>("1", sessionPath);
    });
    user.finishRegistration();
    auto& session = add(sessionPath);
    m_session = &session;
    const auto property = [&]<typename Value>(const char* key, const Value&) {
        session.registerProperty(key).onInterface(sessionInterface).withGetter([this, key] {
            return m_state.with([&](State& state) { return propertiesOf(state.script).at(key); })
                .template get<Value>();
        });
    };
    property("Active", bool());
    property("LockedHint", bool());
    property("Seat", sdbus::Struct<std::string, Path>());
    session.finishRegistration();
    auto& manager = add("/org/freedesktop/login1");
    m_manager = &manager;
    manager.registerMethod("GetUser")
        .onInterface(managerInterface)
        .implementedAs([](std::uint32_t) { return Path(userPath); });
    manager.registerSignal("SessionRemoved")
        .onInterface(managerInterface)
        .withParameters<std::string, Path>();
    manager.finishRegistration();
}

void ClickSystem::setScript(const ClickScript& script) {
    m_state.with([&](State& state) { state.script = script; });
    auto signal = m_session->createSignal(propertiesInterface, "PropertiesChanged");
    signal << std::string(sessionInterface) << propertiesOf(script) << std::vector<std::string>();
    m_session->emitSignal(signal);
    awaitService();
}

void ClickSystem::removeSession() {
    m_manager->emitSignal("SessionRemoved")
        .onInterface(managerInterface)
        .withArguments(std::string("1"), sdbus::ObjectPath(sessionPath));
    awaitService();
}

/// It answers when it has handled what was sent before.
void ClickSystem::awaitService() {
    sdbus::createProxy(*m_connection, name, "/")
        ->callMethod("Ping")
        .onInterface("org.freedesktop.DBus.Peer");
}

int ClickSystem::questions() const {
    return m_state.with([](const State& state) { return state.questions; });
}

int ClickSystem::withdrawn() const {
    return m_state.with([](const State& state) { return state.withdrawn; });
}

bool ClickSystem::isOnBus(const std::string& wanted) {
    bool isOwned = false;
    sdbus::createProxy(sdbus::createSystemBusConnection(), "org.freedesktop.DBus",
                       "/org/freedesktop/DBus")
        ->callMethod("NameHasOwner")
        .onInterface("org.freedesktop.DBus")
        .withArguments(wanted)
        .storeResultsTo(isOwned);
    return isOwned;
}

} // namespace vantro::test
