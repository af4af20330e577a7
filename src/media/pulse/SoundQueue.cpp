#include "media/pulse/SoundQueue.h"

#include "media/values/AudioBuffer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vantro::media::pulse {
namespace {

constexpr int channels = mixing::channelCount;
constexpr std::int64_t blockLength = mixing::sampleRate / 100;
// Bridges what delays decoding on a busy machine. More is decoded in vain at each seek.
constexpr std::int64_t decodedAhead = mixing::sampleRate / 5;
// A device that was away goes on where playing is by now; less is the ordinary delay of a start.
constexpr std::int64_t tooLate = mixing::sampleRate / 4;
constexpr std::int64_t remembered = mixing::sampleRate;

std::size_t samples(std::int64_t frames) {
    return static_cast<std::size_t>(frames * channels);
}

} // namespace

SoundQueue::SoundQueue(std::size_t trackCount, MediaTime duration)
    : m_duration(duration), m_mixer(trackCount) {}

void SoundQueue::play(MediaTime from, double rate, std::optional<player::PlannedJump> jump,
                      base::HostTime now) {
    const std::lock_guard lock(m_mutex);
    cutOff();
    ++m_run;
    m_sharedEnd = 0;
    m_decoded = 0;
    m_isPlaying = true;
    m_anchor = {now, 0};
    noteNewLine(PlayLine(from, rate, jump, m_duration));
}

void SoundQueue::noteNewLine(PlayLine line) {
    m_line = std::make_shared<const PlayLine>(std::move(line));
    ++m_plan;
    m_roomOrTask.notify_all();
}

void SoundQueue::planJump(std::optional<player::PlannedJump> jump, base::HostTime now) {
    const std::lock_guard lock(m_mutex);
    if (!m_isPlaying)
        return;
    const auto heard = std::min<std::int64_t>(std::llround(expected(now)), next());
    const auto line = m_line->withJump(jump, heard);
    m_sharedEnd = m_line->commonEnd(line);
    if (m_sharedEnd <= next())
        skipTo(next());
    else if (m_sharedEnd < m_decoded)
        cutFrom(m_sharedEnd);
    noteNewLine(line);
}

void SoundQueue::pause() {
    const std::lock_guard lock(m_mutex);
    if (!m_isPlaying)
        return;
    cutOff();
    m_isPlaying = false;
}

void SoundQueue::setMix(const std::vector<TrackMix>& mix) {
    const std::lock_guard lock(m_mutex);
    m_mixer.setMix(mix);
    m_mix = mix;
}

void SoundQueue::setMuted(bool muted) {
    const std::lock_guard lock(m_mutex);
    m_mixer.setMuted(muted);
}

/// Nothing of what is decoded will be heard; what sounds fades.
void SoundQueue::cutOff() {
    if (!m_hasRunDry && m_blocks.empty()) {
        const auto fading = m_mixer.lastDyingAway();
        m_tail.assign(fading.begin(), fading.end());
    } else if (!m_hasRunDry) {
        const auto available = std::min(m_decoded - next(), SoundMixer::fadeLength);
        m_tail.assign(samples(available), 0);
        mixInto(m_written, m_tail);
        for (std::size_t i = 0; i < m_tail.size(); ++i) {
            const auto frame = i / channels;
            m_tail[i] *= 1 - (static_cast<float>(frame) + 1) / static_cast<float>(available);
        }
    }
    m_mixer.riseFromSilence();
    m_hasRunDry = true;
    m_blocks.clear();
    m_taken = 0;
}

/// Takes back what is decoded from there on; what stays fades out at its end.
void SoundQueue::cutFrom(std::int64_t heard) {
    while (m_blocks.back().start >= heard)
        m_blocks.pop_back();
    SoundBlock& last = m_blocks.back();
    last.frames = heard - last.start;
    for (auto& track : last.tracks) {
        track.resize(samples(last.frames));
        const auto fade = std::min(last.frames, SoundMixer::fadeLength);
        for (std::int64_t left = 0; left < fade; ++left)
            for (int channel = 0; channel < channels; ++channel)
                track[samples(last.frames - 1 - left) + static_cast<std::size_t>(channel)] *=
                    static_cast<float>(left) / static_cast<float>(fade);
    }
    m_decoded = heard;
}

void SoundQueue::skipTo(std::int64_t heard) {
    cutOff();
    m_decoded = heard;
}

double SoundQueue::expected(base::HostTime now) const {
    return m_anchor.heard + base::inSeconds(now - m_anchor.at) * mixing::sampleRate;
}

std::int64_t SoundQueue::next() const {
    return m_blocks.empty() ? m_decoded : m_blocks.front().start + m_taken;
}

std::optional<SoundQueue::Task> SoundQueue::nextTask(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    const bool isWanted = m_roomOrTask.wait(lock, stop, [this] {
        return m_isPlaying && m_decoded < m_line->end() && m_decoded - next() < decodedAhead;
    });
    if (!isWanted || stop.stop_requested())
        return {};
    const auto end = m_line->pieceAt(m_decoded).end;
    return Task{m_plan, m_run, m_line, m_decoded, std::min(blockLength, end - m_decoded), m_mix};
}

void SoundQueue::push(SoundBlock block, const Task& task) {
    const std::lock_guard lock(m_mutex);
    const bool isSame = task.plan == m_plan || (task.plan + 1 == m_plan && task.run == m_run &&
                                                block.end() <= m_sharedEnd);
    if (!isSame || block.start != m_decoded || !m_isPlaying)
        return;
    m_decoded = block.end();
    m_blocks.push_back(std::move(block));
}

bool SoundQueue::wantsDevice(base::HostTime now) {
    const std::lock_guard lock(m_mutex);
    if (m_isPlaying || !m_tail.empty())
        return true;
    const auto heard = m_clock.position(now);
    return heard && !m_pieces.empty() &&
           *heard < static_cast<double>(m_pieces.back().position + m_pieces.back().frames +
                                        SoundMixer::fadeLength);
}

void SoundQueue::fill(std::int64_t position, std::span<float> output, base::HostTime now) {
    {
        const std::lock_guard lock(m_mutex);
        std::ranges::fill(output, 0.0F);
        catchUp(now);
        m_written = position;
        const auto filled = m_isPlaying ? mixInto(position, output) : 0;
        if (m_isPlaying && samples(filled) < output.size() && !m_hasRunDry) {
            // Either the item ends here, or decoding is late.
            const auto fading = m_mixer.lastDyingAway();
            const auto left = output.subspan(samples(filled));
            std::copy_n(fading.begin(), std::min(fading.size(), left.size()), left.begin());
            m_mixer.riseFromSilence();
            m_hasRunDry = true;
        }
        const auto tail = std::min(m_tail.size(), output.size());
        for (std::size_t i = 0; i < tail; ++i)
            output[i] = std::clamp(output[i] + m_tail[i], -1.0F, 1.0F);
        m_tail.erase(m_tail.begin(), m_tail.begin() + static_cast<std::ptrdiff_t>(tail));
        m_written = position + static_cast<std::int64_t>(output.size()) / channels;
    }
    m_roomOrTask.notify_all();
}

/// After an absence of the device goes on where playing is by now.
void SoundQueue::catchUp(base::HostTime now) {
    if (!m_isPlaying)
        return;
    const auto due = std::llround(expected(now));
    if (due - next() > tooLate)
        skipTo(std::min<std::int64_t>(due, m_line->end()));
}

/// Mixes as much as is decoded, and says how much that was.
std::int64_t SoundQueue::mixInto(std::int64_t position, std::span<float> output) {
    std::int64_t filled = 0;
    while (!m_blocks.empty() && samples(filled) < output.size()) {
        const SoundBlock& block = m_blocks.front();
        const auto count = std::min(block.frames - m_taken,
                                    static_cast<std::int64_t>(output.size()) / channels - filled);
        m_mixer.mix(block, m_taken, output.subspan(samples(filled), samples(count)));
        note(position + filled, count, block.start + m_taken);
        m_hasRunDry = false;
        filled += count;
        m_taken += count;
        if (m_taken == block.frames) {
            m_blocks.pop_front();
            m_taken = 0;
        }
    }
    return filled;
}

void SoundQueue::note(std::int64_t position, std::int64_t frames, std::int64_t start) {
    const Piece piece{m_run, position, frames, start, m_line->pieceAt(start)};
    if (!m_pieces.empty()) {
        Piece& last = m_pieces.back();
        const bool goesOn = last.run == m_run && last.position + last.frames == position &&
                            last.start + last.frames == start &&
                            last.line.start == piece.line.start;
        if (goesOn) {
            last.frames += frames;
            return;
        }
    }
    m_pieces.push_back(piece);
    while (m_pieces.size() > 1 && m_pieces[1].position < position - remembered)
        m_pieces.pop_front();
}

void SoundQueue::heard(base::HostTime at, double position) {
    const std::lock_guard lock(m_mutex);
    m_clock.observe(at, position);
    const auto smooth = m_clock.position(at);
    if (!smooth)
        return;
    const Piece* piece = pieceAt(*smooth);
    if (piece && piece->run == m_run &&
        *smooth < static_cast<double>(piece->position + piece->frames))
        m_anchor = {at, static_cast<double>(piece->start - piece->position) + *smooth};
}

/// The latest piece that has begun.
const SoundQueue::Piece* SoundQueue::pieceAt(double position) const {
    const auto found = std::find_if(m_pieces.rbegin(), m_pieces.rend(), [=](const Piece& piece) {
        return static_cast<double>(piece.position) <= position;
    });
    return found == m_pieces.rend() ? nullptr : &*found;
}

std::optional<player::SoundReading> SoundQueue::reading(base::HostTime now) {
    const std::lock_guard lock(m_mutex);
    const auto heard = m_isPlaying ? m_clock.position(now) : std::nullopt;
    if (!heard)
        return {};
    const Piece* piece = pieceAt(*heard);
    if (!piece || piece->run != m_run)
        return {};
    const double since = *heard - static_cast<double>(piece->position);
    const double within = std::min(since, static_cast<double>(piece->frames));
    const double item = piece->line.itemAt(static_cast<double>(piece->start) + within);
    const auto ago = std::chrono::duration_cast<base::HostDuration>(
        std::chrono::duration<double>((since - within) / mixing::sampleRate));
    return player::SoundReading{{std::llround(item), mixing::sampleRate}, now - ago};
}

void SoundQueue::deviceStops() {
    const std::lock_guard lock(m_mutex);
    m_clock.reset();
}

void SoundQueue::deviceLost() {
    const std::lock_guard lock(m_mutex);
    m_clock.reset();
    m_pieces.clear();
    m_tail.clear();
    m_hasRunDry = true;
    m_written = 0;
}

} // namespace vantro::media::pulse
