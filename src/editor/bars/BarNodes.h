#pragma once

#include "editor/bars/BarParts.h"

namespace vantro::editor::bars {

/// The nodes that stand for a bar and its parts in the tree that assistive technology reads.

/// Lets Qt find the node of a bar, which is a list. Once in a program.
void installBarNodes();

/// The node of a part; belongs to Qt, which deletes it with
/// `QAccessible::deleteAccessibleInterface`. `bar` must outlive it.
QAccessible::Id makePartNode(BarParts& bar, const BarPart& part);

} // namespace vantro::editor::bars
