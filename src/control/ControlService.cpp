#include "control/ControlService.h"

#include "base/Log.h"
#include "control/ControlNames.h"

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
    command();
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
        add(names::toggle, m_commands.toggle);
        m_object->finishRegistration();
        m_connection->enterEventLoopAsync();
    }
    ~BusService() override { m_connection->leaveEventLoop(); }

    void take(Role role) override {
        constexpr std::uint32_t waitInLine = 0;
        call("RequestName", std::string(nameOf(role)), waitInLine);
    }
    void release(Role role) override { call("ReleaseName", std::string(nameOf(role))); }

  private:
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
