#pragma once

#include "capture/CameraDevices.h"
#include "capture/RecordingRequest.h"
#include "capture/SoundDevices.h"
#include "capture/session/CursorJournal.h"
#include "capture/session/SoundTrack.h"
#include "capture/session/WebcamTrack.h"

#include <filesystem>
#include <memory>
#include <utility>
#include <vector>

namespace vantro::capture {

/// What a recording can do without: sounds in its movie, and a camera in a second one. What is
/// asked for and cannot be had, or does not start, is noted in the progress and left out.
///
/// Lifecycle: opened → connected → started → stopped → finished; each step once. One thread.
class ExtraSources {
  public:
    /// Without `sounds` or `cameras` none can be had. The others outlive this.
    ExtraSources(const SourceSwitches& wanted, std::unique_ptr<SoundDevices> sounds,
                 std::unique_ptr<CameraDevices> cameras, SharedRecordingClock& clock,
                 RecordingProgress& progress);

    void openCamera(const std::filesystem::path& webcamMovie);
    /// The audio tracks that the movie needs for what could be opened, in their order.
    std::vector<media::AudioSettings> openSounds();
    /// Gives the sounds their tracks of the movie, which outlives this as the journal does.
    void connect(media::AssetWriter& writer, CursorJournal& journal);
    /// Waits for the camera's first picture, but not for long.
    void start();
    /// When the clock has been stopped.
    void stop();
    /// Makes the camera's movie whole, and as long as the recording's.
    void finish(media::MediaTime end);
    /// Stops whatever runs; a camera's movie that is not finished goes.
    void abandon();

    /// What of it has been recorded.
    void describe(model::RecordingMetadata& metadata) const;

  private:
    void openSound(SoundKind kind, const std::string& device);
    bool startSound(SoundTrack& track);
    void startCamera();

    const SourceSwitches& m_wanted;
    const std::unique_ptr<SoundDevices> m_soundDevices;
    const std::unique_ptr<CameraDevices> m_cameras;
    SharedRecordingClock& m_clock;
    RecordingProgress& m_progress;
    std::vector<std::pair<SoundKind, std::unique_ptr<SoundSource>>> m_opened; // until connected
    std::vector<std::unique_ptr<SoundTrack>> m_sounds;
    std::unique_ptr<WebcamTrack> m_webcam;
    base::HostTime m_cameraOpened; ///< when it began
    bool m_hasWebcam = false;
};

} // namespace vantro::capture
