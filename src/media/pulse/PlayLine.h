#pragma once

#include "media/AudioTrackReader.h"
#include "media/Composition.h"
#include "media/player/PlayerControl.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace vantro::media::pulse {

/// What is heard when, from the start of playing to the item's end, with at most one jump ahead. A
/// value. All in samples of the mix format: heard ones count from the start of playing, the item's
/// from its beginning.
class PlayLine {
  public:
    /// A stretch of the item heard at one rate.
    struct Piece {
        std::int64_t start = 0; ///< heard
        std::int64_t end = 0;   ///< heard
        std::int64_t item = 0;  ///< at `start`
        double rate = 1;

        double itemAt(double heard) const {
            return static_cast<double>(item) + (heard - static_cast<double>(start)) * rate;
        }
        bool operator==(const Piece&) const = default;
    };

    PlayLine(MediaTime from, double rate, std::optional<player::PlannedJump> jump,
             MediaTime duration);

    /// Never empty, back to back.
    const std::vector<Piece>& pieces() const { return m_pieces; }
    const Piece& pieceAt(std::int64_t heard) const;
    std::int64_t end() const { return m_pieces.back().end; }

    /// With another jump, or none, behind `heard`; a jump before that was made and stays. A jump
    /// whose place has passed is none.
    PlayLine withJump(std::optional<player::PlannedJump> jump, std::int64_t heard) const;
    /// Up to where both sound the same, behind the start of `other`.
    std::int64_t commonEnd(const PlayLine& other) const;
    /// What of a track is heard when.
    std::vector<SoundPiece> soundOf(const CompositionTrack& track) const;

  private:
    void plan(const player::PlannedJump& jump);

    std::int64_t m_duration; ///< of the item
    std::vector<Piece> m_pieces;
};

} // namespace vantro::media::pulse
