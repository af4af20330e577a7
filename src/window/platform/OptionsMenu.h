#pragma once

#include <QPoint>
#include <functional>

namespace vantro::ui {
class Preferences;
} // namespace vantro::ui

namespace vantro::window {

/// Shows the menu with what is not needed every day: movies from elsewhere, settings, theme. A
/// native menu, since the window may be smaller than it. Main thread.
void showOptionsMenu(ui::Preferences& preferences, QPoint globalPosition,
                     std::function<void()> importMovie, std::function<void()> showSettings);

} // namespace vantro::window
