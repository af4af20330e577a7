#include "render/RendererFactory.h"

#include "render/gpu/FallbackRenderer.h"
#include "render/gpu/MetalRenderer.h"
#include "render/software/SoftwareRenderer.h"

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

std::expected<std::unique_ptr<Renderer>, std::string> makeGpuRenderer(const CursorImage& cursor) {
    if (!hasGraphicsDevice())
        return std::unexpected("this machine has no graphics device");
    auto gpu = gpu::makeMetalRenderer(cursor);
    if (!gpu)
        return gpu;
    return std::make_unique<gpu::FallbackRenderer>(
        *std::move(gpu), [cursor] { return software::makeSoftwareRenderer(cursor); });
}

} // namespace

std::unique_ptr<Renderer> makeRenderer(RendererChoice choice, std::string* why,
                                       CursorStyle cursorStyle) {
    const auto cursor = standardCursor(cursorStyle);
    if (choice == RendererChoice::software)
        return software::makeSoftwareRenderer(cursor);
    auto gpu = makeGpuRenderer(cursor);
    if (gpu)
        return *std::move(gpu);
    if (why != nullptr)
        *why = "The GPU renderer is not available: " + gpu.error();
    return choice == RendererChoice::gpu ? nullptr : software::makeSoftwareRenderer(cursor);
}

} // namespace vantro::render
