#pragma once

#include "render/scene/Renderer.h"

#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace vantro::render::vulkan {

struct GpuOptions {
    /// Also take a driver that draws in software when there is no real GPU. It is many times slower
    /// than our own software renderer, so this is for tests.
    bool allowSoftwareDevice = false;
    /// When set, the validation layers check every call to the driver and report here, from any
    /// thread. For tests.
    std::function<void(std::string_view message)> validationListener;
};

/// Draws on the GPU, without a window system.
///
/// Once the device is lost, or lacks the memory for a frame, one line is logged and every `render`
/// from then on answers false: hand the work to another renderer (FallbackRenderer does).
/// `render` returns when the GPU is done; of the scene's pictures it keeps those that the next
/// frame may share.
class VulkanRenderer : public Renderer {
  public:
    ~VulkanRenderer() override;

    std::string_view description() const override;
    bool render(const Scene& scene, media::PixelBuffer& output) override;

  private:
    friend std::expected<std::unique_ptr<Renderer>, std::string>
    makeVulkanRenderer(const GpuOptions& options);

    struct State;
    explicit VulkanRenderer(std::unique_ptr<State> state);

    std::unique_ptr<State> m_state;
};

/// A renderer on the best GPU of this machine; or the reason why there is none, for example "no
/// Vulkan driver" or "only software Vulkan (llvmpipe)".
std::expected<std::unique_ptr<Renderer>, std::string>
makeVulkanRenderer(const GpuOptions& options = {});

} // namespace vantro::render::vulkan
