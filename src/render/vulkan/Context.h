#pragma once

#include "render/vulkan/Bindings.h"
#include "render/vulkan/Device.h"
#include "render/vulkan/Pipelines.h"
#include "render/vulkan/RenderPasses.h"

namespace vantro::render::vulkan {

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

} // namespace vantro::render::vulkan
