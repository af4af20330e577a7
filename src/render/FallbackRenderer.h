#pragma once

#include "render/scene/Renderer.h"

#include <functional>
#include <memory>

namespace vantro::render {

/// Draws with a preferred renderer until that fails, then with another for good. The frame at which
/// it fails is drawn again, so none is lost, and one line is logged.
class FallbackRenderer : public Renderer {
  public:
    /// Called at most once, when the preferred renderer fails; never gives nothing.
    using Factory = std::function<std::unique_ptr<Renderer>()>;

    FallbackRenderer(std::unique_ptr<Renderer> preferred, Factory makeFallback);

    /// Of the renderer that draws now; valid until the next `render`.
    std::string_view description() const override;
    /// False only when the second renderer fails as well.
    bool render(const Scene& scene, media::PixelBuffer& output) override;

  private:
    std::unique_ptr<Renderer> m_renderer;
    Factory m_makeFallback; ///< empty once used
};

} // namespace vantro::render
