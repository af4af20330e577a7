#pragma once

#include "base/BoundedQueue.h"
#include "base/Guarded.h"
#include "media/av/encode/AudioEncoder.h"
#include "media/av/movie/MovieMuxer.h"
#include "media/values/AudioBuffer.h"
#include "media/values/WriterSettings.h"
#include "media/writing/TrackPace.h"

#include <atomic>
#include <exception>
#include <optional>
#include <string>
#include <thread>

namespace vantro::media::writing {

/// The sound's way into a movie: a queue, and a thread that places, encodes and writes.
///
/// Times that leave a gap are filled with silence, also at the beginning; what overlaps is dropped.
/// Sound that is not live follows the pictures, so that both lie side by side in the file and
/// neither waits in memory. One thread appends; the other calls come from any one thread.
class AudioWriterInput {
  public:
    /// Adds its track to `muxer`, which outlives it as `pictures` does. Throws MediaError, unless
    /// it is live: then it has failed.
    AudioWriterInput(const AudioSettings& settings, av::MovieMuxer& muxer, TrackPace& pictures);
    ~AudioWriterInput();

    /// Begins to work; `sessionStart` becomes time zero.
    void start(MediaTime sessionStart);
    /// What is live cannot be had again: its movie goes on without this track.
    bool failsTheMovie() const { return m_failed && !m_settings.expectsRealTime; }
    /// What went wrong, once something has. Any thread.
    std::optional<std::string> failure() const;
    bool append(AudioBuffer buffer);
    /// Waits until everything is written. Throws what went wrong, however long ago, if that fails
    /// the movie.
    void finish();
    /// Makes the thread end soon; the pace of the pictures has been released. Any thread.
    void abandon();
    /// Drops what waits and ends; the pace of the pictures has been released.
    void cancel();

  private:
    void run();
    void fail();
    void write(const AudioBuffer& buffer);
    void writeSilence(std::int64_t length);
    void encode(std::span<const float> samples);
    void finishTrack();

    const AudioSettings m_settings;
    av::MovieMuxer& m_muxer;
    TrackPace& m_pictures;
    std::optional<av::AudioEncoder> m_encoder; ///< unless it cannot be had
    int m_track = -1;
    base::BoundedQueue<AudioBuffer> m_queue;
    std::thread m_thread;
    MediaTime m_sessionStart;
    std::int64_t m_position = 0; ///< of the next sample; the writing thread only
    std::atomic<bool> m_failed = false;
    std::atomic<bool> m_cancelled = false;
    base::Guarded<std::exception_ptr> m_failure;
};

} // namespace vantro::media::writing
