#pragma once

#include "render/scene/Scene.h"

#include <string_view>

namespace vantro::render {

/// Draws scenes.
///
/// Thread-safety: one thread at a time. A renderer may use threads of its own while `render` runs.
class Renderer {
  public:
    virtual ~Renderer() = default;

    /// For people and logs, for example "software (AVX3, 8 threads)".
    virtual std::string_view description() const = 0;

    /// Fills `output`, which has the canvas size, in either pixel format (i420 is BT.709 limited
    /// range). False when the device failed and the frame was left undone.
    virtual bool render(const Scene& scene, media::PixelBuffer& output) = 0;
};

} // namespace vantro::render
