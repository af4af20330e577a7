#include "capture/wayland/clicks/ClickAccess.h"

#include "base/Log.h"
#include "capture/wayland/clicks/DesktopPointers.h"
#include "clicks/PressDevices.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <utility>
#include <variant>
#include <vector>

#include <fcntl.h>
#include <poll.h>

namespace vantro::capture::wayland {
namespace {

namespace service = clicks::service;

constexpr std::chrono::minutes longestQuestion(15); // polkit's own is over before
constexpr std::chrono::seconds longestReply(1);     // of the bus

constexpr auto notToldText =
    "Clicks are not recorded, so no zooms come by themselves: Wayland tells programs nothing of "
    "clicks in others. The package vantro-clicks adds a service that does; a key for `vantro mark` "
    "makes zooms by hand.";
constexpr auto refusedText =
    "Clicks are not recorded, so no zooms come by themselves: you have not allowed it. You are "
    "asked again after Vantro's next start; a key for `vantro mark` makes zooms by hand.";
constexpr auto offeredText =
    "Clicks are recorded if you allow it: you are asked once, when a recording begins.";
constexpr auto readableText =
    "Clicks are read directly; note that any program of yours can read your keyboard.";

std::map<std::string, sdbus::Variant> variantsOf(const clicks::PointerSettings& settings) {
    std::map<std::string, sdbus::Variant> variants;
    for (const auto& [name, value] : clicks::namedSettings(settings))
        variants.emplace(name,
                         std::visit([](const auto& each) { return sdbus::Variant(each); }, value));
    return variants;
}

bool hasEnded(int pipe) {
    pollfd waited{.fd = pipe, .events = 0, .revents = 0};
    return poll(&waited, 1, 0) > 0;
}

} // namespace

std::shared_ptr<ClickAccess> ClickAccess::ofThisRun() {
    static const auto access = std::make_shared<ClickAccess>();
    return access;
}

ClickAccess::ClickAccess() {
    try {
        m_bus = sdbus::createSystemBusConnection();
        m_service = sdbus::createProxy(*m_bus, service::name, service::path);
        m_loop.emplace(*m_bus, "com.vantro.system", [this] {
            const sdbus::Error lost("org.freedesktop.DBus.Error.Disconnected",
                                    "the system bus has gone");
            answered(&lost, {});
        });
    } catch (const sdbus::Error& error) {
        base::logInfo("The system bus cannot be reached: {}", error.getMessage());
    }
    look();
}

/// Without starting it.
bool ClickAccess::isServiceThere() const {
    if (!m_service)
        return false;
    try {
        const auto bus =
            sdbus::createProxy(*m_bus, "org.freedesktop.DBus", "/org/freedesktop/DBus");
        for (const auto* list : {"ListActivatableNames", "ListNames"}) {
            std::vector<std::string> names;
            bus->callMethod(list)
                .onInterface("org.freedesktop.DBus")
                .withTimeout(longestReply)
                .storeResultsTo(names);
            if (std::ranges::find(names, service::name) != names.end())
                return true;
        }
    } catch (const sdbus::Error& error) {
        base::logWarning("The system bus does not answer: {}", error.getMessage());
    }
    return false;
}

void ClickAccess::look() {
    const bool isThere = isServiceThere();
    const bool canRead = !isThere && clicks::PressDevices::canRead();
    const std::lock_guard lock(m_mutex);
    m_canReadDevices = canRead;
    if (m_state == State::granted && hasEnded(m_pipe.get())) {
        m_pipe.reset();
        m_state = State::offered;
    }
    if (m_state == State::absent || m_state == State::offered)
        m_state = isThere ? State::offered : State::absent;
}

Ability ClickAccess::ability() const {
    const std::lock_guard lock(m_mutex);
    switch (m_state) {
    case State::granted:
        return {};
    case State::refused:
        return {.whyNot = refusedText};
    case State::offered:
    case State::asking:
        return m_failure.empty() ? Ability{.whyNot = {}, .remark = offeredText}
                                 : Ability{.whyNot = "Clicks are not recorded: " + m_failure + "."};
    case State::absent:
        break;
    }
    return m_canReadDevices ? Ability{.whyNot = {}, .remark = readableText} : Ability{notToldText};
}

void ClickAccess::ask(std::stop_token cancelled) {
    look();
    std::unique_lock lock(m_mutex);
    if (m_state == State::offered) {
        m_state = State::asking;
        lock.unlock();
        m_service->callMethodAsync(service::watch)
            .onInterface(service::interface)
            .withTimeout(longestQuestion)
            .withArguments(variantsOf(desktopPointers()))
            .uponReplyInvoke([this](const sdbus::Error* error, const sdbus::UnixFd& pipe) {
                answered(error, pipe);
            });
        lock.lock();
    }
    m_changed.wait(lock, std::move(cancelled), [this] { return m_state != State::asking; });
}

void ClickAccess::answered(const sdbus::Error* error, const sdbus::UnixFd& pipe) {
    if (error != nullptr)
        base::logWarning("Clicks are not told: {}", error->getMessage());
    const std::lock_guard lock(m_mutex);
    if (m_state != State::asking)
        return;
    m_failure.clear();
    if (error == nullptr) {
        m_pipe = base::FileDescriptor(fcntl(pipe.get(), F_DUPFD_CLOEXEC, 0));
        m_state = State::granted;
    } else if (error->getName() == service::notAllowed) {
        m_state = State::refused;
    } else {
        m_failure = "the service vantro-clickd does not work: " + error->getMessage();
        m_state = State::offered;
    }
    m_changed.notify_all();
}

std::unique_ptr<PressReader> ClickAccess::open() {
    std::unique_lock lock(m_mutex);
    if (m_state == State::granted)
        return readPipe(base::FileDescriptor(fcntl(m_pipe.get(), F_DUPFD_CLOEXEC, 0)));
    if (m_state != State::absent || !m_canReadDevices)
        return nullptr;
    lock.unlock();
    try {
        return readDevices(desktopPointers());
    } catch (const std::exception& error) {
        base::logWarning("Clicks are not told: {}", error.what());
        return nullptr;
    }
}

} // namespace vantro::capture::wayland
