#pragma once

#include "clicks/PressRecord.h"

#include <optional>

struct libinput_event;

namespace vantro::clicks {

/// The press of the left or right button, or of a pen's tip, that an event is, without a sequence.
/// Nothing for every other event: keys, motion, scrolling, releases.
std::optional<PressRecord> pressOf(libinput_event* event);

} // namespace vantro::clicks
