#pragma once

#include "capture/CameraSource.h"
#include "capture/session/RecordingClock.h"
#include "capture/session/RecordingProgress.h"
#include "capture/session/RecordingSource.h"
#include "media/AssetWriter.h"

#include <filesystem>
#include <memory>

namespace vantro::capture {

/// A camera's way into a movie of its own, which has the times of the screen's: it begins with the
/// picture that was the newest at time zero, or later with the camera's first, and leaves out the
/// pauses, after each of which it goes on with the newest picture likewise. The movie is opened
/// with its first picture, so a camera that never sends one leaves none. A picture that finds the
/// encoder busy is left out and counted. Whatever goes wrong ends this track and nothing else.
class WebcamTrack final : public RecordingSource, private CameraOutput {
  public:
    /// Clock and progress outlive this.
    WebcamTrack(std::unique_ptr<CameraSource> source, std::filesystem::path movie,
                SharedRecordingClock& clock, RecordingProgress& progress);
    /// A movie that is not finished goes.
    ~WebcamTrack() override;

    /// As the camera's.
    bool awaitPicture(base::HostTime until) { return m_source->awaitPicture(until); }
    void start() override;
    void stop() override;
    /// When it has stopped: makes the movie whole; its last picture stays until then. False when
    /// there is none.
    bool finish(media::MediaTime end);

  private:
    void picture(const CameraPicture& picture) override;
    void cameraMissing(const std::string& reason) override;
    void cameraReturned() override;
    void appendEarly(base::HostDuration until);
    void append(const CameraPicture& picture, base::HostDuration time);
    void openWriter(int width, int height);
    void giveUp(const std::string& reason);
    bool keepsWhatThereIs(media::MediaTime end) const;

    const std::filesystem::path m_movie;
    SharedRecordingClock& m_clock;
    RecordingProgress& m_progress;
    // The camera's thread, while it runs:
    CameraPicture m_early; ///< the newest one before time zero, or in a pause
    bool m_hasFailed = false;
    std::unique_ptr<media::AssetWriter> m_writer;
    std::unique_ptr<CameraSource> m_source; // destroyed first: its thread calls the rest
};

/// Of the movie beside a recording's.
inline constexpr auto webcamMovieName = "webcam.mov";

} // namespace vantro::capture
