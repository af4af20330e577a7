#pragma once

#include "base/HostClock.h"
#include "support/XServer.h"

#include <cstdint>
#include <memory>
#include <vector>
namespace vantro::test {

/// Moves and clicks the pointer of a display as a user would (XTEST). The server has carried a call
/// out when it returns.
class Pointer {
  public:
    explicit Pointer(const XServer& server);
    ~Pointer();

    void moveTo(int x, int y);
    /// Presses and releases a button: 1 left, 2 middle, 3 right. Returns the instant just before.
    base::HostTime click(int button);
    /// What the first buttons stand for from now on.
    void setButtons(const std::vector<std::uint8_t>& map);

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::test
