#include "clicks/PointerSettings.h"

#include <stdexcept>
#include <string_view>

#include <libinput.h>

namespace vantro::clicks {
namespace {

using TapMap = PointerSettings::TapMap;
using ClickMethod = PointerSettings::ClickMethod;
using Use = PointerSettings::Use;

// What each word stands for, here and in libinput.
template <typename Value, typename Configured>
struct Word {
    std::string_view word;
    Value value;
    Configured configured;
};

constexpr Word<TapMap, libinput_config_tap_button_map> tapMaps[]{
    {"lrm", TapMap::leftRightMiddle, LIBINPUT_CONFIG_TAP_MAP_LRM},
    {"lmr", TapMap::leftMiddleRight, LIBINPUT_CONFIG_TAP_MAP_LMR}};
constexpr Word<ClickMethod, libinput_config_click_method> clickMethods[]{
    {"none", ClickMethod::none, LIBINPUT_CONFIG_CLICK_METHOD_NONE},
    {"areas", ClickMethod::areas, LIBINPUT_CONFIG_CLICK_METHOD_BUTTON_AREAS},
    {"fingers", ClickMethod::fingers, LIBINPUT_CONFIG_CLICK_METHOD_CLICKFINGER}};
constexpr Word<Use, libinput_config_send_events_mode> uses[]{
    {"always", Use::always, LIBINPUT_CONFIG_SEND_EVENTS_ENABLED},
    {"without-mouse", Use::withoutMouse, LIBINPUT_CONFIG_SEND_EVENTS_DISABLED_ON_EXTERNAL_MOUSE},
    {"never", Use::never, LIBINPUT_CONFIG_SEND_EVENTS_DISABLED}};

constexpr const auto& words(TapMap /*of*/) {
    return tapMaps;
}
constexpr const auto& words(ClickMethod /*of*/) {
    return clickMethods;
}
constexpr const auto& words(Use /*of*/) {
    return uses;
}

template <typename Value>
auto configured(Value value) {
    for (const auto& each : words(value))
        if (each.value == value)
            return each.configured;
    throw std::logic_error("a setting without a word");
}

template <typename Settings, typename Function>
void forEach(Settings& settings, Function&& handle) {
    handle("mouse-left-handed", settings.mouse.leftHanded);
    handle("mouse-middle-emulation", settings.mouse.middleEmulation);
    handle("touchpad-left-handed", settings.touchpad.leftHanded);
    handle("touchpad-middle-emulation", settings.touchpad.middleEmulation);
    handle("touchpad-tap", settings.tap);
    handle("touchpad-tap-map", settings.tapMap);
    handle("touchpad-click-method", settings.clickMethod);
    handle("touchpad-use", settings.touchpadUse);
}

using Named = NamedSettings::mapped_type;

Named named(bool value) {
    return value;
}
template <typename Value>
Named named(Value value) {
    for (const auto& each : words(value))
        if (each.value == value)
            return std::string(each.word);
    throw std::logic_error("a setting without a word");
}

bool read(const Named& from, bool& value) {
    const auto* given = std::get_if<bool>(&from);
    if (given != nullptr)
        value = *given;
    return given != nullptr;
}
template <typename Value>
bool read(const Named& from, Value& value) {
    const auto* given = std::get_if<std::string>(&from);
    for (const auto& each : words(Value()))
        if (given != nullptr && *given == each.word) {
            value = each.value;
            return true;
        }
    return false;
}

} // namespace

NamedSettings namedSettings(const PointerSettings& settings) {
    NamedSettings all;
    forEach(settings, [&](const char* name, const auto& setting) {
        if (setting)
            all.emplace(name, named(*setting));
    });
    return all;
}

PointerSettings parseSettings(const NamedSettings& all) {
    PointerSettings settings;
    std::size_t known = 0;
    forEach(settings, [&](const char* name, auto& setting) {
        const auto found = all.find(name);
        if (found == all.end())
            return;
        ++known;
        if (!read(found->second, setting.emplace()))
            throw std::invalid_argument(std::string("the setting ") + name +
                                        " has a value that it cannot have");
    });
    if (known < all.size()) {
        NamedSettings others = all;
        forEach(settings, [&](const char* name, const auto&) { others.erase(name); });
        throw std::invalid_argument("there is no setting " + others.begin()->first);
    }
    return settings;
}

// libinput refuses what a device cannot, which does no harm.
void configure(libinput_device* device, const PointerSettings& settings) {
    const bool isTouchpad = libinput_device_config_tap_get_finger_count(device) > 0;
    const auto& kind = isTouchpad ? settings.touchpad : settings.mouse;
    if (kind.middleEmulation)
        libinput_device_config_middle_emulation_set_enabled(
            device, *kind.middleEmulation ? LIBINPUT_CONFIG_MIDDLE_EMULATION_ENABLED
                                          : LIBINPUT_CONFIG_MIDDLE_EMULATION_DISABLED);
    if (!isTouchpad)
        return;
    if (kind.leftHanded)
        libinput_device_config_left_handed_set(device, *kind.leftHanded ? 1 : 0);
    libinput_device_config_tap_set_enabled(device, settings.tap.value_or(true)
                                                       ? LIBINPUT_CONFIG_TAP_ENABLED
                                                       : LIBINPUT_CONFIG_TAP_DISABLED);
    if (settings.tapMap)
        libinput_device_config_tap_set_button_map(device, configured(*settings.tapMap));
    if (settings.clickMethod)
        libinput_device_config_click_set_method(device, configured(*settings.clickMethod));
    if (settings.touchpadUse)
        libinput_device_config_send_events_set_mode(device, configured(*settings.touchpadUse));
}

} // namespace vantro::clicks
