#pragma once

#include "render/gpu/vulkan/Bindings.h"
#include "render/gpu/vulkan/Device.h"
#include "render/gpu/vulkan/Pipelines.h"
#include "render/gpu/vulkan/RenderPasses.h"

namespace vantro::render::gpu::vulkan {

/// What stays the same for as long as a device is used.
struct Context {
    Context(ValidationListener listener, bool allowSoftware)
        : device(std::move(listener), allowSoftware)
        , bindings(device)
        , passes(device)
        , pipelines(device, bindings, passes) {}

    Device device;
    Bindings bindings;
    RenderPasses passes;
    Pipelines pipelines;
};

} // namespace vantro::render::gpu::vulkan
