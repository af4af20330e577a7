#include "clickd/Service.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

#include <poll.h>

namespace vantro::clickd {
namespace {

using Clock = std::chrono::steady_clock;

// Sessions of people are few; each watch has every device open once more.
constexpr std::size_t mostWatches = 16;

clicks::PointerSettings settingsOf(const std::map<std::string, sdbus::Variant>& given) {
    clicks::NamedSettings named;
    for (const auto& [name, value] : given)
        if (value.containsValueOfType<bool>())
            named.emplace(name, value.get<bool>());
        else if (value.containsValueOfType<std::string>())
            named.emplace(name, value.get<std::string>());
        else
            throw sdbus::Error(clicks::service::badSettings,
                               "the setting " + name + " is neither a boolean nor a string");
    try {
        return clicks::parseSettings(named);
    } catch (const std::invalid_argument& error) {
        throw sdbus::Error(clicks::service::badSettings, error.what());
    }
}

} // namespace

Service::Service()
    : m_bus(sdbus::createSystemBusConnection())
    , m_object(sdbus::createObject(*m_bus, clicks::service::path)) {
    m_object->registerMethod(clicks::service::watch)
        .onInterface(clicks::service::interface)
        .implementedAs([this](Watch::Answer&& answer, const Settings& settings) {
            watch(std::move(answer), settings);
        });
    m_object->finishRegistration();
    m_bus->requestName(clicks::service::name);
}

void Service::watch(Watch::Answer&& answer, const Settings& settings) {
    const auto* call = m_object->getCurrentlyProcessedMessage();
    const Caller caller{.name = call->getSender(), .user = call->getCredsEuid()};
    if (m_watches.contains(caller.name) || m_watches.size() >= mostWatches)
        throw sdbus::Error(clicks::service::tooMany, "there is a watch already");
    m_watches.try_emplace(caller.name, *m_bus, caller, settingsOf(settings), std::move(answer));
}

void Service::run(std::chrono::seconds longestIdle) {
    auto lastUse = Clock::now();
    for (;;) {
        handleBus();
        if (!m_watches.empty())
            lastUse = Clock::now();
        else if (Clock::now() >= lastUse + longestIdle) {
            // Who calls from now on has the service started anew, who has called before is served.
            m_bus->releaseName(clicks::service::name);
            handleBus();
            if (m_watches.empty())
                return;
            m_bus->requestName(clicks::service::name);
        }
        waitFor(m_watches.empty() ? lastUse + longestIdle : Clock::time_point::max());
    }
}

void Service::handleBus() {
    while (m_bus->processPendingRequest()) {
    }
    std::erase_if(m_watches, [](const auto& each) { return each.second.isOver(); });
}

/// Until the bus, a device or a pipe has news; what the latter two have is handled.
void Service::waitFor(Clock::time_point deadline) {
    const auto bus = m_bus->getEventLoopPollData();
    std::vector<pollfd> waited{{.fd = bus.fd, .events = bus.events, .revents = 0}};
    for (const auto& [caller, watch] : m_watches) {
        waited.push_back({.fd = watch.devices(), .events = POLLIN, .revents = 0});
        waited.push_back({.fd = watch.pipe(), .events = 0, .revents = 0});
    }
    int longest = bus.getPollTimeout(); // milliseconds, -1 for ever
    if (deadline != Clock::time_point::max()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        const int mine = static_cast<int>(std::max(left.count(), std::int64_t{0}));
        longest = longest < 0 ? mine : std::min(longest, mine);
    }
    if (poll(waited.data(), waited.size(), longest) <= 0)
        return;
    auto news = waited.begin() + 1;
    for (auto& [caller, watch] : m_watches) {
        if ((news++)->revents != 0)
            watch.takePresses();
        if ((news++)->revents != 0)
            watch.pipeClosed();
    }
}

} // namespace vantro::clickd
