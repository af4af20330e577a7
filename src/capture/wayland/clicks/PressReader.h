#pragma once

#include "base/FileDescriptor.h"
#include "clicks/PointerSettings.h"
#include "clicks/PressRecord.h"

#include <memory>
#include <optional>
#include <vector>

namespace vantro::capture::wayland {

/// Tells of presses, wherever they come from. One thread at a time.
class PressReader {
  public:
    virtual ~PressReader() = default;

    /// Readable when there is something to take.
    virtual int fd() const = 0;
    /// What has come since the last time; nothing where no more will come.
    virtual std::optional<std::vector<clicks::PressRecord>> take() = 0;
};

/// Of the service's pipe, which does not block.
std::unique_ptr<PressReader> readPipe(base::FileDescriptor pipe);
/// Of the devices themselves. Throws std::runtime_error.
std::unique_ptr<PressReader> readDevices(const clicks::PointerSettings& settings);

} // namespace vantro::capture::wayland
