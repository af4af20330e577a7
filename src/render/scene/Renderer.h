#pragma once

#include "media/values/PixelBuffer.h"
#include "render/timing/ZoomAnimator.h"

#include <memory>
#include <optional>
#include <string_view>

namespace vantro::render {

/// A colour with straight alpha; a component that is absent takes the renderer's default.
struct RenderColor {
    float red = 0.15F;
    float green = 0.15F;
    float blue = 0.15F;
    float alpha = 1;
    bool operator==(const RenderColor&) const = default;
};

/// Canvas pixels with y measured from the bottom edge.
struct RenderRect {
    float x = 0;
    float y = 0;
    float width = 0;
    float height = 0;
    bool operator==(const RenderRect&) const = default;
};

/// A picture with 8-bit premultiplied BGRA pixels, for cursor, background and webcam. Shared and
/// immutable; the same pointer is the same picture.
using ImagePointer = std::shared_ptr<const media::PixelBuffer>;

/// The pointer's picture. Size and hot spot are in cursor units, of which a standard arrow is about
/// 24 high; the bitmap may be finer.
struct CursorImage {
    ImagePointer pixels;
    float width = 0;
    float height = 0;
    float hotSpotX = 0;
    float hotSpotY = 0;
};

/// A drop shadow's geometry in canvas pixels; a shadow is reused while its key is equal.
struct ShadowCacheKey {
    int width = 0;
    int height = 0;
    float insetX = 0;
    float insetY = 0; ///< from the bottom
    float insetW = 0;
    float insetH = 0;
    float cornerRadius = 0;
    bool operator==(const ShadowCacheKey&) const = default;
};

/// Everything that one output frame depends on. Equal parameters give equal pixels.
struct RenderParams {
    std::shared_ptr<const media::PixelBuffer> source; ///< the recording's frame, bgra or i420
    int canvasWidth = 0;                              ///< output size, pixels
    int canvasHeight = 0;
    ZoomKeyframe keyframe; ///< centre in source pixels
    std::optional<RenderColor> bgColor;
    ImagePointer backgroundImage; ///< stretched over the canvas; wins over the colour
    float insetX = 0;             ///< where the recording stands, canvas pixels
    float insetY = 0;             ///< from the bottom
    float insetW = 0;
    float insetH = 0;
    float cornerRadius = 0; ///< canvas pixels
    ImagePointer webcam;
    std::optional<RenderRect> webcamRect;
    std::optional<RenderRect> webcamDrawRect;
    float webcamCornerRadius = 0;
    bool hasBackground = false;
    std::optional<float> cursorX; ///< source pixels, y from the top
    std::optional<float> cursorY;
    float cursorScale = 1;
    bool operator==(const RenderParams&) const = default;
};

/// Draws output frames from source frames: background, drop shadow, recording with rounded corners,
/// cursor, zoom and webcam.
///
/// Thread-safety: one thread at a time. A renderer may use threads of its own while `render` runs.
class Renderer {
  public:
    virtual ~Renderer() = default;

    /// For people and logs, for example "software (AVX3, 8 threads)".
    virtual std::string_view description() const = 0;

    /// Fills `output`, which has the canvas size, in either pixel format (i420 is BT.709 limited
    /// range). False when the device failed and the frame was left undone. The combination of no
    /// background, no zoom, no cursor and no webcam draws nothing.
    virtual bool render(const RenderParams& params, media::PixelBuffer& output) = 0;
};

} // namespace vantro::render
