#pragma once

#include "render/scene/Renderer.h"

#include <cstdint>
#include <string>

namespace vantro::render::gpu {

/// A frame to draw, made up from a seed: the same seed gives the same frame.
struct GeneratedFrame {
    RenderParams params;
    media::PixelFormat outputFormat = media::PixelFormat::bgra;

    std::string describe() const;
};

/// Every path, corner, format and kind of background comes up; sizes from one pixel on, odd and
/// even; laid out the way that the compositor does it.
GeneratedFrame generateFrame(std::uint32_t seed);

} // namespace vantro::render::gpu
