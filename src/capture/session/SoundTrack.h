#pragma once

#include "capture/SoundLevel.h"
#include "capture/SoundSource.h"
#include "capture/session/RecordingClock.h"
#include "capture/session/RecordingProgress.h"
#include "capture/session/RecordingSource.h"
#include "media/AssetWriter.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace vantro::capture {

/// A sound's way into the movie: exactly what lies between the movie's first picture and its stop,
/// without the pauses, at whose edges it fades over a few milliseconds. A sound that begins late or
/// stays away is silence. What the encoder has no room for is left out; one that fails ends its
/// track, and the recording stays as it is.
class SoundTrack final : public RecordingSource, private SoundOutput {
  public:
    /// `index` is the writer's track. `onSound` is called when the first sound gets into the movie.
    /// All but the source outlive this.
    SoundTrack(SoundKind kind, std::unique_ptr<SoundSource> source, media::AssetWriter& writer,
               std::size_t index, SharedRecordingClock& clock, RecordingProgress& progress,
               std::function<void()> onSound);
    ~SoundTrack() override;

    void start() override;
    /// When the clock has been stopped: waits for a moment until all sound up to then has come, and
    /// makes the track as long as the movie.
    void stop() override;

    SoundKind kind() const { return m_kind; }
    /// Whether anything of it is in the movie.
    bool hasSound() const { return m_hasSound; }

  private:
    void sound(media::AudioBuffer buffer) override;
    void soundMissing(const std::string& reason) override;
    void soundReturned() override;
    void place(const media::AudioBuffer& buffer);
    void append(media::AudioBuffer buffer);
    void awaitSoundUpTo(base::HostTime time);
    void fillUp();

    const SoundKind m_kind;
    media::AssetWriter& m_writer;
    const std::size_t m_index;
    SharedRecordingClock& m_clock;
    RecordingProgress& m_progress;
    const std::function<void()> m_onSound;
    std::atomic<bool> m_hasSound = false;
    SoundLevel m_level;         // the source's thread
    bool m_hasFailed = false;   // likewise
    base::HostDuration m_end{}; // of the track so far; likewise
    /// What will be heard only after now: the stop or a pause may come before. Likewise.
    std::deque<media::AudioBuffer> m_early;
    std::mutex m_mutex;
    std::condition_variable m_arrived;
    base::HostTime m_soundUpTo;            // guarded by m_mutex
    bool m_isMissing = false;              // guarded by m_mutex
    std::unique_ptr<SoundSource> m_source; // destroyed first: its thread calls the rest
};

/// As the log and the user call it.
const char* nameOf(SoundKind kind);

} // namespace vantro::capture
