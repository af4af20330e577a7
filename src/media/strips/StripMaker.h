#pragma once

#include "media/strips/Strip.h"
#include "media/values/MovieReference.h"

#include <atomic>
#include <functional>
#include <memory>
#include <semaphore>
#include <thread>

namespace vantro::media::strips {

/// Makes the thumbnails that somebody looks at, and bit by bit all peaks of the sound, on a thread
/// of its own that works only while a processor is idle.
///
/// Views and news are handed over without locks, so that whoever looks never waits for a thread
/// that is not let to work. A movie that cannot be read has nothing to show; the log tells why.
class StripMaker {
  public:
    /// Is given the movie's format first, and then pictures and peaks as they are made; on the
    /// maker's thread. What it gives is bounded by what was asked for and by the movie's length.
    using Tell = std::function<void(StripNews)>;

    /// `yields`: works only while a processor is idle.
    StripMaker(MovieReference movie, Tell tell, bool yields = true);
    /// Stops and waits for the step under way, of a few milliseconds of work.
    ~StripMaker();

    /// Thumbnails of earlier views that were not made yet are given up, within one picture. One
    /// thread, that of `stop`; at once.
    void look(StripView view);
    /// Ends it within one picture, or once the file has been opened; at once.
    void stop();
    /// Nothing is under way any more.
    bool hasEnded() const { return m_hasEnded; }

  private:
    struct Order {
        StripView view;
        std::stop_token givenUp;
    };

    void run(const std::stop_token& stop);
    void make(const std::stop_token& stop);
    std::unique_ptr<Order> swapOrder(std::unique_ptr<Order> order);

    const MovieReference m_movie;
    const Tell m_tell;
    const bool m_yields;
    std::stop_source m_search;             ///< of the newest view
    std::atomic<Order*> m_order = nullptr; ///< that the thread has yet to take; owned
    std::counting_semaphore<> m_wake{0};
    std::atomic<bool> m_hasEnded = false;
    std::jthread m_thread; // goes first
};

} // namespace vantro::media::strips
