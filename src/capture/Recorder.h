#pragma once

#include "capture/ChosenContent.h"
#include "capture/SoundSource.h"
#include "model/RecordingMetadata.h"
#include "model/VantroError.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace vantro::capture {

/// Whether a recording still goes on. After anything but `recording` no frame follows and the owner
/// should stop it.
/// `userStopped`: by the desktop's own means.
enum class RecordingCondition { recording, userStopped, streamStopped, writerFailed };

/// A sound under way.
struct SoundStatus {
    SoundKind kind = SoundKind::system;
    float level = 0;       ///< the latest peak; 1 is full scale
    bool isSilent = false; ///< for seconds
    bool operator==(const SoundStatus&) const = default;
};

/// How a recording goes.
struct RecordingStatistics {
    bool isRunning = false;          ///< from the start's success to the stop
    std::int64_t framesCaptured = 0; ///< handed to the encoder
    std::int64_t framesDropped = 0;  ///< left out because the encoder had not caught up
    std::int64_t pointerMoves = 0;   ///< and presses, while it runs
    // The camera's, likewise.
    std::int64_t webcamFramesCaptured = 0;
    std::int64_t webcamFramesDropped = 0;
    RecordingCondition condition = RecordingCondition::recording;
    std::string streamError; ///< why the stream stopped, for the user; empty otherwise
    /// Sources that were asked for and take no part, or no longer, each with the reason.
    std::vector<std::string> lostSources;
    std::vector<std::string> notes;  ///< on what is otherwise on this desktop, a sentence each
    std::vector<SoundStatus> sounds; ///< those that take part, the system's first

    bool isCapturing() const { return condition == RecordingCondition::recording; }
    bool operator==(const RecordingStatistics&) const = default;
};

/// One recording, as whoever asked for it sees it; used once: choose → start → stop. These, and
/// what lies between them, block, come from one worker thread and throw VantroError or another
/// std::exception.
class Recorder {
  public:
    virtual ~Recorder() = default;

    /// Finds what is to be recorded, which may mean that the desktop asks the user. False when the
    /// user or `cancelled` took it back. May be repeated before the start.
    virtual bool choose(std::stop_token cancelled) = 0;
    /// What the user has chosen in the desktop's own dialog, as it looks now; nothing where the
    /// desktop did not ask.
    virtual std::optional<ChosenContent> chosen() = 0;
    /// False when the user has ended the sharing of that, by the desktop's own means.
    virtual bool isShared() = 0;
    /// Restricts the recording to an area of that: points from its top left corner.
    virtual void crop(const model::Rect& area) = 0;
    /// Returns once our own windows, which have just been hidden, are no longer in the picture.
    virtual void awaitHiddenWindows() = 0;
    /// Returns once capture runs; false when the user has ended the sharing meanwhile, by the
    /// desktop's own means. The movie's folder exists.
    virtual bool start(const std::filesystem::path& movie) = 0;
    /// Finishes the files.
    virtual model::RecordingMetadata stop() = 0;

    // Any thread, at any time:

    virtual RecordingStatistics statistics() = 0;
    /// Zooms to where the pointer is now, as if it had clicked. Nothing where nothing is recorded.
    virtual void mark() = 0;
};

/// Whether a stop has failed because the user had ended the sharing before its first picture.
inline bool wasTakenBack(const model::VantroError& failure, Recorder& recorder) {
    return failure.kind() == model::VantroError::Kind::noRecordingData &&
           recorder.statistics().condition == RecordingCondition::userStopped;
}

} // namespace vantro::capture
