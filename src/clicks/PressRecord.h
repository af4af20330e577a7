#pragma once

#include <cstdint>

namespace vantro::clicks {

enum class Button : std::uint8_t { left = 1, right = 2 };

enum class Device : std::uint8_t { mouse = 1, touchpad = 2, stick = 3, pen = 4 };

/// A button that was pressed. As it lies in memory it goes through the service's pipe, in one
/// piece: all that ever leaves the service.
struct PressRecord {
    /// Records before this one were dropped, because nobody had taken earlier ones.
    static constexpr std::uint16_t lost = 1;

    std::uint64_t time = 0; ///< the kernel's, microseconds of CLOCK_MONOTONIC
    Button button = Button::left;
    Device device = Device::mouse;
    std::uint16_t flags = 0;
    std::uint32_t sequence = 0; ///< counts all presses of a watch, also those dropped

    bool operator==(const PressRecord&) const = default;
};
static_assert(sizeof(PressRecord) == 16);

/// How the service is found on the system bus.
namespace service {

constexpr auto name = "com.vantro.Clicks1";
constexpr auto path = "/com/vantro/Clicks1";
constexpr auto interface = "com.vantro.Clicks1";
/// (a{sv} settings) → h, the reading end of a pipe of records. `PointerSettings` says what the
/// settings are. It ends with the pipe, or with the caller's name on the bus.
constexpr auto watch = "Watch";

constexpr auto notAllowed = "com.vantro.Clicks1.Error.NotAllowed";
constexpr auto badSettings = "com.vantro.Clicks1.Error.BadSettings";
constexpr auto tooMany = "com.vantro.Clicks1.Error.TooMany"; ///< watches, of a caller or in all

} // namespace service

} // namespace vantro::clicks
