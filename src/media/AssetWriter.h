#pragma once

#include "base/OutputFile.h"
#include "media/values/AudioBuffer.h"
#include "media/values/MediaTime.h"
#include "media/values/VideoFrame.h"
#include "media/values/WriterSettings.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantro::media {

/// Encodes and writes one movie file: pictures, and any number of sound tracks.
///
/// Lifecycle: constructed → startWriting → startSession → append … → finish or cancel. Encoding
/// runs on threads of the writer's own, one a track, behind a queue of 8 frames (4 of what
/// is not live) or 64 pieces of sound. A write or encode that fails makes the writer failed:
/// appending then returns false and finish throws the reason. Each track is appended to by one
/// thread; the other calls come from any one thread while nobody appends.
///
/// An mpeg4 file appears under its name when finished, whole and synced; a quickTimeMovie grows
/// under its own name, because a recording under way must survive the program.
class AssetWriter {
  public:
    /// Throws MediaError when the file or the encoder cannot be opened.
    AssetWriter(std::filesystem::path output, FileType type, const VideoSettings& video,
                const std::vector<AudioSettings>& audio = {});
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
    /// No picture follows; the last one stays until `endTime` (in the time line of the presentation
    /// times) when given, and sound that is not live ends there too. Whoever appends pictures calls
    /// this as soon as there are no more, because that sound waits for them. Further calls change
    /// nothing.
    void markVideoAsFinished(std::optional<MediaTime> endTime = {});

    /// Why a live track has ended before the movie; nothing while it has not. Safe beside
    /// `appendAudio`.
    std::optional<std::string> audioFailure(std::size_t track) const;
    /// Queues sound for the `track`th of the audio settings, whose place follows from its
    /// presentation time: what lies before the session or overlaps is left out, gaps are silent.
    /// False when it was refused: outside of a session, real-time and not ready, or failed. A live
    /// track that cannot be encoded ends there, or never begins; the movie goes on without it.
    bool appendAudio(std::size_t track, AudioBuffer buffer);

    /// Marks the video as finished, writes what is queued and closes the file. False when it was
    /// cancelled before the file had appeared: then it is as after `cancel`. Throws MediaError.
    bool finish(std::optional<MediaTime> endTime = {}, const base::Finishing& finishing = {});
    /// Ends at once and removes the file.
    void cancel();

    /// Frames encoded so far.
    std::int64_t frameCount() const;
    /// What encoded the pictures, once finished: "libx264", "nvenc", or "nvenc, libx264" where the
    /// first failed on the way and the second went on.
    const std::string& encoderName() const;

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::media
