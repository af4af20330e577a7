#include "render/RendererFactory.h"

#include "render/software/SoftwareRenderer.h"

namespace vantro {

std::unique_ptr<Renderer> makeRenderer(RendererChoice choice, std::string* why,
                                       CursorStyle cursor) {
    if (choice == RendererChoice::gpu) {
        if (why != nullptr)
            *why = "the GPU renderer is not available in this build";
        return nullptr;
    }
    return makeSoftwareRenderer(standardCursor(cursor));
}

} // namespace vantro
