#include "render/vulkan/CheckedGpu.h"

#include "render/vulkan/VulkanRenderer.h"

#include <cstdlib>

namespace vantro::render::vulkan {
namespace {

/// Mesa's software driver mixes neighboring texels in 8 bits, coarser than any GPU does. It reads
/// this when it is loaded, so it is set before the first test runs.
const bool softwareDriverIsPrecise =
    setenv("GALLIVM_PERF", "no_aos_sampling", 1) == 0; // NOLINT(concurrency-mt-unsafe)

} // namespace

CheckedGpu::CheckedGpu() {
    EXPECT_TRUE(softwareDriverIsPrecise);
    GpuOptions options;
    options.allowSoftwareDevice = true;
    options.validationListener = [this](std::string_view message) {
        m_messages.with([&](auto& messages) { messages.emplace_back(message); });
    };
    auto made = makeVulkanRenderer(options);
    if (made)
        gpu = std::move(*made);
    else
        ADD_FAILURE() << "the tests need a Vulkan driver with validation layers: " << made.error();
}

void CheckedGpu::TearDown() {
    gpu.reset(); // leaks are reported as the device goes
    m_messages.with([](const auto& messages) {
        for (const std::string& message : messages)
            ADD_FAILURE() << message;
    });
}

} // namespace vantro::render::vulkan
