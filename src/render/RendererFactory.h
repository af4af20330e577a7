#pragma once

#include "render/CursorImage.h"
#include "render/Renderer.h"

#include <memory>
#include <string>

namespace vantro {

enum class RendererChoice {
    automatic, ///< the best one that works here
    software,
    gpu,
};

/// Makes a renderer that draws `cursor` as the pointer. Nothing when the chosen one cannot work
/// here; `why`, when given, is then filled with the reason. `automatic` and `software` always
/// succeed. Any thread.
std::unique_ptr<Renderer> makeRenderer(RendererChoice choice, std::string* why = nullptr,
                                       CursorStyle cursor = CursorStyle::theme);

} // namespace vantro
