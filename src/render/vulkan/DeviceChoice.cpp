#include "render/vulkan/DeviceChoice.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

namespace vantro::render::vulkan {

std::expected<std::size_t, std::string> chooseDevice(std::span<const DeviceCandidate> candidates,
                                                     bool allowSoftware) {
    if (candidates.empty())
        return std::unexpected("no Vulkan device");
    const auto rank = [](const DeviceCandidate& candidate) {
        // The enumeration is in order of preference.
        return candidate.capable ? static_cast<int>(candidate.kind) : 1000;
    };
    const auto best = std::ranges::min_element(candidates, {}, rank);
    if (!best->capable)
        return std::unexpected(fmt::format("{} lacks what drawing needs", best->name));
    if (best->kind == DeviceKind::software && !allowSoftware)
        return std::unexpected(fmt::format("only software Vulkan ({})", best->name));
    return static_cast<std::size_t>(std::distance(candidates.begin(), best));
}

} // namespace vantro::render::vulkan
