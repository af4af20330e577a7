#pragma once

#include "media/Composition.h"
#include "media/player/PlayerSound.h"

#include <memory>

namespace vantro::media::pulse {

/// A composition's sound through the desktop's PulseAudio or PipeWire server. Connects at once, and
/// again whenever the server went away; one log line tells of each absence.
std::unique_ptr<player::PlayerSound> makePulseSound(const Composition& composition);

} // namespace vantro::media::pulse
