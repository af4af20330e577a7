#pragma once

#include "media/strips/Strip.h"

namespace vantro::media::strips {

/// How a movie's sound is divided. A bucket is a hundredth of a second; in movies with too many of
/// them it is doubled until there are no more than `mostBuckets`.
struct BucketPlan {
    static constexpr int shortestFrames = 480; ///< samples at 48 kHz
    static constexpr std::int64_t mostBuckets = 1 << 22;

    std::int64_t bucketFrames = shortestFrames;
    std::int64_t buckets = 0;

    static BucketPlan of(double seconds);
    double bucketSeconds() const;
};

/// The peaks of a movie's sound, with sums over 16, 256 and so on buckets, so that a long stretch
/// is answered as fast as a short one. One thread.
class Waveform {
  public:
    /// Of two bytes a bucket, and a fifteenth more for the sums.
    static constexpr std::size_t mostBytes = BucketPlan::mostBuckets * 2 * 16 / 15 + 4096;

    Waveform() = default;
    explicit Waveform(double seconds);

    /// Buckets behind the end are left out.
    void add(const PeakPiece& piece);
    /// Over the buckets that begin between two times, and at least the one at `from`; unknown
    /// where nothing has been added yet.
    Peak over(double from, double to) const;
    std::size_t bytes() const;

  private:
    BucketPlan m_plan;
    std::vector<std::vector<Peak>> m_levels; ///< each sums up 16 of the one before
};

static_assert(Waveform::mostBytes < mostBytes);

} // namespace vantro::media::strips
