#pragma once

#include "media/values/MediaTime.h"

#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

namespace vantro::media::player {

struct Seek {
    MediaTime to;
    MediaTime tolerance;
    std::function<void(bool finished)> done; ///< may be empty
};

/// Seeks of which the newest counts: one runs, one waits. A value, below threads.
///
/// A newer one gives up the one that runs, but not twice before a picture is seen: a pointer that
/// moves faster than pictures are decoded must not starve them.
class SeekQueue {
  public:
    using Completion = std::function<void(bool finished)>;

    /// Returns what is superseded, for the caller to tell.
    std::vector<Completion> add(Seek seek);
    bool isRunning() const { return m_running.has_value(); }
    bool isWaiting() const { return m_waiting.has_value(); }
    /// Where the newest one goes.
    std::optional<MediaTime> target() const;
    /// Starts the one that waits, unless one runs or none waits.
    const Seek* begin();
    std::stop_token givenUp() const { return m_stop.get_token(); }
    /// A picture of the one that runs has been seen, though not yet the one that ends it: it need
    /// not keep one that waits any longer. Returns what is superseded.
    std::vector<Completion> seen();
    /// Ends the one that runs, and what still searches for it; returns whom to tell, empty where
    /// that was done already.
    Completion finish(bool shown);
    /// Gives up everything; returns whom to tell.
    std::vector<Completion> clear();

  private:
    std::optional<Seek> m_running;
    std::optional<Seek> m_waiting;
    std::stop_source m_stop;   ///< of the one that runs
    bool m_hasGivenUp = false; ///< since the last picture
};

} // namespace vantro::media::player
