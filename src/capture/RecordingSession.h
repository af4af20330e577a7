#pragma once

#include "base/SerialQueue.h"
#include "capture/CapturePlatform.h"
#include "capture/CursorTracker.h"
#include "capture/Recorder.h"
#include "media/AssetWriter.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

namespace vantro::capture {

/// Records the screen into one movie, with the pointer's path and clicks beside it.
///
/// Lifecycle: constructed → start → stop, once. Both block for as long as the work takes and are
/// called on one thread, which is not the window's. The stream's thread appends frames; the fields
/// whose names begin with an underscore are reached only on the serial queue
/// "com.vantro.recorder.state". A frame that finds the encoder busy is dropped and counted.
///
/// Until the recording is stopped, journals beside the movie hold what is needed to recover it
/// should the program be killed. The movie's goes when it is whole; the pointer's stays until
/// whoever stopped the recording has kept its metadata.
///
/// The movie's time zero is its first frame, the pointer's is the tracker's construction just
/// before: everything slow is opened before both, so that they lie within one frame.
class RecordingSession final : public Recorder, private ScreenStreamOutput {
  public:
    /// Connects to the desktop, on the thread that chooses and starts. Throws VantroError.
    using Connect = std::function<std::unique_ptr<CapturePlatform>()>;

    RecordingSession(RecordingRequest request, Connect connect);
    /// A recording that was not stopped is thrown away.
    ~RecordingSession() override;

    bool choose(std::stop_token cancelled) override;
    /// Throws VantroError, captureStartFailed or assetWriterFailed; nothing is left running and no
    /// file is left then.
    void start(const std::filesystem::path& movie) override;
    /// Finishes the movie, whose last picture stays until now. Throws VantroError assetWriterFailed
    /// when the movie could not be written to its end, and noRecordingData when no frame has come;
    /// everything has stopped then too.
    model::RecordingMetadata stop() override;
    RecordingStatistics statistics() override;

  private:
    SampleDisposition screenSample(const ScreenSample& sample) override;
    void streamStopped(const std::string& error) override;

    void prepareStream();
    void prepareWriter();
    void startTracker(std::shared_ptr<PointerSource> pointer);
    void startCapture();
    void abandon();
    SampleDisposition append(const media::VideoFrame& frame, bool isFirst);
    void finishWriter(bool hasFrames, base::HostTime stopTime);
    CursorJournal makeJournal() const;
    model::RecordingMetadata describeRecording() const;
    model::RecordingMetadata makeMetadata(CursorTracker* tracker) const;

    const RecordingRequest m_request;
    const Connect m_connect;
    std::unique_ptr<CapturePlatform> m_platform; // once chosen
    RecordingTarget m_target;                    // likewise
    std::filesystem::path m_movie;
    std::unique_ptr<media::AssetWriter> m_assetWriter;
    std::unique_ptr<CursorTracker> m_cursorTracker;

    std::atomic<bool> m_isRunning = false;
    bool _isWriting = false;
    std::optional<media::MediaTime> _firstSampleTime;
    std::int64_t _frameCount = 0;
    std::int64_t _droppedCount = 0;
    RecordingCondition _condition = RecordingCondition::recording;
    std::string _streamError;

    base::SerialQueue m_stateQueue{"com.vantro.recorder.state"};
    std::unique_ptr<ScreenStream> m_stream; // destroyed first: its thread calls the rest
};

} // namespace vantro::capture
