#include "capture/wayland/portal/PortalWatch.h"

#include <map>

namespace vantro::capture::wayland {
namespace {

using Properties = std::map<std::string, sdbus::Variant>;

std::uint32_t number(const Properties& properties, const char* name) {
    const auto found = properties.find(name);
    return found != properties.end() && found->second.containsValueOfType<std::uint32_t>()
               ? found->second.get<std::uint32_t>()
               : 0;
}

PortalOffer offerOf(const Properties& properties) {
    // Bits as the portal's interface has them.
    constexpr std::uint32_t monitor = 1;
    constexpr std::uint32_t window = 2;
    constexpr std::uint32_t hidden = 1;
    constexpr std::uint32_t embedded = 2;
    constexpr std::uint32_t metadata = 4;
    const auto sources = number(properties, "AvailableSourceTypes");
    const auto cursors = number(properties, "AvailableCursorModes");
    const bool isUsable = number(properties, "version") >= 1 && sources != 0;
    return {.whyNot = isUsable ? "" : noPortalText,
            .screens = (sources & monitor) != 0,
            .windows = (sources & window) != 0,
            .pointerApart = (cursors & metadata) != 0,
            .pointerInPicture = (cursors & embedded) != 0,
            .pointerHidden = (cursors & hidden) != 0};
}

} // namespace

PortalWatch::PortalWatch(base::HostDuration longestWait)
    : m_portal(sdbus::createProxy(m_bus.connection(), portalName, portalPath)) {
    m_bus.watchPortal([this](bool isThere) { isThere ? ask() : answered({}); });
    m_bus.start([this] { answered({}); });
    ask();
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, longestWait, [this] { return m_hasAnswered; });
}

PortalWatch::~PortalWatch() {
    m_bus.stop(); // before what its thread calls
}

PortalOffer PortalWatch::offer() const {
    const std::lock_guard lock(m_mutex);
    return m_offer;
}

void PortalWatch::ask() {
    m_portal->callMethodAsync("GetAll")
        .onInterface("org.freedesktop.DBus.Properties")
        .withArguments(std::string(screenCastInterface))
        .uponReplyInvoke([this](const sdbus::Error* error, const Properties& properties) {
            answered(error != nullptr ? PortalOffer() : offerOf(properties));
        });
}

void PortalWatch::answered(PortalOffer offer) {
    const std::lock_guard lock(m_mutex);
    m_offer = std::move(offer);
    m_hasAnswered = true;
    m_changed.notify_all();
}

} // namespace vantro::capture::wayland
