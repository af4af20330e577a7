#pragma once

#include "support/XServer.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace vantro::test {

/// The keyboard of a display, as a user has it (XTEST), and as another client does. Keys are X11's
/// symbols. The server has carried a call out when it returns.
class Keyboard {
  public:
    explicit Keyboard(const XServer& server);
    ~Keyboard();

    /// Presses them one after the other, and lets them go.
    void type(const std::vector<std::uint32_t>& symbols);
    void press(std::uint32_t symbol);
    void release(std::uint32_t symbol);
    /// Has that window get what is typed.
    void focus(std::uint32_t window);
    /// As another client takes a key with these modifiers for its own; false where it is taken.
    bool take(std::uint32_t symbol, std::uint16_t modifiers);
    /// What the keys of one sign stand for from now on.
    void remap(std::uint32_t from, std::uint32_t to);

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::test
