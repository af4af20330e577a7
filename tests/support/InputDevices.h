#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <linux/input-event-codes.h>

namespace vantro::test {

enum class Input {
    mouse,    ///< with keys of a keyboard, as some have
    touchpad, ///< that is one large button
    keyboard
};

struct InputEvent {
    std::uint16_t type;
    std::uint16_t code;
    std::int32_t value;
};

/// Input devices that umockdev makes for the programs that it is preloaded into, and that are
/// started while this lives.
class InputDevices {
  public:
    InputDevices();
    ~InputDevices();
    InputDevices(const InputDevices&) = delete;
    InputDevices& operator=(const InputDevices&) = delete;

    /// Before those programs are started.
    void plug(Input device);
    /// What a device does at one instant, which is the answer: microseconds of CLOCK_MONOTONIC.
    std::uint64_t send(Input device, const std::vector<InputEvent>& events);
    /// A key or button goes down and up.
    std::uint64_t click(Input device, std::uint16_t code);
    /// What nobody has read is gone, as the kernel keeps nothing for a device that is closed.
    void forgetUnread(Input device);

  private:
    struct Testbed;
    std::unique_ptr<Testbed> m_testbed;
};

} // namespace vantro::test
