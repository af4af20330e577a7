#pragma once

#include <QPoint>

namespace vantro::window {

namespace devices {
class DeviceChoice;
} // namespace devices

/// Shows the menu of the devices that can be chosen; it follows them as they come and go. A native
/// menu, since the window may be smaller than it. `choice` outlives it. Main thread.
void showDeviceMenu(devices::DeviceChoice& choice, QPoint globalPosition);

} // namespace vantro::window
