#pragma once

#include "media/changes/ChangeReader.h"
#include "media/values/MovieReference.h"

#include <atomic>
#include <functional>
#include <thread>
#include <variant>
#include <vector>

namespace vantro::media::changes {

/// How much of the search is done, in hundredths; told at most once each.
struct SearchProgress {
    int percent = 0;
};
/// Of each watch, in their order: see ChangeReader. A watch where the movie breaks has none.
using FoundChanges = std::vector<std::optional<double>>;
/// The movie cannot be read at all; the log tells why.
struct SearchFailed {};
using SearchNews = std::variant<SearchProgress, FoundChanges, SearchFailed>;

/// Searches a movie for changes on a thread of its own. Of the memory only the results grow, by the
/// number of watches.
class ChangeSearch {
  public:
    /// Told on the search's thread; last come FoundChanges or SearchFailed, unless it is stopped.
    using Tell = std::function<void(SearchNews)>;

    /// `watches` in time order.
    ChangeSearch(MovieReference movie, std::vector<Watch> watches, Tell tell);
    /// Stops and waits.
    ~ChangeSearch() = default;

    /// Ends it within one picture, or once the file has been opened; at once.
    void stop() { m_thread.request_stop(); }
    /// Nothing is under way any more.
    bool hasEnded() const { return m_hasEnded; }

  private:
    void run(const std::stop_token& stop);
    void search(const std::stop_token& stop);

    const MovieReference m_movie;
    const std::vector<Watch> m_watches;
    const Tell m_tell;
    std::atomic<bool> m_hasEnded = false;
    std::jthread m_thread; // goes first
};

} // namespace vantro::media::changes
