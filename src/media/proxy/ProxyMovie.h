#pragma once

#include "media/values/MediaTime.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vantro::media::proxy {

/// The small copy of one movie's pictures, in pieces of half a minute: which of them are there,
/// where they lie, and where somebody looks for a picture, so that the piece of that place is made
/// first.
///
/// A piece is a movie whose time zero is the piece's start. It shows at each of its times what the
/// movie shows then. Any thread, and none ever waits: the one that makes pieces may be idle for
/// long.
class ProxyMovie {
  public:
    static constexpr MediaTime pieceLength{30, 1};

    /// Of a movie of that length. `file` says where a piece lies or will lie.
    ProxyMovie(MediaTime duration, std::function<std::filesystem::path(int piece)> file);

    int pieceCount() const { return static_cast<int>(m_pieces.size()); }
    /// The piece that shows what the movie shows at `t`, whether it is there or not.
    int pieceAt(MediaTime t) const;
    /// Its place in the movie.
    MediaTimeRange range(int piece) const;
    std::filesystem::path file(int piece) const { return m_file(piece); }

    bool has(int piece) const { return at(piece) == State::there; }
    void add(int piece) { at(piece) = State::there; }
    /// The piece cannot be made, or is damaged; nobody tries again.
    void giveUp(int piece) { at(piece) = State::givenUp; }

    void want(MediaTime t) { m_wanted = pieceAt(t); }
    /// Of the pieces to be made the nearest to the place wanted last.
    std::optional<int> nextToMake() const;

  private:
    /// missing → there → givenUp; missing → givenUp
    enum class State { missing, there, givenUp };

    std::atomic<State>& at(int piece) { return m_pieces[static_cast<std::size_t>(piece)]; }
    State at(int piece) const { return m_pieces[static_cast<std::size_t>(piece)]; }

    MediaTime m_duration;
    std::function<std::filesystem::path(int)> m_file;
    std::vector<std::atomic<State>> m_pieces;
    std::atomic<int> m_wanted = 0;
};

} // namespace vantro::media::proxy
