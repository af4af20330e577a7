#pragma once

#include <QPoint>
#include <functional>

namespace vantro::window {

/// Shows the menu with what is not needed every day: movies from elsewhere and the settings. A
/// native menu, since the window may be smaller than it. Main thread.
void showOptionsMenu(QPoint globalPosition, std::function<void()> importMovie,
                     std::function<void()> showSettings);

} // namespace vantro::window
