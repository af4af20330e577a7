#include "render/vulkan/VulkanRenderer.h"

#include "base/Fatal.h"
#include "base/Log.h"
#include "render/scene/ShadowImage.h"
#include "render/vulkan/OutputPicture.h"
#include "render/vulkan/PictureTexture.h"
#include "render/vulkan/QuadPlan.h"
#include "render/vulkan/SourceTexture.h"
#include "render/vulkan/VulkanError.h"

#include <algorithm>

namespace vantro::render::vulkan {

struct VulkanRenderer::State {
    explicit State(const GpuOptions& options)
        : context(options.validationListener, options.allowSoftwareDevice)
        , description(fmt::format("GPU ({})", context.device.chosen().name))
        , commands(context.device)
        , painter(context, commands) {}
    ~State() { context.device.waitIdle(); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    void draw(const Scene& scene, media::PixelBuffer& output);
    void bring(const Scene& scene, PictureRole role);
    void drawPass(VkRenderPass pass, const RenderTarget& target, const QuadList& quads);
    VkDescriptorSet bindingsFor(PictureRole role) const;

    Context context;
    std::string description;
    ShadowCache shadows;
    Commands commands;
    QuadPainter painter;
    SourceTexture recording;
    PictureTexture background{PictureTexture::Changes::rarely};
    PictureTexture shadow{PictureTexture::Changes::rarely};
    PictureTexture cursor{PictureTexture::Changes::rarely};
    PictureTexture webcam{PictureTexture::Changes::often};
    RenderTarget backdrop; ///< where the output shows a part of it
    OutputPicture output;
    bool failed = false;
};

void VulkanRenderer::State::draw(const Scene& scene, media::PixelBuffer& finished) {
    const QuadPlan plan = planQuads(scene);
    const auto [width, height] = scene.canvas;
    output.prepare(context, finished.format(), width, height);
    const bool inTwoPasses = !plan.backdrop.draws().empty();
    if (inTwoPasses && !backdrop.isSized(width, height))
        backdrop = RenderTarget(context.device, context.bindings, context.passes, width, height);

    commands.begin();
    painter.beginFrame();
    for (const QuadList* quads : {&plan.backdrop, &plan.output})
        for (const QuadDraw& quad : quads->draws())
            bring(scene, quad.picture);
    if (inTwoPasses)
        drawPass(context.passes.thenSampled(), backdrop, plan.backdrop);
    drawPass(output.pass(context), output.target(), plan.output);
    output.recordReturn(context, commands);
    commands.submitAndWait();

    for (PictureTexture* picture : {&background, &shadow, &cursor, &webcam})
        picture->frameDone();
    output.copyTo(finished);
}

void VulkanRenderer::State::bring(const Scene& scene, PictureRole role) {
    switch (role) {
    case PictureRole::recording:
        recording.hold(context, commands, painter, scene.recording.picture);
        break;
    case PictureRole::background:
        background.hold(context, commands, scene.background->picture);
        break;
    case PictureRole::shadow:
        shadow.hold(context, commands, shadows.imageFor(scene.background->shadow));
        break;
    case PictureRole::cursor:
        cursor.hold(context, commands, scene.cursor->picture);
        break;
    case PictureRole::webcam:
        webcam.hold(context, commands, scene.webcam->picture);
        break;
    case PictureRole::none:
    case PictureRole::backdrop:
        break;
    }
}

VkDescriptorSet VulkanRenderer::State::bindingsFor(PictureRole role) const {
    switch (role) {
    case PictureRole::recording:
        return recording.bindings();
    case PictureRole::background:
        return background.bindings();
    case PictureRole::shadow:
        return shadow.bindings();
    case PictureRole::cursor:
        return cursor.bindings();
    case PictureRole::webcam:
        return webcam.bindings();
    case PictureRole::backdrop:
        return backdrop.bindings();
    case PictureRole::none:
        break;
    }
    return VK_NULL_HANDLE;
}

void VulkanRenderer::State::drawPass(VkRenderPass pass, const RenderTarget& target,
                                     const QuadList& quads) {
    painter.beginPass(pass, target);
    for (const QuadDraw& quad : quads.draws())
        painter.draw(quad, bindingsFor(quad.picture));
    painter.endPass();
}

VulkanRenderer::VulkanRenderer(std::unique_ptr<State> state) : m_state(std::move(state)) {}
VulkanRenderer::~VulkanRenderer() = default;

std::string_view VulkanRenderer::description() const {
    return m_state->description;
}

bool VulkanRenderer::render(const Scene& scene, media::PixelBuffer& output) {
    base::require(scene.recording.picture != nullptr && output.width() == scene.canvas.width &&
                      output.height() == scene.canvas.height,
                  "a scene without a recording, or an output of another size");
    if (m_state->failed)
        return false;
    try {
        m_state->draw(scene, output);
        return true;
    } catch (const VulkanError& error) {
        base::logError("Drawing on the GPU failed: {}", error.what());
        m_state->failed = true;
        return false;
    }
}

std::expected<std::unique_ptr<Renderer>, std::string>
makeVulkanRenderer(const GpuOptions& options) {
    try {
        auto state = std::make_unique<VulkanRenderer::State>(options);
        return std::unique_ptr<Renderer>(new VulkanRenderer(std::move(state)));
    } catch (const VulkanError& error) {
        return std::unexpected(error.what());
    }
}

} // namespace vantro::render::vulkan
