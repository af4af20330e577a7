#pragma once

#include "media/Asset.h"
#include "media/sound/AudioSource.h"
#include "media/strips/Waveform.h"

#include <optional>
#include <stop_token>
#include <vector>

namespace vantro::media::strips {

/// Reads the peaks of a movie's sound, all its tracks mixed, piece by piece. A piece that cannot be
/// read is silent. One thread.
class PeakReader {
  public:
    static constexpr std::int64_t bucketsOfPiece = 1000; ///< ten seconds, of most movies

    explicit PeakReader(const Asset& asset);

    /// Reads the file now, and not with the first piece.
    void prepare();
    bool isDone() const { return m_left == 0; }
    /// The first piece from a time on, seconds, that was not read yet, and then the last before.
    /// Nothing once all were read, or `stop` says so.
    std::optional<PeakPiece> next(double from, const std::stop_token& stop);

  private:
    std::int64_t choose(double from) const;
    void open();
    Peak readBucket(std::int64_t position);

    Asset m_asset;
    BucketPlan m_plan;
    std::vector<bool> m_read; ///< of each piece
    std::size_t m_left = 0;
    std::vector<sound::AudioSource> m_sources; ///< opened at the first piece
    std::vector<float> m_mix;
    std::vector<float> m_track;
};

} // namespace vantro::media::strips
