#pragma once

#include "capture/PlatformAbilities.h"
#include "capture/SoundMeter.h"
#include "capture/SoundSource.h"

#include <expected>
#include <memory>
#include <string>
#include <vector>

namespace vantro::capture {

/// Something that sound can be recorded from. A plain record.
struct SoundDevice {
    SoundKind kind = SoundKind::microphone;
    std::string name;        ///< tells it from others, also tomorrow
    std::string description; ///< for people
    bool isDefault = false;
    bool operator==(const SoundDevice&) const = default;
};

/// The sound that can be recorded beside a desktop's picture. One thread at a time; what it hands
/// out is independent of it. Each call takes a moment, and at most a few seconds.
class SoundDevices {
  public:
    virtual ~SoundDevices() = default;

    /// What there is now; the error is for the user.
    virtual std::expected<std::vector<SoundDevice>, std::string> list() = 0;
    /// `device`: a microphone's name or description; empty for the default one, which is followed
    /// when another becomes it.
    virtual std::expected<std::unique_ptr<SoundSource>, SoundRefusal>
    open(SoundKind kind, const std::string& device) = 0;
    /// Meters what `open` would record. Takes no time.
    virtual std::unique_ptr<SoundMeter> meter(SoundKind kind, const std::string& device) = 0;
};

/// What of it can be recorded.
struct SoundAbilities {
    Ability system;
    Ability microphone;
    bool operator==(const SoundAbilities&) const = default;
};
SoundAbilities abilitiesOf(const std::expected<std::vector<SoundDevice>, std::string>& devices);

} // namespace vantro::capture
