#pragma once

#include "capture/x11/X11CapturePlatform.h"
#include "support/XServer.h"

namespace vantro::test {

/// Stands for our own process, so that of the windows that a test makes only those are ours that
/// say that they belong to it.
inline constexpr std::uint32_t ownProcess = 4711;

inline std::unique_ptr<capture::CapturePlatform> connectTo(const XServer& server) {
    return capture::x11::connectX11(server.display(),
                                    [](std::int64_t process) { return process == ownProcess; })
        .value();
}

} // namespace vantro::test
