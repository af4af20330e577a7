#pragma once

#include "capture/SoundDevices.h"

namespace vantro::capture::sound {

/// The sound of the desktop, by its PulseAudio or PipeWire server, which is connected to for each
/// call.
std::unique_ptr<SoundDevices> makePulseSoundDevices();

} // namespace vantro::capture::sound
