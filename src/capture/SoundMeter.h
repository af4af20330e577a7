#pragma once

#include <optional>

namespace vantro::capture {

/// How loud a sound is that nobody records yet; its device is in use until the destruction, which
/// takes no longer than a moment.
class SoundMeter {
  public:
    struct Reading {
        float level = 0;       ///< the latest peak; 1 is full scale
        bool isSilent = false; ///< for seconds
        bool operator==(const Reading&) const = default;
    };

    virtual ~SoundMeter() = default;

    /// Nothing while there is nothing to listen to. Any thread.
    virtual std::optional<Reading> reading() const = 0;
};

} // namespace vantro::capture
