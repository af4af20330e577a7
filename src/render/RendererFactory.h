#pragma once

#include "render/scene/CursorImage.h"
#include "render/scene/Renderer.h"

#include <memory>
#include <string>

namespace vantro::render {

enum class RendererChoice {
    automatic, ///< the best one that works here
    software,
    gpu,
};

/// Makes a renderer that draws `cursor` as the pointer. Nothing when the chosen one cannot work
/// here; `automatic` and `software` always succeed. `why`, when given, is filled with the reason
/// wherever the GPU was wanted and is not used. A GPU that fails later hands over to the software
/// renderer by itself. Any thread.
std::unique_ptr<Renderer> makeRenderer(RendererChoice choice, std::string* why = nullptr,
                                       CursorStyle cursor = CursorStyle::theme);

} // namespace vantro::render
