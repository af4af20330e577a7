#pragma once

#include "media/VideoComposition.h"
#include "model/Background.h"
#include "model/Choices.h"
#include "model/RecordingMetadata.h"
#include "render/scene/Renderer.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace vantro::render {

/// Composes each output frame: maps the output time to source time, asks the animator for the
/// camera, lays the recording out, and has the renderer draw.
///
/// Configured through the setters before frames are asked for; then used from one thread. An
/// unchanged picture is handed out again without being drawn.
class ZoomCompositor : public media::VideoCompositor {
  public:
    using TimeMapper = std::function<double(double outputSeconds)>;
    /// The webcam's picture at a source time, opaque bgra or i420; nothing when there is none. The
    /// same pointer is the same picture. Called from `compose`, in any order of times.
    using WebcamFrames =
        std::function<std::shared_ptr<const media::PixelBuffer>(double sourceSeconds)>;

    /// Without a renderer every frame that must be drawn fails with "Renderer unavailable".
    explicit ZoomCompositor(std::unique_ptr<Renderer> renderer,
                            CursorStyle cursor = CursorStyle::theme);
    ~ZoomCompositor() override;

    void setAnimator(std::shared_ptr<const ZoomAnimator> animator);
    /// Loads an image background. A picture that cannot be read is left out with one log line.
    void setBackgroundSettings(std::optional<model::BackgroundSettings> settings);
    /// Without one, output time is source time.
    void setTimeMapper(TimeMapper mapper);
    /// Positions in points, ascending in time; they are multiplied by `displayScaleFactor`.
    void setCursor(const std::vector<model::CursorPosition>& positions, double displayScaleFactor,
                   double cursorScale);

    /// Turns the webcam on. `sizeFraction` is its square's side as a share of the canvas width.
    void setWebcam(WebcamFrames frames, model::WebcamPosition position, double sizeFraction);

    /// Throws VantroError (exportFailed) with "No zoom animator configured", "Missing source
    /// frame", "Failed to create output buffer", or "Renderer unavailable", the last also
    /// when the renderer's device failed.
    std::shared_ptr<const media::PixelBuffer>
    compose(const media::CompositionRequest& request) override;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

/// The pointer at `t` seconds, between samples by straight lines, sticking to the first and last;
/// nothing without samples.
std::optional<model::Point> interpolatedCursor(const std::vector<model::CursorPosition>& positions,
                                               double t);

} // namespace vantro::render
