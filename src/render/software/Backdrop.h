#pragma once

#include "base/WorkerPool.h"
#include "render/scene/Scene.h"

#include <memory>

namespace vantro::render::software {

/// A frame's background with the shadow on it, opaque: what both renderers lay under the recording.
/// Drawn once and kept while neither changes,
/// as BGRA for mixing and in the output's format for copying. One thread; works on the pool.
class Backdrop {
  public:
    /// Draws the one of this background, unless it is the one held.
    void update(const Scene::Background& background, PixelSize canvas, base::WorkerPool& workers);

    /// Another pointer for another backdrop.
    const ImagePointer& bgra() const { return m_shown; }
    const media::PixelBuffer& as(media::PixelFormat format);

  private:
    struct Key {
        model::BackgroundColor color;
        ImagePointer picture; // held, so that its address stays its own
        ShadowShape shadow;
        bool operator==(const Key&) const = default;
    };

    Key m_key;
    ShadowCache m_shadow;
    ImagePointer m_shown;
    std::shared_ptr<media::PixelBuffer> m_i420;
    bool m_i420IsCurrent = false;
};

} // namespace vantro::render::software
