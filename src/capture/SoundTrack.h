#pragma once

#include "capture/RecordingClock.h"
#include "capture/RecordingProgress.h"
#include "capture/RecordingSource.h"
#include "capture/SoundSource.h"
#include "media/AssetWriter.h"

#include <atomic>
#include <memory>

namespace vantro::capture {

/// A sound's way into the movie. What the encoder has no room for is left out, as is all that lies
/// outside of the movie. A source that ends by itself leaves the recording as it is.
class SoundTrack final : public RecordingSource, private SoundOutput {
  public:
    /// `index` is the writer's track. All but the source outlive this.
    SoundTrack(SoundKind kind, std::unique_ptr<SoundSource> source, media::AssetWriter& writer,
               std::size_t index, SharedRecordingClock& clock, RecordingProgress& progress);
    ~SoundTrack() override;

    void start() override;
    void stop() override;

    SoundKind kind() const { return m_kind; }
    /// Whether anything of it is in the movie.
    bool hasSound() const { return m_hasSound; }

  private:
    void sound(media::AudioBuffer buffer) override;
    void soundStopped(const std::string& error) override;

    const SoundKind m_kind;
    media::AssetWriter& m_writer;
    const std::size_t m_index;
    SharedRecordingClock& m_clock;
    RecordingProgress& m_progress;
    std::atomic<bool> m_hasSound = false;
    std::unique_ptr<SoundSource> m_source; // destroyed first: its thread calls the rest
};

/// As the log and the user call it.
const char* nameOf(SoundKind kind);

} // namespace vantro::capture
