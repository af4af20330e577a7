#include "control/ControlService.h"

#include "base/Log.h"
#include "bus/EventLoop.h"
#include "control/ControlNames.h"

#include <map>
#include <optional>
#include <stdexcept>
#include <utility>

#include <sdbus-c++/sdbus-c++.h>

namespace vantro::control {
namespace {

const char* nameOf(Role role) {
    return role == Role::program ? names::program : names::recorder;
}

void run(const std::function<void()>& command) {
    if (!command)
        throw sdbus::Error(names::refused, "Vantro cannot do that now");
    try {
        command();
    } catch (const std::runtime_error& refusal) {
        throw sdbus::Error(names::refused, refusal.what());
    }
}

using PlatformData = std::map<std::string, sdbus::Variant>;

/// The token that lets a window come to the front; empty where there is none.
std::string tokenIn(const PlatformData& data) {
    const auto found = data.find(names::activationToken);
    return found != data.end() && found->second.containsValueOfType<std::string>()
               ? found->second.get<std::string>()
               : std::string();
}

class BusService final : public ControlService {
  public:
    explicit BusService(Commands commands)
        : m_commands(std::move(commands))
        , m_connection(sdbus::createSessionBusConnection())
        , m_bus(sdbus::createProxy(*m_connection, names::bus, names::busPath))
        , m_object(sdbus::createObject(*m_connection, names::path)) {
        const auto add = [this](const char* method, const std::function<void()>& command) {
            m_object->registerMethod(method)
                .onInterface(names::interface)
                .implementedAs([&command] { run(command); });
        };
        add(names::stop, m_commands.stop);
        add(names::mark, m_commands.mark);
        add(names::pause, m_commands.pause);
        add(names::toggle, m_commands.toggle);
        addApplication();
        m_object->finishRegistration();
        m_loop.emplace(*m_connection, "com.vantro.control");
    }

    void take(Role role) override {
        constexpr std::uint32_t waitInLine = 0;
        call("RequestName", std::string(nameOf(role)), waitInLine);
    }
    void release(Role role) override { call("ReleaseName", std::string(nameOf(role))); }

  private:
    void addApplication() {
        const auto add = [this](const char* method, auto function) {
            m_object->registerMethod(method)
                .onInterface(names::application)
                .implementedAs(std::move(function));
        };
        add(names::activate, [this](const PlatformData& data) { show({}, tokenIn(data)); });
        add(names::open, [this](const std::vector<std::string>& addresses,
                                const PlatformData& data) { show(addresses, tokenIn(data)); });
        add(names::activateAction, [this](const std::string& name,
                                          const std::vector<sdbus::Variant>&, const PlatformData&) {
            if (m_commands.act)
                m_commands.act(name);
        });
    }
    void show(const std::vector<std::string>& addresses, const std::string& token) {
        if (!m_commands.show)
            throw sdbus::Error(names::refused, "There is no window");
        m_commands.show(addresses, token);
    }

    template <typename... Arguments>
    void call(const char* method, const Arguments&... arguments) {
        try {
            std::uint32_t ignored = 0;
            m_bus->callMethod(method)
                .onInterface(names::bus)
                .withArguments(arguments...)
                .storeResultsTo(ignored);
        } catch (const sdbus::Error& error) {
            base::logWarning("The session bus refuses {}: {}", method, error.getMessage());
        }
    }

    const Commands m_commands;
    const std::unique_ptr<sdbus::IConnection> m_connection;
    const std::unique_ptr<sdbus::IProxy> m_bus;
    const std::unique_ptr<sdbus::IObject> m_object;
    std::optional<bus::EventLoop> m_loop; // goes first
};

} // namespace

std::unique_ptr<ControlService> ControlService::connect(Commands commands) {
    try {
        return std::make_unique<BusService>(std::move(commands));
    } catch (const sdbus::Error& error) {
        base::logInfo("No commands from other programs: {}", error.getMessage());
        return nullptr;
    }
}

} // namespace vantro::control
