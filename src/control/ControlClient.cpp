#include "control/ControlClient.h"

#include "base/Log.h"
#include "bus/EventLoop.h"
#include "control/ControlNames.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <iterator>
#include <map>
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

    template <typename... Arguments>
    bool call(const std::string& owner, const char* method, std::chrono::seconds longest,
              const Arguments&... arguments) {
        sdbus::createProxy(*m_connection, owner, names::path)
            ->callMethod(method)
            .onInterface(names::application)
            .withTimeout(longest)
            .withArguments(arguments...);
        return true;
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
        m_loop.emplace(*m_connection, "com.vantro.control");
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
    std::optional<bus::EventLoop> m_loop; // goes first
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

void tellRecorder(const char* method) {
    Client client;
    const auto recorder = client.ownerOf(names::recorder);
    if (!recorder)
        failForWantOfRecording();
    client.tell(*recorder, method);
}

/// RFC 8089, of a path that is absolute.
std::string addressOf(const std::filesystem::path& file) {
    constexpr std::string_view plain = "/-._~";
    std::string address = "file://";
    for (const char byte : file.string()) {
        const auto code = static_cast<unsigned char>(byte);
        const bool isPlain = code < 0x80 && (std::isalnum(code) != 0 || plain.contains(byte));
        address += isPlain ? std::string(1, byte) : fmt::format("%{:02X}", code);
    }
    return address;
}

/// What the desktop gave this process for the window that is to come.
std::map<std::string, sdbus::Variant> platformData() {
    const char* token = std::getenv("XDG_ACTIVATION_TOKEN"); // NOLINT(concurrency-mt-unsafe)
    if (token == nullptr)
        return {};
    return {{names::activationToken, sdbus::Variant(std::string(token))}};
}

template <typename... Arguments>
bool callApplication(const char* method, const Arguments&... arguments) {
    constexpr std::chrono::seconds longestAnswer(3); // an own window is better than none
    try {
        Client client;
        const auto owner = client.ownerOf(names::program);
        return owner && client.call(*owner, method, longestAnswer, arguments...);
    } catch (const std::exception& error) {
        base::logInfo("No running Vantro takes it: {}", error.what());
        return false;
    }
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
    tellRecorder(names::mark);
}

void pauseRecording() {
    tellRecorder(names::pause);
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

bool handOver(const std::vector<std::filesystem::path>& files) {
    if (files.empty())
        return callApplication(names::activate, platformData());
    std::vector<std::string> addresses;
    std::ranges::transform(files, std::back_inserter(addresses), addressOf);
    return callApplication(names::open, addresses, platformData());
}

bool handOverAction(const std::string& name) {
    return callApplication(names::activateAction, name, std::vector<sdbus::Variant>(),
                           platformData());
}

} // namespace vantro::control
