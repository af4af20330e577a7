#include "render/FallbackRenderer.h"

#include "base/Fatal.h"
#include "base/Log.h"

#include <utility>

namespace vantro::render {

FallbackRenderer::FallbackRenderer(std::unique_ptr<Renderer> preferred, Factory makeFallback)
    : m_renderer(std::move(preferred)), m_makeFallback(std::move(makeFallback)) {
    base::require(m_renderer != nullptr && m_makeFallback, "a fallback needs both renderers");
}

std::string_view FallbackRenderer::description() const {
    return m_renderer->description();
}

bool FallbackRenderer::render(const Scene& scene, media::PixelBuffer& output) {
    if (m_renderer->render(scene, output))
        return true;
    if (!m_makeFallback)
        return false;
    auto fallback = std::exchange(m_makeFallback, nullptr)();
    base::require(fallback != nullptr, "no renderer to fall back on");
    base::logWarning("{} gave up, going on with {}", m_renderer->description(),
                     fallback->description());
    m_renderer = std::move(fallback);
    return m_renderer->render(scene, output);
}

} // namespace vantro::render
