#pragma once

#include "editor/bars/RowList.h"
#include "timeline/TimelineRows.h"
#include "timeline/ZoomSuggestions.h"

#include <QString>
#include <cstddef>
#include <vector>

namespace vantro::editor::bars {

/// What QML is told of the rows that have items.
std::vector<Column<timeline::SegmentRow>> segmentColumns();
std::vector<Column<timeline::EdgeRow>> edgeColumns();
std::vector<Column<timeline::ZoomRow>> zoomColumns();
std::vector<Column<timeline::ZoomRow>> suggestionColumns();

// What stands on the bars, and how it is called for those who do not see it.
QString labelOf(const timeline::ZoomRow& row);
QString badgeOf(const timeline::SegmentRow& row);
QString nameOf(const model::ClickEvent& zoom);
QString nameOf(const timeline::Suggestion& suggestion);
QString nameOf(const model::TimelineSegment& segment, std::size_t index);
QString nameOf(const timeline::SegmentEdge& edge);

} // namespace vantro::editor::bars
