#include "render/vulkan/VulkanRenderer.h"

#include "base/Fatal.h"
#include "base/Log.h"
#include "base/WorkerPool.h"
#include "render/software/Backdrop.h"
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
    base::WorkerPool workers{1}; ///< draws the backdrop, which seldom changes, on this thread
    software::Backdrop drawnBackdrop;
    Commands commands;
    QuadPainter painter;
    SourceTexture recording;
    PictureTexture backdrop{PictureTexture::Changes::rarely};
    PictureTexture cursor{PictureTexture::Changes::rarely};
    PictureTexture webcam{PictureTexture::Changes::often};
    OutputPicture output;
    bool failed = false;
};

void VulkanRenderer::State::draw(const Scene& scene, media::PixelBuffer& finished) {
    const QuadList quads = planQuads(scene);
    const auto [width, height] = scene.canvas;
    output.prepare(context, finished.format(), width, height);

    commands.begin();
    painter.beginFrame();
    for (const QuadDraw& quad : quads.draws())
        bring(scene, quad.picture);
    drawPass(output.pass(context), output.target(), quads);
    output.recordReturn(context, commands);
    commands.submitAndWait();

    for (PictureTexture* picture : {&backdrop, &cursor, &webcam})
        picture->frameDone();
    output.copyTo(finished);
}

void VulkanRenderer::State::bring(const Scene& scene, PictureRole role) {
    switch (role) {
    case PictureRole::recording:
        recording.hold(context, commands, painter, scene.recording.picture);
        break;
    case PictureRole::backdrop:
        if (scene.background) {
            drawnBackdrop.update(*scene.background, scene.canvas, workers);
            backdrop.hold(context, commands, drawnBackdrop.bgra());
        }
        break;
    case PictureRole::cursor:
        if (scene.cursor)
            cursor.hold(context, commands, scene.cursor->picture);
        break;
    case PictureRole::webcam:
        if (scene.webcam)
            webcam.hold(context, commands, scene.webcam->picture);
        break;
    }
}

VkDescriptorSet VulkanRenderer::State::bindingsFor(PictureRole role) const {
    switch (role) {
    case PictureRole::recording:
        return recording.bindings();
    case PictureRole::cursor:
        return cursor.bindings();
    case PictureRole::webcam:
        return webcam.bindings();
    case PictureRole::backdrop:
        return backdrop.bindings();
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
