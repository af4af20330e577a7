#pragma once

#include "editor/bars/RowList.h"
#include "timeline/TimeAxis.h"
#include "timeline/TimelineRows.h"

#include <vector>

namespace vantro::editor::bars {

// What QML is told of each kind of row, and how it is called for those who do not see it.
std::vector<Column<timeline::RulerMark>> labelColumns();
std::vector<Column<timeline::SegmentRow>> segmentColumns();
std::vector<Column<timeline::GapRow>> gapColumns();
std::vector<Column<timeline::EdgeRow>> edgeColumns();
std::vector<Column<timeline::ZoomRow>> zoomColumns();

} // namespace vantro::editor::bars
