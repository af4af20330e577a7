#include "capture/wayland/portal/PortalGlobalKeys.h"

#include "base/Log.h"
#include "capture/wayland/portal/PortalBus.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <map>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>

namespace vantro::capture::wayland {
namespace {

constexpr const char* keysInterface = "org.freedesktop.portal.GlobalShortcuts";
constexpr const char* requestInterface = "org.freedesktop.portal.Request";
constexpr const char* sessionInterface = "org.freedesktop.portal.Session";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr const char* sessionToken = "vantro_keys";
constexpr const char* createRequest = "vantro_keys_create";
constexpr const char* bindRequest = "vantro_keys_bind";
constexpr std::chrono::seconds longestReply{5};

using Properties = std::map<std::string, sdbus::Variant>;
using Shortcut = sdbus::Struct<std::string, Properties>;
using Kind = GlobalKeysState::Kind;

struct ActionName {
    GlobalAction action;
    const char* id;          ///< for the portal, for good: desktops keep the keys under it
    const char* description; ///< for the user, in the desktop's dialog
};
constexpr std::array<ActionName, 3> actionNames{
    {{GlobalAction::toggle, "toggle", "Start or stop a recording"},
     {GlobalAction::pause, "pause", "Pause or resume a recording"},
     {GlobalAction::mark, "mark", "Zoom to the pointer"}}};

const ActionName* nameOf(const std::string& id) {
    const auto found = std::ranges::find(actionNames, id, &ActionName::id);
    return found == actionNames.end() ? nullptr : &*found;
}

/// In the form of the shortcuts specification of freedesktop.org: "CTRL+ALT+r".
std::string triggerOf(const std::string& keys) {
    std::string trigger = keys;
    for (const auto& [ours, theirs] : {std::pair{"Ctrl+", "CTRL+"}, std::pair{"Alt+", "ALT+"},
                                       std::pair{"Shift+", "SHIFT+"}, std::pair{"Meta+", "LOGO+"}})
        if (const auto at = trigger.find(ours); at != std::string::npos)
            trigger.replace(at, std::string_view(ours).size(), theirs);
    if (!trigger.empty() && (trigger.size() == 1 || trigger[trigger.size() - 2] == '+'))
        trigger.back() =
            static_cast<char>(std::tolower(static_cast<unsigned char>(trigger.back())));
    return trigger;
}

std::vector<Shortcut> shortcutsOf(const std::vector<GlobalKey>& wished) {
    std::vector<Shortcut> shortcuts;
    for (const auto& [action, keys] : wished) {
        const auto name = std::ranges::find(actionNames, action, &ActionName::action);
        Properties properties{{"description", sdbus::Variant(std::string(name->description))}};
        if (!keys.empty())
            properties.emplace("preferred_trigger", sdbus::Variant(triggerOf(keys)));
        shortcuts.emplace_back(name->id, std::move(properties));
    }
    return shortcuts;
}

std::vector<GlobalKey> keysOf(const std::vector<Shortcut>& shortcuts) {
    std::vector<GlobalKey> keys;
    for (const auto& shortcut : shortcuts) {
        const auto* name = nameOf(shortcut.get<0>());
        const auto& properties = shortcut.get<1>();
        const auto trigger = properties.find("trigger_description");
        if (name != nullptr)
            keys.push_back({name->action, trigger != properties.end() &&
                                                  trigger->second.containsValueOfType<std::string>()
                                              ? trigger->second.get<std::string>()
                                              : std::string()});
    }
    return keys;
}

/// Everything after the construction happens on the bus's thread.
class PortalKeys final : public GlobalKeys {
  public:
    PortalKeys(const std::vector<GlobalKey>& wished, Listener listener)
        : m_wished(wished)
        , m_listener(std::move(listener))
        , m_portal(sdbus::createProxy(m_bus.connection(), portalName, portalPath))
        , m_create(listen(createRequest,
                          [this](auto code, const auto& results) { created(code, results); }))
        , m_bind(
              listen(bindRequest, [this](auto code, const auto& results) { bound(code, results); }))
        , m_session(sdbus::createProxy(m_bus.connection(), portalName,
                                       m_bus.handle("session", sessionToken))) {
        followPortal();
        m_bus.start([this] { end("The session bus is lost, and the keys with it."); });
        m_portal->callMethodAsync("CreateSession")
            .onInterface(keysInterface)
            .withArguments(
                Properties{{"handle_token", sdbus::Variant(std::string(createRequest))},
                           {"session_handle_token", sdbus::Variant(std::string(sessionToken))}})
            .uponReplyInvoke(
                [this](const sdbus::Error* error, const sdbus::ObjectPath&) { failOn(error); });
    }
    ~PortalKeys() override {
        try {
            m_session->callMethod("Close").onInterface(sessionInterface).dontExpectReply();
        } catch (const sdbus::Error& error) {
            base::logInfo("The keys cannot be given back: {}", error.getMessage());
        }
        m_bus.stop(); // before what its thread calls
    }

  private:
    template <typename Answered>
    std::unique_ptr<sdbus::IProxy> listen(const char* token, Answered answered) {
        auto request =
            sdbus::createProxy(m_bus.connection(), portalName, m_bus.handle("request", token));
        request->uponSignal("Response")
            .onInterface(requestInterface)
            .call([answered](std::uint32_t code, const Properties& results) {
                answered(code, results);
            });
        request->finishRegistration();
        return request;
    }

    void followPortal() {
        using Path = sdbus::ObjectPath;
        m_portal->uponSignal("Activated")
            .onInterface(keysInterface)
            .call([this](const Path& session, const std::string& id, std::uint64_t,
                         const Properties&) {
                const auto* name = nameOf(id);
                if (name != nullptr && m_kind == Kind::bound && isOurs(session))
                    m_listener.pressed(name->action);
            });
        m_portal->uponSignal("ShortcutsChanged")
            .onInterface(keysInterface)
            .call([this](const Path& session, const std::vector<Shortcut>& shortcuts) {
                if (m_kind == Kind::bound && isOurs(session))
                    m_listener.changed({Kind::bound, keysOf(shortcuts), {}});
            });
        m_portal->finishRegistration();
        m_session->uponSignal("Closed").onInterface(sessionInterface).call([this] {
            end("The desktop has taken the keys back.");
        });
        m_session->finishRegistration();
        m_bus.watchPortal([this](bool isThere) {
            if (!isThere)
                end("The desktop's service for keys has ended.");
        });
    }

    bool isOurs(const sdbus::ObjectPath& session) const {
        return session == m_session->getObjectPath();
    }

    /// The session's path is known before, since it is named by our token; portals that tell it do
    /// so as a string, others as a path.
    void created(std::uint32_t code, const Properties& /*results*/) {
        if (code != 0)
            return finish(Kind::failed, keyboardSettingsText);
        m_portal->callMethodAsync("BindShortcuts")
            .onInterface(keysInterface)
            .withArguments(sdbus::ObjectPath(m_session->getObjectPath()), shortcutsOf(m_wished),
                           std::string(),
                           Properties{{"handle_token", sdbus::Variant(std::string(bindRequest))}})
            .uponReplyInvoke(
                [this](const sdbus::Error* error, const sdbus::ObjectPath&) { failOn(error); });
    }

    void bound(std::uint32_t code, const Properties& results) {
        constexpr std::uint32_t takenBack = 1;
        if (code == takenBack)
            return finish(Kind::refused, {});
        if (code != 0)
            return finish(Kind::failed, "The desktop cannot bind the keys.");
        const auto shortcuts = results.find("shortcuts");
        const bool areTold = shortcuts != results.end() &&
                             shortcuts->second.containsValueOfType<std::vector<Shortcut>>();
        finish(Kind::bound, {},
               areTold ? keysOf(shortcuts->second.get<std::vector<Shortcut>>())
                       : std::vector<GlobalKey>());
    }

    void failOn(const sdbus::Error* error) {
        if (error == nullptr)
            return;
        base::logInfo("No keys through the portal: {}", error->getMessage());
        finish(Kind::failed, keyboardSettingsText);
    }

    void end(const char* why) {
        if (m_kind == Kind::asking)
            finish(Kind::failed, why);
        else if (m_kind == Kind::bound)
            finish(Kind::ended, why);
    }

    void finish(Kind kind, std::string whyNot, std::vector<GlobalKey> keys = {}) {
        const bool isAllowed =
            m_kind == Kind::asking || (m_kind == Kind::bound && kind == Kind::ended);
        if (!isAllowed)
            return; // a second answer
        m_kind = kind;
        m_listener.changed({kind, std::move(keys), std::move(whyNot)});
    }

    const std::vector<GlobalKey> m_wished;
    const Listener m_listener;
    Kind m_kind = Kind::asking; ///< of the bus's thread
    PortalBus m_bus;
    std::unique_ptr<sdbus::IProxy> m_portal;
    std::unique_ptr<sdbus::IProxy> m_create;
    std::unique_ptr<sdbus::IProxy> m_bind;
    std::unique_ptr<sdbus::IProxy> m_session;
};

class NoKeys final : public GlobalKeys {};

} // namespace

std::unique_ptr<GlobalKeys> bindPortalKeys(const std::vector<GlobalKey>& wished,
                                           const GlobalKeys::Listener& listener) {
    try {
        return std::make_unique<PortalKeys>(wished, listener);
    } catch (const std::exception& error) {
        base::logInfo("No keys through the portal: {}", error.what());
        listener.changed({Kind::failed, {}, keyboardSettingsText});
        return std::make_unique<NoKeys>();
    }
}

bool hasPortalKeys() {
    try {
        PortalBus bus;
        sdbus::Variant version;
        sdbus::createProxy(bus.connection(), portalName, portalPath)
            ->callMethod("Get")
            .onInterface(propertiesInterface)
            .withTimeout(longestReply)
            .withArguments(std::string(keysInterface), std::string("version"))
            .storeResultsTo(version);
        return true;
    } catch (const std::exception& error) {
        base::logInfo("No portal for keys: {}", error.what());
        return false;
    }
}

} // namespace vantro::capture::wayland
