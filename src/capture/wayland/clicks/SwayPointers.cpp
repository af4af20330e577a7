#include "base/FileDescriptor.h"
#include "capture/wayland/clicks/DesktopPointers.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>

#include <nlohmann/json.hpp>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>

namespace vantro::capture::wayland {
namespace {

using Json = nlohmann::json;

// A message begins with this, its length and its kind.
constexpr std::array<char, 6> magic{'i', '3', '-', 'i', 'p', 'c'};
constexpr std::uint32_t getInputs = 100;
constexpr std::uint32_t longestAnswer = 1U << 20; // bytes; a dozen devices are 10,000
constexpr timeval longestWait{.tv_sec = 1, .tv_usec = 0};

bool receive(int socket, char* data, std::size_t size) {
    return recv(socket, data, size, MSG_WAITALL) == static_cast<ssize_t>(size);
}

std::string inputsFrom(const std::string& path) {
    const base::FileDescriptor file(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    if (!file || path.size() >= sizeof address.sun_path)
        return {};
    path.copy(address.sun_path, path.size());
    setsockopt(file.get(), SOL_SOCKET, SO_RCVTIMEO, &longestWait, sizeof longestWait);
    std::array<char, 14> head{};
    std::ranges::copy(magic, head.begin());
    std::memcpy(&head[10], &getInputs, sizeof getInputs); // of no length
    if (connect(file.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        send(file.get(), head.data(), head.size(), MSG_NOSIGNAL) != std::ssize(head) ||
        !receive(file.get(), head.data(), head.size()))
        return {};
    std::uint32_t length = 0;
    std::memcpy(&length, &head[magic.size()], sizeof length);
    if (length > longestAnswer)
        return {};
    std::string answer(length, ' ');
    return receive(file.get(), answer.data(), length) ? answer : std::string();
}

std::optional<bool> flag(const Json& device, const char* name) {
    const auto value = device.value(name, "");
    return value.empty() ? std::nullopt : std::optional(value == "enabled");
}

void takeTouchpad(const Json& device, clicks::PointerSettings& settings) {
    using Settings = clicks::PointerSettings;
    settings.tap = flag(device, "tap");
    const auto map = device.value("tap_button_map", "");
    if (!map.empty())
        settings.tapMap =
            map == "lmr" ? Settings::TapMap::leftMiddleRight : Settings::TapMap::leftRightMiddle;
    const auto method = device.value("click_method", "");
    if (!method.empty())
        settings.clickMethod = method == "button_areas"  ? Settings::ClickMethod::areas
                               : method == "clickfinger" ? Settings::ClickMethod::fingers
                                                         : Settings::ClickMethod::none;
    const auto use = device.value("send_events", "");
    if (!use.empty())
        settings.touchpadUse = use == "enabled"    ? Settings::Use::always
                               : use == "disabled" ? Settings::Use::never
                                                   : Settings::Use::withoutMouse;
}

} // namespace

clicks::PointerSettings swayPointers(const std::string& json) {
    clicks::PointerSettings settings;
    bool hasTouchpad = false;
    bool hasMouse = false;
    const auto inputs = Json::parse(json, nullptr, false);
    if (!inputs.is_array())
        return {};
    try {
        for (const auto& input : inputs) {
            const auto device = input.value("libinput", Json::object());
            const auto type = input.value("type", "");
            const clicks::PointerSettings::Kind kind{.leftHanded = flag(device, "left_handed"),
                                                     .middleEmulation =
                                                         flag(device, "middle_emulation")};
            if (type == "touchpad" && !std::exchange(hasTouchpad, true)) {
                settings.touchpad = kind;
                takeTouchpad(device, settings);
            } else if (type == "pointer" && !std::exchange(hasMouse, true)) {
                settings.mouse = kind;
            }
        }
    } catch (const Json::exception&) { // of other types than sway's
        return {};
    }
    return settings;
}

clicks::PointerSettings askSway(const std::string& socket) {
    return swayPointers(inputsFrom(socket));
}

} // namespace vantro::capture::wayland
