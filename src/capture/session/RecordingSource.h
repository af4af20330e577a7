#pragma once

namespace vantro::capture {

/// One source of a recording, joined to where it delivers: the screen, the pointer, a sound. What
/// ends it by itself it keeps to tell later. One thread starts and stops it.
class RecordingSource {
  public:
    virtual ~RecordingSource() = default;

    /// Throws std::exception when it cannot take part.
    virtual void start() = 0;
    /// Nothing is delivered after this has returned. Harmless when repeated.
    virtual void stop() = 0;
};

} // namespace vantro::capture
