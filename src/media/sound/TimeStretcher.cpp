#include "media/sound/TimeStretcher.h"

#include "media/values/AudioBuffer.h"
#include "media/values/Fraction.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace vantro::media::sound {
namespace {

constexpr int channels = mixing::channelCount;
// Longer blocks smear what begins suddenly, shorter ones roughen deep voices.
constexpr int blockLength = mixing::sampleRate / 100;
// Half a wave of 70 Hz: less breaks the waves of voices, more moves sounds audibly in time.
constexpr int searchReach = mixing::sampleRate * 7 / 1000;
constexpr int nearbyLength = blockLength + 2 * searchReach;
// How long the sound before an onset gives way to what begins; it is over when that begins.
constexpr int lead = mixing::sampleRate * 2 / 1000;
// A piece and its tail must fit in front of an onset.
constexpr std::int64_t onsetDistance = 2 * blockLength + lead;
// The search looks at every fourth place first, then around the best.
constexpr int coarseStep = 4;

using Mono = std::array<float, nearbyLength>;

template <std::size_t length>
void mixToMono(std::span<const float> stereo, std::array<float, length>& mono) {
    for (std::size_t i = 0; i * channels < stereo.size(); ++i)
        mono[i] = stereo[i * channels] + stereo[i * channels + 1];
}

/// How alike the two waves are, from −1 to 1; 0 where either is silent. Every `step`th sample.
double similarity(const float* a, const float* b, int step) {
    double product = 0;
    double energyA = 0;
    double energyB = 0;
    for (int i = 0; i < blockLength; i += step) {
        product += static_cast<double>(a[i]) * b[i];
        energyA += static_cast<double>(a[i]) * a[i];
        energyB += static_cast<double>(b[i]) * b[i];
    }
    constexpr double silence = 1e-12;
    return energyA < silence || energyB < silence ? 0 : product / std::sqrt(energyA * energyB);
}

/// Raised-cosine weights of a piece that fades in over one block; the rest to 1 fades out.
const std::array<float, blockLength>& risingWeights() {
    static const auto weights = [] {
        std::array<float, blockLength> values{};
        for (int i = 0; i < blockLength; ++i)
            values[static_cast<std::size_t>(i)] = static_cast<float>(
                0.5 - 0.5 * std::cos(std::numbers::pi * (i + 0.5) / blockLength));
        return values;
    }();
    return weights;
}

} // namespace

TimeStretcher::TimeStretcher(std::int64_t sourceLength, std::int64_t targetLength,
                             SampleReader source)
    : m_sourceLength(sourceLength)
    , m_targetLength(std::max<std::int64_t>(targetLength, 1))
    , m_source(std::move(source))
    , m_onsets(m_source)
    , m_tailSound(std::size_t{blockLength} * channels)
    , m_nearby(std::size_t{nearbyLength} * channels)
    , m_block(std::size_t{blockLength} * channels) {}

void TimeStretcher::read(std::span<float> samples) {
    while (!samples.empty()) {
        if (m_taken == m_available)
            makeBlock();
        const auto count = std::min(samples.size(), m_available - m_taken);
        std::copy_n(m_block.begin() + static_cast<std::ptrdiff_t>(m_taken), count, samples.begin());
        m_taken += count;
        samples = samples.subspan(count);
    }
}

std::int64_t TimeStretcher::sourceAt(std::int64_t target) const {
    return static_cast<std::int64_t>(
        (Fraction(WideInteger{target}, 1) * Fraction(m_sourceLength, m_targetLength)).rounded());
}

std::int64_t TimeStretcher::targetAt(std::int64_t source) const {
    return static_cast<std::int64_t>(
        (Fraction(WideInteger{source}, 1) * Fraction(m_targetLength, m_sourceLength)).rounded());
}

/// The onset that pieces around `ideal` may reach.
std::optional<std::int64_t> TimeStretcher::nextOnset(std::int64_t ideal) {
    return m_onsets.firstBetween(m_earliest + onsetDistance, ideal + searchReach + onsetDistance);
}

/// Fades from the piece that sounds to the one that the end of this block asks for.
void TimeStretcher::makeBlock() {
    const std::int64_t ideal = sourceAt(m_position + blockLength) - blockLength;
    const auto onset = nextOnset(ideal);
    const std::int64_t latest = onset ? *onset - onsetDistance : ideal + searchReach;
    m_source(m_tail, m_tailSound);
    const bool goesOnByItself = ideal == m_tail && m_tail <= latest;
    continueFrom(goesOnByItself ? m_tail : bestStart(ideal, latest));
    m_taken = 0;
    m_available = m_block.size();
    if (onset && targetAt(*onset) <= m_position + blockLength)
        beginAt(*onset, targetAt(*onset));
    else
        m_position += blockLength;
}

void TimeStretcher::continueFrom(std::int64_t head) {
    const float* rising =
        head == m_tail ? m_tailSound.data() : m_nearby.data() + (head - m_nearbyStart) * channels;
    const auto& weights = risingWeights();
    for (std::size_t i = 0; i < m_block.size(); ++i) {
        const float weight = weights[i / channels];
        m_block[i] = m_tailSound[i] * (1 - weight) + rising[i] * weight;
    }
    m_tail = head + blockLength;
}

/// Cuts the block off where the onset is to be heard and fades into what leads to it.
void TimeStretcher::beginAt(std::int64_t onset, std::int64_t target) {
    const auto length = std::max<std::int64_t>(target - m_position, 0);
    const auto fade = std::min<std::int64_t>(lead, length);
    m_available = static_cast<std::size_t>(length * channels);
    std::array<float, std::size_t{lead} * channels> leading{};
    const auto sound = std::span(leading).first(static_cast<std::size_t>(fade * channels));
    m_source(onset - fade, sound);
    auto* faded = m_block.data() + (length - fade) * channels;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const auto frame = i / channels;
        const float weight = (static_cast<float>(frame) + 0.5F) / static_cast<float>(fade);
        faded[i] += (sound[i] - faded[i]) * weight;
    }
    m_position += length;
    m_earliest = onset;
    m_tail = onset;
}

/// Where near `ideal` the wave is most like the one that sounds, neither before the last onset nor
/// behind `latest`.
std::int64_t TimeStretcher::bestStart(std::int64_t ideal, std::int64_t latest) {
    const auto center = std::max(std::min(ideal, latest), m_earliest);
    m_nearbyStart = center - searchReach;
    m_source(m_nearbyStart, m_nearby);
    std::array<float, blockLength> sounding{};
    Mono nearby{};
    mixToMono<blockLength>(m_tailSound, sounding);
    mixToMono<nearbyLength>(m_nearby, nearby);
    const auto first = static_cast<int>(std::max<std::int64_t>(m_earliest - m_nearbyStart, 0));
    const auto last = static_cast<int>(std::clamp<std::int64_t>(latest - m_nearbyStart, searchReach,
                                                                std::int64_t{2} * searchReach));
    int best = searchReach;
    const auto search = [&](int from, int to, int step, int grain) {
        double bestSimilarity = similarity(sounding.data(), nearby.data() + best, grain);
        for (int offset = from; offset <= to; offset += step) {
            const double found = similarity(sounding.data(), nearby.data() + offset, grain);
            if (found > bestSimilarity + 1e-6) {
                best = offset;
                bestSimilarity = found;
            }
        }
    };
    search(first, last, coarseStep, coarseStep);
    search(std::max(first, best - coarseStep + 1), std::min(last, best + coarseStep - 1), 1, 1);
    return m_nearbyStart + best;
}

} // namespace vantro::media::sound
