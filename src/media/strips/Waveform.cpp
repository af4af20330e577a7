#include "media/strips/Waveform.h"

#include "media/values/AudioBuffer.h"

#include <cmath>

namespace vantro::media::strips {
namespace {

constexpr std::int64_t summed = 16;

} // namespace

BucketPlan BucketPlan::of(double seconds) {
    const auto frames = static_cast<std::int64_t>(std::ceil(seconds * mixing::sampleRate));
    BucketPlan plan;
    const auto count = [&] { return (frames + plan.bucketFrames - 1) / plan.bucketFrames; };
    while (count() > mostBuckets)
        plan.bucketFrames *= 2;
    plan.buckets = count();
    return plan;
}

double BucketPlan::bucketSeconds() const {
    return static_cast<double>(bucketFrames) / mixing::sampleRate;
}

Waveform::Waveform(double seconds) : m_plan(BucketPlan::of(seconds)) {
    for (auto count = m_plan.buckets; count > 0;
         count = count > 1 ? (count + summed - 1) / summed : 0)
        m_levels.emplace_back(static_cast<std::size_t>(count));
}

void Waveform::add(const PeakPiece& piece) {
    auto first = piece.firstBucket;
    auto end = std::min(first + static_cast<std::int64_t>(piece.peaks.size()), m_plan.buckets);
    if (first >= end)
        return;
    std::copy_n(piece.peaks.begin(), end - first, m_levels[0].begin() + first);
    for (std::size_t level = 1; level < m_levels.size(); ++level) {
        const auto& below = m_levels[level - 1];
        const auto size = static_cast<std::int64_t>(below.size());
        first /= summed;
        end = (end + summed - 1) / summed;
        for (auto i = first; i < end; ++i) {
            Peak sum;
            for (auto j = i * summed; j < std::min((i + 1) * summed, size); ++j)
                sum.include(below[static_cast<std::size_t>(j)]);
            m_levels[level][static_cast<std::size_t>(i)] = sum;
        }
    }
}

Peak Waveform::over(double from, double to) const {
    Peak peak;
    const auto bucketAt = [this](double seconds) {
        const double bucket = std::floor(seconds / m_plan.bucketSeconds() + 1e-6);
        return static_cast<std::int64_t>(
            std::clamp(bucket, 0.0, static_cast<double>(m_plan.buckets)));
    };
    auto first = bucketAt(from);
    auto end = std::min(std::max(bucketAt(to), first + 1), m_plan.buckets);
    for (std::size_t level = 0; level < m_levels.size() && first < end; ++level) {
        const auto& peaks = m_levels[level];
        const bool isLast = level + 1 == m_levels.size();
        while (first < end && (isLast || first % summed != 0))
            peak.include(peaks[static_cast<std::size_t>(first++)]);
        while (first < end && end % summed != 0)
            peak.include(peaks[static_cast<std::size_t>(--end)]);
        first /= summed;
        end /= summed;
    }
    return peak;
}

std::size_t Waveform::bytes() const {
    std::size_t result = 0;
    for (const auto& level : m_levels)
        result += level.capacity() * sizeof(Peak);
    return result;
}

} // namespace vantro::media::strips
