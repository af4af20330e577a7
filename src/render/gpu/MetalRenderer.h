#pragma once

#include "render/scene/Renderer.h"

#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace vantro::render::gpu {

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
/// `render` returns when the GPU is done; the parameters' pictures are not needed any longer then,
/// except that those which the next frame may share are kept by pointer.
class MetalRenderer : public Renderer {
  public:
    ~MetalRenderer() override;

    std::string_view description() const override;
    bool render(const RenderParams& params, media::PixelBuffer& output) override;

  private:
    friend std::expected<std::unique_ptr<Renderer>, std::string>
    makeMetalRenderer(const CursorImage& cursor, const GpuOptions& options);

    struct State;
    explicit MetalRenderer(std::unique_ptr<State> state);

    std::unique_ptr<State> m_state;
};

/// A renderer that draws `cursor` as the pointer, on the best GPU of this machine; or the reason
/// why there is none, for example "no Vulkan driver" or "only software Vulkan (llvmpipe)".
std::expected<std::unique_ptr<Renderer>, std::string>
makeMetalRenderer(const CursorImage& cursor, const GpuOptions& options = {});

} // namespace vantro::render::gpu
