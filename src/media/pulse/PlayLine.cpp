#include "media/pulse/PlayLine.h"

#include "media/values/AudioBuffer.h"

#include <algorithm>
#include <cmath>

namespace vantro::media::pulse {
namespace {

std::int64_t inSamples(MediaTime time) {
    return time.rescaled(mixing::sampleRate).value;
}

std::int64_t heardLength(std::int64_t itemLength, double rate) {
    return std::llround(static_cast<double>(std::max<std::int64_t>(itemLength, 0)) / rate);
}

} // namespace

PlayLine::PlayLine(MediaTime from, double rate, std::optional<player::PlannedJump> jump,
                   MediaTime duration)
    : m_duration(inSamples(duration)) {
    const auto start = inSamples(from);
    m_pieces.push_back({0, heardLength(m_duration - start, rate), start, rate});
    if (jump)
        plan(*jump);
}

void PlayLine::plan(const player::PlannedJump& jump) {
    Piece& last = m_pieces.back();
    const auto from = inSamples(jump.from);
    const auto length = heardLength(from - last.item, last.rate);
    if (from < last.item || length > last.end - last.start)
        return;
    last.end = last.start + length;
    const auto to = inSamples(jump.to);
    m_pieces.push_back(
        {last.end, last.end + heardLength(m_duration - to, jump.rate), to, jump.rate});
}

const PlayLine::Piece& PlayLine::pieceAt(std::int64_t heard) const {
    const auto found =
        std::ranges::find_if(m_pieces, [heard](const Piece& piece) { return piece.end > heard; });
    return found == m_pieces.end() ? m_pieces.back() : *found;
}

PlayLine PlayLine::withJump(std::optional<player::PlannedJump> jump, std::int64_t heard) const {
    PlayLine changed = *this;
    Piece current = pieceAt(heard);
    current.end = current.start + heardLength(m_duration - current.item, current.rate);
    changed.m_pieces = {current};
    const bool isAhead =
        jump && static_cast<double>(inSamples(jump->from)) >=
                    current.itemAt(static_cast<double>(std::max(heard, current.start)));
    if (isAhead)
        changed.plan(*jump);
    return changed;
}

std::int64_t PlayLine::commonEnd(const PlayLine& other) const {
    auto ours = std::ranges::find(m_pieces, other.m_pieces.front().start, &Piece::start);
    auto theirs = other.m_pieces.begin();
    std::int64_t common = other.m_pieces.front().start;
    while (ours != m_pieces.end() && theirs != other.m_pieces.end() && ours->item == theirs->item &&
           ours->rate == theirs->rate && ours->start == theirs->start) {
        common = std::min(ours->end, theirs->end);
        ++ours;
        ++theirs;
    }
    return common;
}

std::vector<SoundPiece> PlayLine::soundOf(const CompositionTrack& track) const {
    const auto segments = soundPieces(track);
    std::vector<SoundPiece> sound;
    for (const Piece& piece : m_pieces) {
        const std::int64_t pieceEnd =
            piece.item + std::llround(static_cast<double>(piece.end - piece.start) * piece.rate);
        const auto heardAt = [&piece](std::int64_t item) {
            return piece.start + heardLength(item - piece.item, piece.rate);
        };
        for (const SoundPiece& segment : segments) {
            const auto from = std::max(piece.item, segment.targetStart);
            const auto to = std::min(pieceEnd, segment.targetEnd);
            const auto sourceAt = [&segment](std::int64_t item) -> std::int64_t {
                return segment.sourceStart +
                       std::llround(static_cast<double>(item - segment.targetStart) *
                                    segment.speed());
            };
            if (from < to && heardAt(from) < heardAt(to))
                sound.push_back({sourceAt(from), sourceAt(to), heardAt(from), heardAt(to)});
        }
    }
    return sound;
}

} // namespace vantro::media::pulse
