#include "render/RendererFactory.h"

#include "render/FallbackRenderer.h"
#include "render/software/SoftwareRenderer.h"
#include "render/vulkan/VulkanRenderer.h"

#include <filesystem>

namespace vantro::render {
namespace {

/// Whether the kernel drives any graphics hardware. Asking Vulkan would load its software driver
/// too, for tens of milliseconds and megabytes at every start.
bool hasGraphicsDevice() {
    std::error_code error;
    return std::filesystem::exists("/dev/dri", error) ||
           std::filesystem::exists("/dev/nvidiactl", error) ||
           std::filesystem::exists("/dev/dxg", error);
}

std::expected<std::unique_ptr<Renderer>, std::string> makeGpuRenderer() {
    if (!hasGraphicsDevice())
        return std::unexpected("this machine has no graphics device");
    auto gpu = vulkan::makeVulkanRenderer();
    if (!gpu)
        return gpu;
    return std::make_unique<FallbackRenderer>(*std::move(gpu),
                                              [] { return software::makeSoftwareRenderer(); });
}

} // namespace

std::unique_ptr<Renderer> makeRenderer(RendererChoice choice, std::string* why) {
    if (choice == RendererChoice::software)
        return software::makeSoftwareRenderer();
    auto gpu = makeGpuRenderer();
    if (gpu)
        return *std::move(gpu);
    if (why != nullptr)
        *why = "The GPU renderer is not available: " + gpu.error();
    return choice == RendererChoice::gpu ? nullptr : software::makeSoftwareRenderer();
}

} // namespace vantro::render
