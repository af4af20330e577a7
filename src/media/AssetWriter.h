#pragma once

#include "media/MediaTime.h"
#include "media/VideoFrame.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

namespace vantro {

enum class FileType { quickTimeMovie, mpeg4 };

/// H.264 High, 8-bit 4:2:0, tagged BT.709 limited range. Sizes are even.
struct VideoSettings {
    int width = 0;
    int height = 0;
    std::int64_t averageBitRate = 20'000'000; ///< bit/s
    double expectedFrameRate = 60;
    /// Longest distance between keyframes, seconds: shorter seeks faster, longer packs better.
    double keyframeInterval = 2.0;
    /// A live source: the encoder favours speed and never holds frames back, and `append` refuses
    /// instead of waiting. Otherwise it favours quality and `append` waits for room.
    bool expectsRealTime = false;
};

/// Encodes and writes one movie file.
///
/// Lifecycle: constructed → startWriting → startSession → append … → finish or cancel. Encoding
/// runs on a thread of the writer's own behind a queue of 8 frames. A write or encode that fails
/// makes the writer failed: append then returns false and finish throws the reason. One thread
/// appends; the others calls come from any one thread.
///
/// An mpeg4 file appears under its name when finished, whole and synced; a quickTimeMovie grows
/// under its own name, because a recording under way must survive the program.
class AssetWriter {
  public:
    /// Throws MediaError when the file or the encoder cannot be opened.
    AssetWriter(std::filesystem::path output, FileType type, const VideoSettings& video);
    /// Cancels unless finished.
    ~AssetWriter();

    void startWriting();
    /// Frames are written relative to this presentation time, which becomes the movie's time zero.
    void startSession(MediaTime sourceTime);

    /// Whether `append` would take a frame without waiting.
    bool isReadyForMoreMediaData() const;
    /// Whether a write or an encode has failed, so that nothing can be appended any more; `finish`
    /// tells the reason.
    bool hasFailed() const;
    /// Queues a frame, either bgra or i420 of the writer's size; presentation times ascend. Same
    /// pixels as the frame before are encoded again without converting. False when the frame was
    /// refused: real-time and not ready, or failed.
    bool append(const VideoFrame& frame);

    /// Writes what is queued and closes the file. The last picture stays until `endTime` (in the
    /// time line of the presentation times) when given. Throws MediaError.
    void finish(std::optional<MediaTime> endTime = {});
    /// Ends at once and removes the file.
    void cancel();

    /// Frames encoded so far.
    std::int64_t frameCount() const;

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro
