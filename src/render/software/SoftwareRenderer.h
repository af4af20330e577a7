#pragma once

#include "render/scene/Renderer.h"

#include <memory>

namespace vantro::render::software {

/// Draws on the processor: SIMD for each row of pixels, tiles of the frame over the worker threads.
/// It is the reference for other renderers; its results lie within 1/255 of exact arithmetic.
///
/// `threads` counts the calling thread; 0 takes one for each core. Never fails.
std::unique_ptr<Renderer> makeSoftwareRenderer(unsigned threads = 0);

} // namespace vantro::render::software
