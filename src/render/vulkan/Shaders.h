#pragma once

#include <cstdint>
#include <span>

/// The shader programs of resources/shaders, compiled into this library.
namespace vantro::render::vulkan::shaders {

using Program = std::span<const std::uint32_t>;

Program vertexPassthrough();
Program fragmentTexture();
Program fragmentRoundedRect();
Program fragmentRoundedRectCropped();
Program fragmentZoomSample();
Program fragmentConvertI420();
Program computeConvertToI420();

} // namespace vantro::render::vulkan::shaders
