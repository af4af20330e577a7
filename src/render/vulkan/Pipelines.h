#pragma once

#include "render/vulkan/Bindings.h"
#include "render/vulkan/Device.h"
#include "render/vulkan/Handle.h"
#include "render/vulkan/QuadPlan.h"
#include "render/vulkan/RenderPasses.h"

#include <array>

namespace vantro::render::vulkan {

/// How 4:2:0 samples become channels; the layout that its shader declares. Samples are 0 to 1.
struct PlaneConversion {
    float lumaOffset = 0;
    float lumaScale = 1;
    float chromaScale = 1;
    float chromaOffset = 0;
    float redFromRed = 0;
    float greenFromBlue = 0;
    float greenFromRed = 0;
    float blueFromBlue = 0;
};

/// Where the conversion to 4:2:0 stores its samples; the layout that its shader declares. Strides
/// and offsets in words of four samples.
struct PlaneLayout {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint32_t lumaStride = 0;
    std::uint32_t chromaStride = 0;
    std::uint32_t blueOffset = 0;
    std::uint32_t redOffset = 0;
};

/// A shader program made ready, with the layout of its inputs.
struct Pipeline {
    PipelineLayoutHandle layout;
    PipelineHandle handle;
};

/// Every pipeline there is. They all draw triangles of QuadVertex; all but the conversions blend
/// over what the pass holds.
class Pipelines {
  public:
    Pipelines(const Device& device, const Bindings& bindings, const RenderPasses& passes);

    const Pipeline& drawing(PipelineKind kind) const {
        return m_drawing[static_cast<std::size_t>(kind)];
    }
    /// 4:2:0 planes to color; uniforms: PlaneConversion.
    const Pipeline& fromPlanes() const { return m_fromPlanes; }
    /// Color to 4:2:0 planes, a compute pipeline; uniforms: PlaneLayout.
    const Pipeline& toPlanes() const { return m_toPlanes; }

  private:
    std::array<Pipeline, pipelineKinds> m_drawing;
    Pipeline m_fromPlanes;
    Pipeline m_toPlanes;
};

} // namespace vantro::render::vulkan
