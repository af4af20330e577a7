#pragma once

#include "media/values/AudioBuffer.h"

#include <string>

namespace vantro::capture {

enum class SoundKind { system, microphone };

/// Why a sound cannot be recorded.
struct SoundRefusal {
    enum class Kind { denied, unavailable };
    Kind kind = Kind::unavailable;
    std::string reason; ///< for the user
};

/// Receives the sound of one source. One thread at a time.
class SoundOutput {
  public:
    virtual ~SoundOutput() = default;

    /// The presentation time is host time, by which the sound runs: each buffer continues the one
    /// before, unless something was lost.
    virtual void sound(media::AudioBuffer buffer) = 0;
    /// The source has nothing to record, as its device is gone; what comes is silence.
    virtual void soundMissing(const std::string& reason) = 0;
    /// It records again.
    virtual void soundReturned() = 0;
};

/// Sound that is recorded, already opened. Destruction stops it. One thread starts and stops it.
class SoundSource {
  public:
    virtual ~SoundSource() = default;

    /// `output` lives until the stop. Throws std::runtime_error. Called once.
    virtual void start(SoundOutput& output) = 0;
    /// Nothing arrives after this has returned. Harmless when repeated. Not from the output's
    /// calls.
    virtual void stop() = 0;
};

} // namespace vantro::capture
