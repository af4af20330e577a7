#pragma once

#include "media/Composition.h"
#include "media/FrameSource.h"
#include "media/VideoComposition.h"
#include "media/values/TrackMix.h"
#include "model/Edit.h"
#include "model/Recording.h"
#include "render/ZoomCompositor.h"

#include <memory>
#include <optional>
#include <vector>

namespace vantro::render {

/// Which time line a MovieSession has.
enum class TimeLine {
    film,   ///< what the edit keeps, at its speeds
    source, ///< the whole recording at its own speed, as a player shows it under the edit
};

/// A recording's movie, opened once, with all that turns it into the film that an edit describes:
/// what stills, previews, exports and inspection share. Its caches outlive changes of the edit.
///
/// What goes wrong is a VantroError exportFailed. Thread-safety: one thread at a time, which is the
/// compositor's too.
class MovieSession {
  public:
    /// Opens the movie. Without a renderer everything works but drawing.
    MovieSession(model::Recording recording, model::Edit edit, std::unique_ptr<Renderer> renderer,
                 TimeLine timeLine = TimeLine::film);

    const model::Recording& recording() const { return m_recording; }
    const model::Edit& edit() const { return m_edit; }
    /// Goes on with another edit of the recording. When it throws, the one before stays.
    void setEdit(model::Edit edit);

    /// The recording's picture, pixels.
    model::Size videoSize() const { return m_videoTrack.naturalSize; }
    /// Seconds.
    double sourceDuration() const { return m_asset.duration().seconds(); }
    /// The time line's length.
    media::MediaTime duration() const { return m_composition.duration(); }
    /// What the time line shows at a time of its own, in the recording; times outside of it stick
    /// to its start or end.
    media::MediaTime sourceTime(media::MediaTime time) const;
    const SourceMotion& motion() const { return m_compositor->motion(); }

    /// The film's canvas for a base size, pixels; fails for sizes that no picture can have.
    PixelSize canvas(model::Size baseSize) const;
    const media::Composition& composition() const { return m_composition; }
    /// How the edit mixes the composition's audio tracks.
    std::vector<media::TrackMix> soundMix() const;
    /// For reading the composition's pictures; composed by this session's compositor.
    media::VideoComposition video(PixelSize canvas, int frameRate) const;
    /// The composed picture at a second of the time line, bgra: what an export shows then, before
    /// encoding. Fails for times outside of it.
    std::shared_ptr<const media::PixelBuffer> still(double time, PixelSize canvas);

  private:
    media::Composition composed(const model::Edit& edit) const;

    model::Recording m_recording;
    model::Edit m_edit;
    TimeLine m_timeLine;
    media::Asset m_asset;
    media::AssetTrack m_videoTrack;
    media::Composition m_composition;
    std::shared_ptr<ZoomCompositor> m_compositor;
    std::optional<media::FrameSource> m_frames; ///< of stills, opened with the first
};

} // namespace vantro::render
