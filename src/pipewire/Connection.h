#pragma once

#include "base/FileDescriptor.h"
#include "pipewire/Loop.h"

#include <expected>
#include <memory>
#include <optional>
#include <string>

struct pw_core; // NOLINT(readability-identifier-naming): the library's

namespace vantro::pipewire {

/// Why something cannot be had, for the user: one sentence without a full stop.
struct Refusal {
    enum class Kind { unavailable, denied };
    Kind kind = Kind::unavailable;
    std::string reason;
};

/// A connection to a PipeWire server. On its loop's thread; what hangs on it goes first.
class Connection {
  public:
    /// To the user's server, or through what a portal has handed over.
    static std::expected<std::unique_ptr<Connection>, Refusal>
    open(Loop& loop, base::FileDescriptor remote = {});
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Waits until the server has answered everything asked so far; false when it has not in time,
    /// or is lost.
    bool awaitAnswers(base::HostDuration longestWait);
    /// Why it is of no use any more: the server has gone, or refuses it.
    const std::optional<Refusal>& loss() const;

    Loop& loop() const { return m_loop; }
    pw_core& core() const;

  private:
    struct Implementation;

    explicit Connection(Loop& loop);

    Loop& m_loop;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::pipewire
