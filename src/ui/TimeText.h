#pragma once

#include <QString>

namespace vantro::ui {

/// Whole seconds as a clock: "00:07", "12:34", "1:02:03".
QString elapsedText(double seconds);

/// A position in a movie: "0:07.3", "12:34.0", "1:02:03.5". The tenth is cut off, not rounded.
QString positionText(double seconds);

/// Whole minutes and seconds, "01:15", of which minutes run past 60: the transport's labels. What
/// is not finite is fatal.
QString transportText(double seconds);

} // namespace vantro::ui
