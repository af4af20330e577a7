#include "app/Desktop.h"
#include "app/cli/Commands.h"
#include "app/cli/StatusLine.h"

#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace vantro::app::cli {
namespace {

using nlohmann::ordered_json;

ordered_json toJson(const model::Rect& rect) {
    return {{"x", rect.x}, {"y", rect.y}, {"width", rect.width}, {"height", rect.height}};
}

ordered_json toJson(const capture::ShareableDisplay& display) {
    return {{"id", display.displayID},
            {"name", display.name},
            {"frame", toJson(display.frame)},
            {"scale", display.backingScaleFactor},
            {"isMain", display.isMain}};
}

ordered_json toJson(const capture::ShareableWindow& window) {
    return {{"id", window.windowID},
            {"title", window.title},
            {"applicationName", window.applicationName},
            {"bundleIdentifier", window.bundleIdentifier},
            {"frame", toJson(window.frame)},
            {"isOnScreen", window.isOnScreen}};
}

std::string_view nameOf(capture::SoundKind kind) {
    return kind == capture::SoundKind::system ? "systemAudio" : "microphone";
}

/// Of what is recorded beside the picture.
struct Device {
    std::string_view kind;
    std::string name;
    std::string description;
    bool isDefault;
};

ordered_json toJson(const Device& device) {
    return {{"kind", device.kind},
            {"name", device.name},
            {"description", device.description},
            {"isDefault", device.isDefault}};
}

std::string placeText(const model::Rect& frame) {
    return fmt::format("{}x{}{:+}{:+}", frame.width, frame.height, frame.x, frame.y);
}

void print(const capture::ShareableDisplay& display) {
    fmt::print("{:>10}  {:<12} {:<20} scale {}{}\n", display.displayID, display.name,
               placeText(display.frame), display.backingScaleFactor,
               display.isMain ? "  main" : "");
}

void print(const capture::ShareableWindow& window) {
    fmt::print("{:>10}  {:<20} {:<18} {}{}\n", window.windowID, placeText(window.frame),
               window.applicationName, window.title, window.isOnScreen ? "" : "  (hidden)");
}

void print(const Device& device) {
    fmt::print("{:<12} {:<40} {}{}\n", device.kind, device.name, device.description,
               device.isDefault ? "  default" : "");
}

template <typename Records>
int list(const Records& records, bool json) {
    if (!json) {
        for (const auto& record : records)
            print(record);
        return exitSuccess;
    }
    auto document = ordered_json::array();
    for (const auto& record : records)
        document.push_back(toJson(record));
    std::cout << document.dump(2, ' ', false, ordered_json::error_handler_t::replace) << '\n';
    return exitSuccess;
}

/// Adds a sub-command that lists what `records` gives.
template <typename Records>
void addListCommand(base::Command app, CommandAction& action, const char* name, const char* purpose,
                    Records records) {
    auto json = std::make_shared<bool>(false);
    auto command = app.command(name, purpose);
    command.flag("--json", *json, "Print JSON");
    command.whenChosen(
        [json, &action, records] { action = [json, records] { return list(records(), *json); }; });
}

} // namespace

void addDisplaysCommand(base::Command app, CommandAction& action) {
    addListCommand(app, action, "displays", "List the displays that can be recorded",
                   [] { return shareableContent(*connectDesktop()).displays; });
}

void addWindowsCommand(base::Command app, CommandAction& action) {
    addListCommand(app, action, "windows",
                   "List the windows that can be recorded, front-most first",
                   [] { return shareableContent(*connectDesktop()).windows; });
}

void addDevicesCommand(base::Command app, CommandAction& action) {
    addListCommand(app, action, "devices", "List the sounds and cameras that can be recorded", [] {
        const auto sounds = desktopSound()->list();
        const auto cameras = desktopCameras()->list();
        if (!sounds && (!cameras || cameras->empty()))
            throw std::runtime_error(sounds.error());
        for (const auto& whyNot : {sounds ? "" : sounds.error(), cameras ? "" : cameras.error()})
            if (!whyNot.empty())
                tell("vantro: " + whyNot + "\n");
        std::vector<Device> devices;
        if (sounds)
            for (const auto& each : *sounds)
                devices.push_back({nameOf(each.kind), each.name, each.description, each.isDefault});
        if (cameras)
            for (const auto& each : *cameras)
                devices.push_back({"camera", each.name, each.description, each.isDefault});
        return devices;
    });
}

} // namespace vantro::app::cli
