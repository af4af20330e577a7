#include "control/ControlClient.h"

#include "control/ControlNames.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <stdexcept>

#include <fmt/format.h>
#include <sdbus-c++/sdbus-c++.h>

namespace vantro::control {
namespace {

// A recording is finished in two seconds, whatever its length; on a busy disk it takes longer.
constexpr std::chrono::seconds longestFinish(60);

/// A connection for one command.
class Client {
  public:
    Client() try
        : m_connection(sdbus::createSessionBusConnection())
        , m_bus(sdbus::createProxy(*m_connection, names::bus, names::busPath)) {
    } catch (const sdbus::Error& error) {
        throw std::runtime_error(
            fmt::format("no session bus can be reached: {}", error.getMessage()));
    }
    ~Client() { m_connection->leaveEventLoop(); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    /// The unique name of the process that has that one.
    std::optional<std::string> ownerOf(const char* name) {
        try {
            std::string owner;
            m_bus->callMethod("GetNameOwner")
                .onInterface(names::bus)
                .withArguments(std::string(name))
                .storeResultsTo(owner);
            return owner;
        } catch (const sdbus::Error& error) {
            if (error.getName() == "org.freedesktop.DBus.Error.NameHasNoOwner")
                return {};
            throw std::runtime_error(error.getMessage());
        }
    }

    void tell(const std::string& owner, const char* method) {
        try {
            sdbus::createProxy(*m_connection, owner, names::path)
                ->callMethod(method)
                .onInterface(names::interface);
        } catch (const sdbus::Error& error) {
            throw std::runtime_error(error.getMessage());
        }
    }

    /// Must come before whatever makes the recorder give its name up.
    void watchRecorder(const std::string& owner) {
        m_bus->uponSignal("NameOwnerChanged")
            .onInterface(names::bus)
            .call([this, owner](const std::string& name, const std::string& before,
                                const std::string&) {
                if (name != names::recorder || before != owner)
                    return;
                const std::lock_guard lock(m_mutex);
                m_hasEnded = true;
                m_changed.notify_all();
            });
        m_bus->finishRegistration();
        m_connection->enterEventLoopAsync();
    }

    bool awaitEnd() {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, longestFinish, [this] { return m_hasEnded; });
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_hasEnded = false; // guarded by m_mutex
    std::unique_ptr<sdbus::IConnection> m_connection;
    std::unique_ptr<sdbus::IProxy> m_bus;
};

[[noreturn]] void failForWantOfRecording() {
    throw std::runtime_error("nothing is being recorded");
}

void stop(Client& client, const std::string& recorder) {
    client.watchRecorder(recorder);
    client.tell(recorder, names::stop);
    if (!client.awaitEnd())
        throw std::runtime_error(
            fmt::format("the recording has not ended after {} seconds", longestFinish.count()));
}

} // namespace

void stopRecording() {
    Client client;
    const auto recorder = client.ownerOf(names::recorder);
    if (!recorder)
        failForWantOfRecording();
    stop(client, *recorder);
}

void markZoom() {
    Client client;
    const auto recorder = client.ownerOf(names::recorder);
    if (!recorder)
        failForWantOfRecording();
    client.tell(*recorder, names::mark);
}

void toggleRecording() {
    Client client;
    if (const auto recorder = client.ownerOf(names::recorder)) {
        stop(client, *recorder);
        return;
    }
    const auto program = client.ownerOf(names::program);
    if (!program)
        throw std::runtime_error("nothing is being recorded, and Vantro's window is not open");
    client.tell(*program, names::toggle);
}

} // namespace vantro::control
