#pragma once

#include "render/scene/Renderer.h"

#include <memory>
#include <string>

namespace vantro::render {

enum class RendererChoice {
    automatic, ///< the best one that works here
    software,
    gpu,
};

/// Nothing when the chosen one cannot work here; `automatic` and `software` always succeed. `why`,
/// when given, is filled with the reason wherever the GPU was wanted and is not used. A GPU that
/// fails later hands over to the software renderer by itself. Any thread.
std::unique_ptr<Renderer> makeRenderer(RendererChoice choice, std::string* why = nullptr);

} // namespace vantro::render
