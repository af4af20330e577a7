#pragma once

#include "clicks/PointerSettings.h"
#include "clicks/PressRecord.h"

#include <memory>
#include <string>
#include <vector>

struct libinput;

namespace vantro::clicks {

/// The mice, touchpads, pointing sticks and tablets of a seat, also those that come later, open
/// until this is destroyed. No other device is ever opened, keyboards only where they are one
/// device with a mouse. One thread.
class PressDevices {
  public:
    /// Throws std::runtime_error.
    PressDevices(const PointerSettings& settings, const std::string& seat);

    /// Whether there is a device, and this process may read it.
    static bool canRead();

    /// Readable when there is something to take.
    int fd() const;
    /// The presses since the last time, without a sequence.
    std::vector<PressRecord> take();

  private:
    struct Close {
        void operator()(libinput* context) const;
    };

    std::vector<PressRecord> takeEvents();

    const PointerSettings m_settings;
    std::unique_ptr<libinput, Close> m_context;
};

} // namespace vantro::clicks
