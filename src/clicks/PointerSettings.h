#pragma once

#include <map>
#include <optional>
#include <string>
#include <variant>

struct libinput_device;

namespace vantro::clicks {

/// What a user has made of mice and touchpads: it decides what is a press, and of which button.
/// Each program that reads devices has to be told. What is absent is as libinput has it, but that
/// tapping is on.
struct PointerSettings {
    enum class TapMap { leftRightMiddle, leftMiddleRight };
    enum class ClickMethod { none, areas, fingers };
    enum class Use { always, withoutMouse, never };

    struct Kind {
        std::optional<bool> leftHanded;
        std::optional<bool> middleEmulation;
        bool operator==(const Kind&) const = default;
    };
    Kind mouse; ///< and pointing stick
    Kind touchpad;
    std::optional<bool> tap;
    std::optional<TapMap> tapMap;
    std::optional<ClickMethod> clickMethod;
    std::optional<Use> touchpadUse;

    bool operator==(const PointerSettings&) const = default;
};

/// Settings under their names, as they go over the bus: "mouse-left-handed",
/// "mouse-middle-emulation", "touchpad-left-handed", "touchpad-middle-emulation" and
/// "touchpad-tap", each a bool; "touchpad-tap-map", "lrm" or "lmr"; "touchpad-click-method",
/// "none", "areas" or "fingers"; "touchpad-use", "always", "without-mouse" or "never".
using NamedSettings = std::map<std::string, std::variant<bool, std::string>>;

NamedSettings namedSettings(const PointerSettings& settings);
/// Throws std::invalid_argument, which names the setting that is none.
PointerSettings parseSettings(const NamedSettings& named);

/// Has libinput treat a device like that, as far as the device can. The buttons of a mouse for the
/// left hand are left to the reader: libinput (1.22) aborts where a mouse whose buttons it has
/// exchanged goes while one of them is down.
void configure(libinput_device* device, const PointerSettings& settings);

} // namespace vantro::clicks
