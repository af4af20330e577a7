#pragma once

#include "capture/CapturePlatform.h"
#include "capture/Recorder.h"
#include "capture/session/CursorTracker.h"
#include "capture/session/ExtraSources.h"
#include "capture/session/RecordingProgress.h"
#include "capture/session/ScreenTrack.h"

#include <functional>
#include <memory>
#include <optional>

namespace vantro::capture {

/// Records the screen into one movie, with the pointer's path and clicks beside it and, where they
/// are asked for and can be had, sounds in it and a camera in a second movie.
///
/// It owns its sources and the one clock that maps their host times to the movie's time, whose zero
/// is the first frame. Everything slow is opened before. Screen and pointer are needed; what else
/// cannot take part, or ends by itself, is noted in the statistics and does no harm.
///
/// Until the recording is stopped, journals beside the movie hold what is needed to recover it
/// should the program be killed. The movie's goes when it is whole; the pointer's stays until
/// whoever stopped the recording has kept its metadata.
///
/// Lifecycle as a Recorder's. One worker thread for all calls but `statistics`, `mark`,
/// `pause` and `resume`, which any thread may make while the others do not destroy it.
class RecordingSession final : public Recorder {
  public:
    /// Connects to the desktop, on the worker thread. Throws VantroError.
    using Connect = std::function<std::unique_ptr<CapturePlatform>()>;

    /// Without `sounds` or `cameras` none can be had.
    RecordingSession(RecordingRequest request, Connect connect,
                     std::unique_ptr<SoundDevices> sounds = nullptr,
                     std::unique_ptr<CameraDevices> cameras = nullptr);
    /// A recording that was not stopped is thrown away.
    ~RecordingSession() override;

    bool choose(std::stop_token cancelled) override;
    std::optional<ChosenContent> chosen() override;
    bool isShared() override { return m_platform->isShared(); }
    void crop(const model::Rect& area) override { m_target = cropped(m_target, area); }
    void awaitHiddenWindows() override { m_platform->awaitHiddenWindows(); }
    /// Throws VantroError, captureStartFailed or assetWriterFailed; nothing is left running and no
    /// file is left then.
    bool start(const std::filesystem::path& movie) override;
    /// Finishes the movie, whose last picture stays until now. Throws VantroError assetWriterFailed
    /// when the movie could not be written to its end, and noRecordingData when no frame has come;
    /// everything has stopped then too.
    model::RecordingMetadata stop() override;
    RecordingStatistics statistics() override;
    bool mark() override;
    void pause() override;
    void resume() override;

    /// What was chosen.
    const RecordingTarget& target() const { return m_target; }

  private:
    bool openSources();
    void noteWhatIsMissing();
    void openJournal();
    void makeTracker();
    void startSources();
    void stopSources(base::HostTime at);
    void abandon();
    std::optional<base::HostTime> changeClock(bool (RecordingClock::*change)(base::HostTime));
    model::RecordingMetadata describeRecording() const;
    model::RecordingMetadata makeMetadata(double endTime) const;

    const RecordingRequest m_request;
    const Connect m_connect;
    std::unique_ptr<CapturePlatform> m_platform; // once chosen
    RecordingTarget m_target;                    // likewise
    std::filesystem::path m_movie;

    RecordingProgress m_progress;
    SharedRecordingClock m_clock;
    // Destroyed in reverse: sources go before what they deliver to.
    std::unique_ptr<media::AssetWriter> m_writer;
    std::unique_ptr<CursorJournal> m_journal;
    std::unique_ptr<CursorTracker> m_tracker;
    base::Guarded<CursorTracker*> m_tracking; ///< the tracker, while others than the worker use it
    std::unique_ptr<PointerSource> m_pointer;
    ExtraSources m_extras;
    std::unique_ptr<ScreenTrack> m_screen;
};

} // namespace vantro::capture
