#pragma once

#include "base/WorkerPool.h"
#include "render/ShadowImage.h"

#include <memory>
#include <optional>

namespace vantro {

/// A frame's background with the shadow on it, opaque. Drawn once and kept while neither changes,
/// as BGRA for mixing and in the output's format for copying. One thread; works on the pool.
class Backdrop {
  public:
    /// Draws unless the held one is the right one.
    void update(const RenderParams& params, WorkerPool& workers);

    const PixelBuffer& bgra() const { return *m_bgra; }
    const PixelBuffer& as(PixelFormat format);

  private:
    struct Key {
        std::optional<RenderColor> color;
        ImagePointer image; // held, so that its address stays its own
        ShadowCacheKey shadow;
        bool operator==(const Key&) const = default;
    };

    Key m_key;
    ShadowCache m_shadow;
    std::shared_ptr<PixelBuffer> m_bgra;
    std::shared_ptr<PixelBuffer> m_i420;
    bool m_i420IsCurrent = false;
};

} // namespace vantro
