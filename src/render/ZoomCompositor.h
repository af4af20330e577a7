#pragma once

#include "media/VideoComposition.h"
#include "model/Edit.h"
#include "model/Recording.h"
#include "render/scene/Renderer.h"
#include "render/scene/SourceMotion.h"

#include <functional>
#include <memory>

namespace vantro::render {

/// Composes each output frame: asks where camera, pointer and webcam are at the frame's source
/// time, lays the scene out, and has the renderer draw it. An unchanged scene is not drawn again:
/// its picture is handed out once more.
///
/// Thread-safety: one thread composes and does all else, except `setEdit`, which any may call.
class ZoomCompositor : public media::VideoCompositor {
  public:
    /// The webcam's picture at a source time, opaque bgra or i420; nothing when there is none. The
    /// same pointer is the same picture. Called from `compose`, in any order of times.
    using WebcamFrames =
        std::function<std::shared_ptr<const media::PixelBuffer>(media::MediaTime sourceTime)>;

    /// `videoSize` is the recording's in pixels. Without a renderer every frame that must be drawn
    /// fails with "Renderer unavailable".
    ZoomCompositor(model::Recording recording, model::Size videoSize, model::Edit edit,
                   std::unique_ptr<Renderer> renderer, CursorStyle cursor = CursorStyle::theme);
    ~ZoomCompositor() override;

    /// The frames composed from now on are of this edit. What did not change is kept: background
    /// picture, shadow, cursor, the webcam's picture. A background picture that cannot be read is
    /// left out with one log line.
    void setEdit(model::Edit edit);
    /// Where the webcam's pictures come from; without it there is none.
    void setWebcam(WebcamFrames frames);
    /// Off: the recording covers the canvas, with nothing around it.
    void setBackgroundShown(bool shown);

    /// Of the latest edit; valid until the next.
    const SourceMotion& motion();

    /// Throws VantroError (exportFailed) with "Missing source frame", "Failed to create output
    /// buffer", or "Renderer unavailable", the last also when the renderer's device failed.
    std::shared_ptr<const media::PixelBuffer>
    compose(const media::CompositionRequest& request) override;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace vantro::render
