#pragma once

#include <cstddef>
#include <expected>
#include <span>
#include <string>

namespace vantro::render::vulkan {

enum class DeviceKind { discrete, integrated, virtualized, unknown, software };

/// A graphics device that a driver offers.
struct DeviceCandidate {
    std::string name;
    DeviceKind kind = DeviceKind::unknown;
    bool capable = false; ///< has the interface version and the queues that drawing needs
};

/// The position of the device to draw with: discrete before integrated before the rest; a driver
/// that draws in software only if that is allowed and nothing else is there, since our own software
/// renderer is many times faster. Otherwise the reason why there is none, for a log line. Pure.
std::expected<std::size_t, std::string> chooseDevice(std::span<const DeviceCandidate> candidates,
                                                     bool allowSoftware);

} // namespace vantro::render::vulkan
