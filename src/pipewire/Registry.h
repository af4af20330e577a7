#pragma once

#include "pipewire/Connection.h"
#include "pipewire/VideoFormat.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace vantro::pipewire {

/// Something that gives or takes pictures or sound. A plain record.
struct Node {
    std::uint32_t id = 0;    ///< may be another's later
    std::string serial;      ///< never another's while the server runs; empty of old servers
    std::string name;        ///< the server's, which stays the same
    std::string description; ///< for people
    std::string mediaClass;
    std::string role;
    int priority = 0; ///< the highest is the usual one
    bool operator==(const Node&) const = default;
};

/// Knows a server's nodes, as they come and go. On the connection's thread.
class Registry {
  public:
    /// `changed` is called after each change, the first nodes included.
    explicit Registry(Connection& connection, std::function<void()> changed = {});
    ~Registry();
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;

    /// By their ids. Complete once the connection's answers have been awaited.
    const std::map<std::uint32_t, Node>& nodes() const;
    /// What a node gives, as far as we know how to read it, in its own order. Turns the loop until
    /// the server has answered; what has come by then when it does not in time.
    std::vector<FormatOffer> formatsOf(std::uint32_t node, base::HostDuration longestWait);

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::pipewire
