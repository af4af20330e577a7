#include "editor/sidebar/SegmentGroup.h"

#include "timeline/SegmentRules.h"

#include <algorithm>
#include <cmath>

namespace vantro::editor::sidebar {

SegmentGroup::SegmentGroup(app::AppState& state, EditSteps& steps)
    : SettingsGroup(state, steps,
                    [](const auto& a, const auto& b) { return a.segments != b.segments; }) {
    connect(&state, &app::AppState::selectedSegmentIDChanged, this, &SegmentGroup::changed);
}

const model::TimelineSegment* SegmentGroup::selected() const {
    const auto& id = state().selectedSegmentID();
    if (!id)
        return nullptr;
    const auto& segments = edit().segments;
    const auto found = std::ranges::find(segments, *id, &model::TimelineSegment::id);
    return found == segments.end() ? nullptr : &*found;
}

QString SegmentGroup::title() const {
    const auto* segment = selected();
    if (segment == nullptr)
        return {};
    return tr("Segment %1 of %2")
        .arg(segment - edit().segments.data() + 1)
        .arg(edit().segments.size());
}

double SegmentGroup::speed() const {
    const auto* segment = selected();
    return segment != nullptr ? segment->speed : 1;
}

void SegmentGroup::setSpeed(double speed) {
    const auto* segment = selected();
    if (segment != nullptr && std::isfinite(speed))
        change(QT_TRANSLATE_NOOP("Edit", "Change Speed"), [&, id = segment->id](auto& edit) {
            edit.segments = timeline::withSpeed(edit.segments, id, speed);
        });
}

void SegmentGroup::remove() {
    const auto* segment = selected();
    if (segment == nullptr || !isRemovable())
        return;
    change(QT_TRANSLATE_NOOP("Edit", "Delete Segment"), [id = segment->id](auto& edit) {
        edit.segments = timeline::withoutSegment(edit.segments, id);
    });
    state().setSelectedSegmentID({});
}

void SegmentGroup::reset() {
    setSpeed(model::TimelineSegment().speed);
}

} // namespace vantro::editor::sidebar
