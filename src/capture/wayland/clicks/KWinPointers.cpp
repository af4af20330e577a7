#include "capture/wayland/clicks/DesktopPointers.h"

#include <chrono>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include <sdbus-c++/sdbus-c++.h>

namespace vantro::capture::wayland {
namespace {

constexpr auto kwin = "org.kde.KWin";
constexpr auto managerPath = "/org/kde/KWin/InputDevice";
constexpr auto managerInterface = "org.kde.KWin.InputDeviceManager";
constexpr auto deviceInterface = "org.kde.KWin.InputDevice";
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr std::chrono::seconds longestReply(1);

using Properties = std::map<std::string, sdbus::Variant>;

std::optional<bool> flag(const Properties& properties, const char* name) {
    const auto found = properties.find(name);
    return found != properties.end() && found->second.containsValueOfType<bool>()
               ? std::optional(found->second.get<bool>())
               : std::nullopt;
}

void takeTouchpad(const Properties& device, clicks::PointerSettings& settings) {
    using Settings = clicks::PointerSettings;
    settings.touchpad = {.leftHanded = flag(device, "leftHanded"),
                         .middleEmulation = flag(device, "middleEmulation")};
    settings.tap = flag(device, "tapToClick");
    if (const auto isMiddleSecond = flag(device, "lmrTapButtonMap"))
        settings.tapMap =
            *isMiddleSecond ? Settings::TapMap::leftMiddleRight : Settings::TapMap::leftRightMiddle;
    if (flag(device, "clickMethodAreas").value_or(false))
        settings.clickMethod = Settings::ClickMethod::areas;
    else if (flag(device, "clickMethodClickfinger").value_or(false))
        settings.clickMethod = Settings::ClickMethod::fingers;
    if (const auto isUsed = flag(device, "enabled"))
        settings.touchpadUse = *isUsed ? Settings::Use::always : Settings::Use::never;
}

Properties propertiesOf(sdbus::IConnection& bus, const std::string& device) {
    Properties properties;
    sdbus::createProxy(bus, kwin, std::string(managerPath) + "/" + device)
        ->callMethod("GetAll")
        .onInterface(propertiesInterface)
        .withTimeout(longestReply)
        .withArguments(std::string(deviceInterface))
        .storeResultsTo(properties);
    return properties;
}

} // namespace

clicks::PointerSettings askKWin() {
    clicks::PointerSettings settings;
    try {
        const auto bus = sdbus::createSessionBusConnection();
        sdbus::Variant devices;
        sdbus::createProxy(*bus, kwin, managerPath)
            ->callMethod("Get")
            .onInterface(propertiesInterface)
            .withTimeout(longestReply)
            .withArguments(std::string(managerInterface), std::string("devicesSysNames"))
            .storeResultsTo(devices);
        bool hasTouchpad = false;
        bool hasMouse = false;
        for (const auto& name : devices.get<std::vector<std::string>>()) {
            const auto device = propertiesOf(*bus, name);
            if (flag(device, "touchpad").value_or(false)) {
                if (!std::exchange(hasTouchpad, true))
                    takeTouchpad(device, settings);
            } else if (flag(device, "pointer").value_or(false) && !std::exchange(hasMouse, true)) {
                settings.mouse = {.leftHanded = flag(device, "leftHanded"),
                                  .middleEmulation = flag(device, "middleEmulation")};
            }
        }
    } catch (const sdbus::Error&) { // NOLINT(bugprone-empty-catch): it does not run
    }
    return settings;
}

} // namespace vantro::capture::wayland
