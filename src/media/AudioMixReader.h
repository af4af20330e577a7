#pragma once

#include "media/Composition.h"
#include "media/values/AudioBuffer.h"
#include "media/values/TrackMix.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace vantro::media {

/// Reads a composition's sound: all its audio tracks mixed to 48 kHz stereo, in order.
///
/// Segments at another speed keep their pitch, every segment lasts exactly its length in samples,
/// cuts fade over a few milliseconds, gaps are silent. Too loud a sum is limited to full scale.
/// One thread reads; `cancel` may come from any.
class AudioMixReader {
  public:
    /// Opens the movie once for each audio track. `mix` is that of the first ones; others are as
    /// they were recorded. Throws MediaError.
    explicit AudioMixReader(const Composition& composition, const std::vector<TrackMix>& mix = {});
    ~AudioMixReader();

    /// Samples of the whole composition.
    std::int64_t frameCount() const;
    /// The next tenth of a second or what is left; nothing after the end or after `cancel`. Throws
    /// MediaError where the movie breaks off.
    std::optional<AudioBuffer> copyNextBuffer();
    void cancel();

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::media
