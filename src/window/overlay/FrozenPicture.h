#pragma once

#include "capture/ChosenContent.h"

#include <QImage>

class QScreen;

namespace vantro::window::overlay {

/// The same pixels, which stay alive with the image.
QImage imageOf(const std::shared_ptr<const media::PixelBuffer>& bgra);

/// The screen whose picture it is; null where none can be told to be.
QScreen* screenOf(const capture::ChosenContent& content);

/// Whether it is the picture of a whole screen. Without a place of its own, or smaller than every
/// screen, it is what the desktop's dialog has cut out.
bool isWholeScreen(const capture::ChosenContent& content);

/// The pixels of a screen per unit of a window, `width` wide, that covers it. Desktops round the
/// size of a window but not their scale, which is a multiple of 1/120 on most.
double pixelsPerUnit(int pixels, int width);

} // namespace vantro::window::overlay
