#include "render/gpu/MetalRenderer.h"

#include "base/Fatal.h"
#include "base/Log.h"
#include "render/gpu/QuadPlan.h"
#include "render/gpu/vulkan/OutputPicture.h"
#include "render/gpu/vulkan/PictureTexture.h"
#include "render/gpu/vulkan/SourceTexture.h"
#include "render/gpu/vulkan/VulkanError.h"
#include "render/scene/CursorImage.h"
#include "render/scene/ShadowImage.h"

#include <algorithm>

namespace vantro::render::gpu {

using vulkan::PictureTexture;

struct MetalRenderer::State {
    State(const CursorImage& cursorImage, const GpuOptions& options)
        : context(options.validationListener, options.allowSoftwareDevice)
        , description(fmt::format("GPU ({})", context.device.chosen().name))
        , cursors(cursorImage)
        , commands(context.device)
        , painter(context, commands) {}
    ~State() { context.device.waitIdle(); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    void draw(const RenderParams& params, media::PixelBuffer& output);
    void bringPictures(const RenderParams& params, const QuadPlan& plan);
    void bring(const RenderParams& params, const QuadDraw& quad);
    void drawPass(VkRenderPass pass, const vulkan::RenderTarget& target, const QuadList& quads);
    VkDescriptorSet bindingsFor(PictureRole role) const;

    vulkan::Context context;
    std::string description;
    CursorTextures cursors;
    ShadowCache shadows;
    vulkan::Commands commands;
    vulkan::QuadPainter painter;
    vulkan::SourceTexture source;
    vulkan::PictureTexture background{vulkan::PictureTexture::Changes::rarely};
    vulkan::PictureTexture shadow{vulkan::PictureTexture::Changes::rarely};
    vulkan::PictureTexture cursor{vulkan::PictureTexture::Changes::rarely};
    vulkan::PictureTexture webcam{vulkan::PictureTexture::Changes::often};
    vulkan::RenderTarget scene;
    vulkan::OutputPicture output;
    bool failed = false;
};

void MetalRenderer::State::draw(const RenderParams& params, media::PixelBuffer& finished) {
    const QuadPlan plan = planQuads(params, cursors.image());
    if (plan.path == DrawPath::nothing)
        return;
    const int width = params.canvasWidth;
    const int height = params.canvasHeight;
    output.prepare(context, finished.format(), width, height);
    if (plan.path == DrawPath::scene && !scene.isSized(width, height))
        scene =
            vulkan::RenderTarget(context.device, context.bindings, context.passes, width, height);

    commands.begin();
    painter.beginFrame();
    bringPictures(params, plan);
    if (plan.path == DrawPath::scene)
        drawPass(context.passes.thenSampled(), scene, plan.scene);
    drawPass(output.pass(context), output.target(), plan.output);
    output.recordReturn(context, commands);
    commands.submitAndWait();

    for (vulkan::PictureTexture* picture : {&background, &shadow, &cursor, &webcam})
        picture->frameDone();
    output.copyTo(finished);
}

void MetalRenderer::State::bringPictures(const RenderParams& params, const QuadPlan& plan) {
    for (const QuadList* quads : {&plan.scene, &plan.output}) {
        for (const QuadDraw& quad : quads->draws())
            bring(params, quad);
    }
}

void MetalRenderer::State::bring(const RenderParams& params, const QuadDraw& quad) {
    switch (quad.picture) {
    case PictureRole::source:
        source.hold(context, commands, painter, params.source);
        break;
    case PictureRole::background:
        background.hold(context, commands, params.backgroundImage);
        break;
    case PictureRole::shadow:
        shadow.hold(context, commands, shadows.imageFor(shadowKey(params)));
        break;
    case PictureRole::cursor:
        cursor.hold(context, commands, cursors.textureFor(quad.uniforms.rectangle[2]));
        break;
    case PictureRole::webcam:
        webcam.hold(context, commands, params.webcam);
        break;
    case PictureRole::none:
    case PictureRole::scene:
        break;
    }
}

VkDescriptorSet MetalRenderer::State::bindingsFor(PictureRole role) const {
    switch (role) {
    case PictureRole::source:
        return source.bindings();
    case PictureRole::background:
        return background.bindings();
    case PictureRole::shadow:
        return shadow.bindings();
    case PictureRole::cursor:
        return cursor.bindings();
    case PictureRole::webcam:
        return webcam.bindings();
    case PictureRole::scene:
        return scene.bindings();
    case PictureRole::none:
        break;
    }
    return VK_NULL_HANDLE;
}

void MetalRenderer::State::drawPass(VkRenderPass pass, const vulkan::RenderTarget& target,
                                    const QuadList& quads) {
    painter.beginPass(pass, target);
    for (const QuadDraw& quad : quads.draws())
        painter.draw(quad, bindingsFor(quad.picture));
    painter.endPass();
}

MetalRenderer::MetalRenderer(std::unique_ptr<State> state) : m_state(std::move(state)) {}
MetalRenderer::~MetalRenderer() = default;

std::string_view MetalRenderer::description() const {
    return m_state->description;
}

bool MetalRenderer::render(const RenderParams& params, media::PixelBuffer& output) {
    base::require(params.source != nullptr && output.width() == params.canvasWidth &&
                      output.height() == params.canvasHeight,
                  "a frame without source, or an output of another size");
    if (m_state->failed)
        return false;
    try {
        m_state->draw(params, output);
        return true;
    } catch (const vulkan::VulkanError& error) {
        base::logError("Drawing on the GPU failed: {}", error.what());
        m_state->failed = true;
        return false;
    }
}

std::expected<std::unique_ptr<Renderer>, std::string> makeMetalRenderer(const CursorImage& cursor,
                                                                        const GpuOptions& options) {
    try {
        auto state = std::make_unique<MetalRenderer::State>(cursor, options);
        return std::unique_ptr<Renderer>(new MetalRenderer(std::move(state)));
    } catch (const vulkan::VulkanError& error) {
        return std::unexpected(error.what());
    }
}

} // namespace vantro::render::gpu
