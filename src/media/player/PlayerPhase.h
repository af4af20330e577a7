#pragma once

#include "base/Fatal.h"

namespace vantro::media::player {

/// What a player is doing.
///
///     opening ──▶ paused ◀──▶ starting ──▶ playing        starting: the first pictures are
///        │          ▲  │        ▲   ▲         │            decoded and sound is on its way
///        │          │  ▼        │   └─────────┤ another rate
///        ├──────▶ seeking ──────┘             │
///        ▼          ▲  ◀──── starting, playing, failed
///      failed ◀── all others                  └──▶ paused, by its end as well
///
/// Opening ends with the first picture; a seek leads out of failed where the movie can be read.
enum class PlayerPhase { opening, paused, seeking, starting, playing, failed };

constexpr bool canFollow(PlayerPhase now, PlayerPhase next) {
    using enum PlayerPhase;
    switch (next) {
    case opening:
        return false;
    case seeking:
        return now != opening;
    case failed:
        return now != failed;
    case playing:
        return now == starting;
    case starting:
        return now != failed && now != starting;
    case paused:
        return now != failed && now != paused;
    }
    return false;
}

/// Goes to the next phase; one that does not follow is fatal.
inline void follow(PlayerPhase& phase, PlayerPhase next) {
    base::require(canFollow(phase, next), "a player's phase that does not follow");
    phase = next;
}

} // namespace vantro::media::player
