#pragma once

#include "base/BoundedQueue.h"
#include "base/Guarded.h"
#include "media/av/encode/VideoEncoder.h"
#include "media/av/movie/MovieMuxer.h"
#include "media/values/VideoFrame.h"
#include "media/values/WriterSettings.h"
#include "media/writing/TrackPace.h"

#include <atomic>
#include <exception>
#include <optional>
#include <thread>

namespace vantro::media::writing {

/// The pictures' way into a movie: a queue, and a thread that converts, encodes and writes.
///
/// One thread appends; `start`, `finish` and `cancel` come from any one thread, in this order.
class VideoWriterInput {
  public:
    /// Adds its track to `muxer`, which outlives it as `pace` does, and tells `pace` how far it is.
    /// Throws MediaError.
    VideoWriterInput(const VideoSettings& settings, av::MovieMuxer& muxer, TrackPace& pace);
    ~VideoWriterInput();

    /// Begins to work; `sessionStart` becomes time zero.
    void start(MediaTime sessionStart);
    bool hasFailed() const { return m_failed; }
    bool isReady() const { return !m_failed && !m_queue.isFull(); }
    bool append(const VideoFrame& frame);
    /// Takes no more frames; the last picture stays until `endTime`. Later calls change nothing.
    void markAsFinished(std::optional<MediaTime> endTime);
    /// Seconds from the session's start to the newest frame that was taken; the appending thread's.
    double secondsAppended() const;
    /// Waits until everything is written. Throws what went wrong, however long ago.
    void finish();
    /// Makes the thread end soon, without a movie. Any thread.
    void abandon();
    /// Drops what waits and ends.
    void cancel();

    std::int64_t frameCount() const { return m_frameCount; }
    /// Once finished.
    const std::string& encoderName() const { return m_encoder.name(); }

  private:
    void run();
    void encode(const VideoFrame& frame);
    std::shared_ptr<const PixelBuffer> encodable(const std::shared_ptr<const PixelBuffer>& pixels);
    std::int64_t ticks(MediaTime presentationTime) const;
    std::int64_t nominalDuration(const VideoFrame& frame) const;
    void take(av::EncodedPacket& packet);
    void writeHeld(std::int64_t duration);
    void writeHeldInTime();
    void repeatLastPicture(std::int64_t wantedDuration);
    void finishTrack();

    const VideoSettings m_settings;
    av::MovieMuxer& m_muxer;
    TrackPace& m_pace;
    av::VideoEncoder m_encoder;
    int m_track;
    base::BoundedQueue<VideoFrame> m_queue;
    std::thread m_thread;
    MediaTime m_sessionStart;
    std::optional<MediaTime> m_lastAppended; ///< the appending thread only
    std::optional<MediaTime> m_endTime;      ///< set before the queue closes
    bool m_isMarkedFinished = false;
    std::atomic<bool> m_failed = false;
    std::atomic<bool> m_cancelled = false;
    std::atomic<std::int64_t> m_frameCount = 0;
    base::Guarded<std::exception_ptr> m_failure;

    // The encoding thread only.
    PixelBufferPool m_pictures;
    std::shared_ptr<const PixelBuffer> m_lastPixels;  ///< as appended
    std::shared_ptr<const PixelBuffer> m_lastPicture; ///< what became of them
    std::int64_t m_lastTicks = -1;
    std::int64_t m_lastDuration = 0;
    std::optional<std::int64_t> m_finalDuration; ///< the last picture's, once it was appended
    /// The newest packet waits for the next one, or the end: only then its duration is known. A
    /// live one does not wait for long.
    av::EncodedPacket m_held;
};

} // namespace vantro::media::writing
