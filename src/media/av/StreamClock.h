#pragma once

#include "media/av/Handles.h"
#include "media/values/MediaTime.h"

#include <cstdint>

namespace vantro::media::av {

/// Converts between a stream's ticks and times on its file's time line, whose zero is where a
/// player starts the file. A plain value.
class StreamClock {
  public:
    /// `zero`: the ticks at the file's time zero.
    StreamClock(AVRational timeBase, std::int64_t zero) : m_timeBase(timeBase), m_zero(zero) {}

    std::int64_t zero() const { return m_zero; }
    /// Exact unless the stream counts finer than microseconds. Ticks that lie decades away, as only
    /// damaged files have them, stick to the limit.
    MediaTime time(std::int64_t ticks) const;
    /// The length of so many ticks.
    MediaTime span(std::int64_t ticks) const;
    /// The last tick not after `t`.
    std::int64_t ticksAtOrBefore(MediaTime t) const;

  private:
    AVRational m_timeBase;
    std::int64_t m_zero;
};

} // namespace vantro::media::av
