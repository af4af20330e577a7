#pragma once

namespace vantro::ui {

/// Has assistive technology told the program's display name. Qt tells its plain name, which is that
/// of the window class. Before the application object.
void tellDisplayName();

} // namespace vantro::ui
