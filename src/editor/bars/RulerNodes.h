#pragma once

#include <QAccessible>

namespace vantro::editor::bars {

class RulerPicture;

/// Has assistive technology told of rulers, as a group with a text for each time. Main thread.
void installRulerNodes();
/// The node of the label at that place in the ruler, registered; whoever asks deletes it.
QAccessible::Id makeLabelNode(RulerPicture& ruler, std::size_t label);

} // namespace vantro::editor::bars
