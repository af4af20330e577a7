#include "media/AudioTrackReader.h"

#include "media/values/AudioBuffer.h"

#include <algorithm>
#include <cmath>

namespace vantro::media {
namespace {

constexpr int channels = mixing::channelCount;
// Cuts click without; longer ones swallow what begins right behind a cut.
constexpr std::int64_t fadeLength = mixing::sampleRate * 3 / 1000;

// Lengths in whole samples leave this much doubt about a piece's speed.
constexpr double sameSpeed = 1e-3;

std::int64_t inSamples(MediaTime time) {
    return time.rescaled(mixing::sampleRate).value;
}

std::int64_t frames(std::span<const float> samples) {
    return static_cast<std::int64_t>(samples.size()) / channels;
}

std::span<float> part(std::span<float> samples, std::int64_t from, std::int64_t count) {
    return samples.subspan(static_cast<std::size_t>(from) * channels,
                           static_cast<std::size_t>(count) * channels);
}

} // namespace

std::vector<SoundPiece> soundPieces(const CompositionTrack& track) {
    std::vector<SoundPiece> pieces;
    for (const auto& segment : track.segments())
        pieces.push_back({inSamples(segment.source.start), inSamples(segment.source.end()),
                          inSamples(segment.target.start), inSamples(segment.target.end())});
    return pieces;
}

AudioTrackReader::AudioTrackReader(const MovieReference& movie, int trackID,
                                   const std::vector<SoundPiece>& pieces)
    : m_source(movie, trackID) {
    for (const auto& piece : pieces)
        append(piece);
}

/// The wave goes on unbroken where a piece at its own speed ends and the next begins at the same
/// place of the source.
void AudioTrackReader::append(const SoundPiece& piece) {
    const bool isFirst = m_stretches.empty();
    const bool goesOn = !isFirst && !m_stretches.back().isStretched() &&
                        m_stretches.back().sourceEnd == piece.sourceStart;
    if (goesOn)
        m_stretches.back().fadesOut = false;
    m_stretches.push_back({piece, isFirst ? piece.sourceStart > 0 : !goesOn, true});
}

/// Whether the piece, but for its end, is the one that sounds.
bool AudioTrackReader::isWithin(const SoundPiece& piece) const {
    if (m_current >= m_stretches.size())
        return false;
    const Stretch& sounding = m_stretches[m_current];
    return m_position > sounding.targetStart && m_position < piece.targetEnd &&
           piece.targetStart == sounding.targetStart && piece.sourceStart == sounding.sourceStart &&
           piece.isStretched() == sounding.isStretched() &&
           std::abs(piece.speed() - sounding.speed()) < sameSpeed * sounding.speed();
}

void AudioTrackReader::replan(const std::vector<SoundPiece>& pieces, std::int64_t position) {
    const auto next = std::ranges::find_if(
        pieces, [position](const SoundPiece& piece) { return piece.targetEnd > position; });
    const bool goesOn = next != pieces.end() && position == m_position && isWithin(*next);
    const bool fadesIn = goesOn && m_stretches[m_current].fadesIn;
    m_stretches.clear();
    m_current = 0;
    m_position = position;
    for (auto piece = next; piece != pieces.end(); ++piece)
        append(*piece);
    if (goesOn) {
        m_stretches.front().fadesIn = fadesIn;
    } else if (next != pieces.end() && next->targetStart < position) {
        Stretch& first = m_stretches.front();
        first.sourceStart +=
            std::llround(next->speed() * static_cast<double>(position - next->targetStart));
        first.targetStart = position;
        first.fadesIn = true;
    }
}

void AudioTrackReader::addTo(std::span<float> mix, float volume) {
    while (!mix.empty() && m_current < m_stretches.size()) {
        const Stretch& stretch = m_stretches[m_current];
        if (m_position >= stretch.targetEnd) {
            ++m_current;
            continue;
        }
        if (m_position == stretch.targetStart)
            begin(stretch);
        const auto count = std::min(frames(mix), stretch.targetEnd - m_position);
        m_scratch.resize(static_cast<std::size_t>(count) * channels);
        fill(stretch, m_scratch);
        fade(stretch, m_scratch);
        std::ranges::transform(m_scratch, mix.first(m_scratch.size()), mix.begin(),
                               [volume](float sample, float sum) { return sum + volume * sample; });
        m_position += count;
        mix = mix.subspan(m_scratch.size());
    }
}

void AudioTrackReader::begin(const Stretch& stretch) {
    m_stretcher.reset();
    if (stretch.isStretched())
        m_stretcher.emplace(stretch.sourceLength(), stretch.targetLength(),
                            [this](std::int64_t position, std::span<float> samples) {
                                readWithin(m_stretches[m_current], position, samples);
                            });
}

void AudioTrackReader::fill(const Stretch& stretch, std::span<float> samples) {
    if (m_stretcher)
        m_stretcher->read(samples);
    else
        m_source.read(stretch.sourceStart + m_position - stretch.targetStart, samples);
}

/// What was cut away stays unheard, also where the stretcher looks beyond the segment.
void AudioTrackReader::readWithin(const Stretch& stretch, std::int64_t position,
                                  std::span<float> samples) {
    std::ranges::fill(samples, 0.0F);
    const auto from = std::max<std::int64_t>(position, 0);
    const auto to = std::min(position + frames(samples), stretch.sourceLength());
    if (from >= to)
        return;
    m_source.read(stretch.sourceStart + from, part(samples, from - position, to - from));
    // Nor may the stretcher lay a sudden end into the middle of what it puts together.
    const auto length = std::min(fadeLength, stretch.sourceLength() / 2);
    for (auto i = std::max(from, stretch.sourceLength() - length); i < to; ++i) {
        for (auto& sample : part(samples, i - position, 1))
            sample *= static_cast<float>(stretch.sourceLength() - i) / static_cast<float>(length);
    }
}

void AudioTrackReader::fade(const Stretch& stretch, std::span<float> samples) const {
    const auto length = std::min(fadeLength, stretch.targetLength() / 2);
    for (std::int64_t i = 0; i < frames(samples); ++i) {
        const auto sinceStart = m_position + i - stretch.targetStart;
        const auto beforeEnd = stretch.targetEnd - 1 - (m_position + i);
        float weight = 1;
        if (stretch.fadesIn && sinceStart < length)
            weight = (static_cast<float>(sinceStart) + 0.5F) / static_cast<float>(length);
        if (stretch.fadesOut && beforeEnd < length)
            weight *= (static_cast<float>(beforeEnd) + 0.5F) / static_cast<float>(length);
        for (auto& sample : part(samples, i, 1))
            sample *= weight;
    }
}

} // namespace vantro::media
