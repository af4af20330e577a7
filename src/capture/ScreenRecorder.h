#pragma once

#include "base/SerialQueue.h"
#include "capture/CapturePlatform.h"
#include "capture/CursorTracker.h"
#include "capture/RecordingTarget.h"
#include "media/AssetWriter.h"
#include "model/RecordingMetadata.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

namespace vantro::capture {

/// Whether a recording still goes on. After anything but `recording` no frame follows and the owner
/// should stop it.
enum class RecordingCondition { recording, streamStopped, writerFailed };

struct RecordingStatistics {
    std::int64_t framesCaptured = 0; ///< handed to the encoder
    std::int64_t framesDropped = 0;  ///< left out because the encoder had not caught up
    RecordingCondition condition = RecordingCondition::recording;
    std::string streamError; ///< why the stream stopped, for the user; empty otherwise
};

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
class ScreenRecorder final : private ScreenStreamOutput {
  public:
    struct Configuration {
        std::filesystem::path outputURL; ///< the movie; its folder exists
        RecordingChoice choice;
        bool systemAudioEnabled = false;
        bool microphoneAudioEnabled = false;
        bool webcamEnabled = false;
    };

    /// `platform` outlives the recorder and is used by start alone.
    ScreenRecorder(Configuration configuration, CapturePlatform& platform);
    /// A recording that was not stopped is thrown away.
    ~ScreenRecorder() override;

    /// Throws VantroError, captureStartFailed or assetWriterFailed; nothing is left running and no
    /// file is left then.
    void start();
    /// Finishes the movie, whose last picture stays until now. Throws VantroError assetWriterFailed
    /// when the movie could not be written to its end; everything has stopped then too. Without any
    /// frame there is no movie, and the metadata is still returned.
    model::RecordingMetadata stop();

    /// Any thread, at any time.
    RecordingStatistics statistics();

  private:
    SampleDisposition screenSample(const ScreenSample& sample) override;
    void streamStopped(const std::string& error) override;

    void prepareStream(const RecordingTarget& target);
    void prepareWriter(const RecordingTarget& target);
    void startTracker(const RecordingTarget& target, std::shared_ptr<PointerSource> pointer);
    void startCapture();
    void abandon();
    SampleDisposition append(const media::VideoFrame& frame, bool isFirst);
    void finishWriter(bool hasFrames, base::HostTime stopTime);
    CursorJournal makeJournal() const;
    model::RecordingMetadata describeRecording() const;
    model::RecordingMetadata makeMetadata(CursorTracker* tracker) const;

    const Configuration m_configuration;
    CapturePlatform& m_platform;
    double m_displayScaleFactor = 2.0;
    std::unique_ptr<media::AssetWriter> m_assetWriter;
    std::unique_ptr<CursorTracker> m_cursorTracker;

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
