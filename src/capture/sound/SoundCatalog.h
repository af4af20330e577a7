#pragma once

#include "capture/SoundDevices.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vantro::capture::sound {

/// Something that a sound server can record. A plain record.
struct ServerSource {
    std::uint32_t index = 0;
    std::string name;        ///< the server's, which stays the same
    std::string description; ///< for people
    bool isMonitor = false;  ///< of what an output plays
    std::string output;      ///< the output's name, for a monitor
};

/// What a sound server offers at a time. A plain record.
struct SoundCatalog {
    std::string defaultOutput; ///< empty: none
    std::string defaultInput;  ///< may be a monitor
    std::vector<ServerSource> sources;
};

/// What a recording of that kind takes; null where there is nothing of that kind. The system's
/// sound is the default output's monitor. A microphone is never a monitor: it is the one of that
/// name or description, or, where none is given, the default input, or the first input where that
/// is a monitor.
const ServerSource* chooseSource(SoundKind kind, const std::string& device,
                                 const SoundCatalog& catalog);

/// The same for the user: the system's sound by its outputs, then the microphones.
std::vector<SoundDevice> devicesOf(const SoundCatalog& catalog);

} // namespace vantro::capture::sound
