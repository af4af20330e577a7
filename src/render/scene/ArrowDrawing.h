#pragma once

#include "render/scene/CursorImage.h"

namespace vantro::render {

/// Our own pointer: a black arrow with a white outline and a faint shadow, fine enough to be drawn
/// several hundred pixels high. The same on every machine.
CursorImage drawnArrow();

} // namespace vantro::render
