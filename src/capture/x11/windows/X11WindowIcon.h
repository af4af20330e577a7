#pragma once

#include "capture/ShareableContent.h"
#include "capture/x11/server/X11Connection.h"

#include <memory>

namespace vantro::capture::x11 {

/// The picture that a window gives itself (_NET_WM_ICON), in the size that suits a list best; null
/// when it has none. Reads only that size, since windows carry up to a megabyte of others.
std::shared_ptr<const WindowIcon> windowIcon(const X11Connection& connection, xcb_window_t window);

} // namespace vantro::capture::x11
