#include "capture/wayland/clicks/DesktopPointers.h"

#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <sstream>

namespace vantro::capture::wayland {
namespace {

using Values = std::map<std::string, std::string>; // by "mouse left-handed" and the like

/// A line has a schema, a key and its value.
Values valuesOf(const std::string& printed) {
    const std::string prefix = "org.gnome.desktop.peripherals.";
    Values values;
    std::istringstream lines(printed);
    for (std::string schema, key, value;
         lines >> schema >> key && std::getline(lines >> std::ws, value);)
        if (schema.starts_with(prefix))
            values[schema.substr(prefix.size()) + " " + key] = value;
    return values;
}

std::optional<bool> flag(const Values& values, const char* name) {
    const auto found = values.find(name);
    return found == values.end() ? std::nullopt : std::optional(found->second == "true");
}

template <typename Value>
std::optional<Value> word(const Values& values, const char* name,
                          const std::map<std::string, Value>& meanings) {
    const auto found = values.find(name);
    const auto meaning = found == values.end() ? meanings.end() : meanings.find(found->second);
    return meaning == meanings.end() ? std::nullopt : std::optional(meaning->second);
}

} // namespace

clicks::PointerSettings gnomePointers(const std::string& printed) {
    using Settings = clicks::PointerSettings;
    const Values values = valuesOf(printed);
    Settings settings;
    settings.mouse = {.leftHanded = flag(values, "mouse left-handed"),
                      .middleEmulation = flag(values, "mouse middle-click-emulation")};
    settings.touchpad = {.leftHanded = word<bool>(values, "touchpad left-handed",
                                                  {{"'left'", true}, {"'right'", false}}),
                         .middleEmulation = flag(values, "touchpad middle-click-emulation")};
    if (!settings.touchpad.leftHanded) // like the mouse
        settings.touchpad.leftHanded = settings.mouse.leftHanded;
    settings.tap = flag(values, "touchpad tap-to-click");
    settings.tapMap = word<Settings::TapMap>(values, "touchpad tap-button-map",
                                             {{"'lrm'", Settings::TapMap::leftRightMiddle},
                                              {"'lmr'", Settings::TapMap::leftMiddleRight}});
    settings.clickMethod =
        word<Settings::ClickMethod>(values, "touchpad click-method",
                                    {{"'none'", Settings::ClickMethod::none},
                                     {"'areas'", Settings::ClickMethod::areas},
                                     {"'fingers'", Settings::ClickMethod::fingers}});
    settings.touchpadUse =
        word<Settings::Use>(values, "touchpad send-events",
                            {{"'enabled'", Settings::Use::always},
                             {"'disabled'", Settings::Use::never},
                             {"'disabled-on-external-mouse'", Settings::Use::withoutMouse}});
    return settings;
}

/// By GNOME's own tool, since its settings are not on the bus.
clicks::PointerSettings askGnome() {
    constexpr auto command =
        "exec gsettings list-recursively org.gnome.desktop.peripherals 2>/dev/null";
    struct Close {
        void operator()(std::FILE* pipe) const { pclose(pipe); }
    };
    const std::unique_ptr<std::FILE, Close> pipe(popen(command, "re")); // NOLINT(cert-env33-c)
    std::string printed;
    std::array<char, 4096> part{};
    while (pipe) {
        const auto size = std::fread(part.data(), 1, part.size(), pipe.get());
        if (size == 0)
            break;
        printed.append(part.data(), size);
    }
    return gnomePointers(printed);
}

} // namespace vantro::capture::wayland
