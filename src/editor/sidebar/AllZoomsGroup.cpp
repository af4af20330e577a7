#include "editor/sidebar/AllZoomsGroup.h"

#include <algorithm>

namespace vantro::editor::sidebar {
namespace {

bool isActive(const model::ClickEvent& event) {
    return !model::isSilenced(event);
}

} // namespace

AllZoomsGroup::AllZoomsGroup(app::AppState& state, EditSteps& steps)
    : SettingsGroup(state, steps,
                    [](const auto& a, const auto& b) { return a.clickEvents != b.clickEvents; }) {}

int AllZoomsGroup::count() const {
    return static_cast<int>(std::ranges::count_if(edit().clickEvents, isActive));
}

model::ClickEvent AllZoomsGroup::first() const {
    const auto& zooms = edit().clickEvents;
    const auto found = std::ranges::find_if(zooms, isActive);
    return found != zooms.end() ? *found : model::ClickEvent{.id = {}};
}

bool AllZoomsGroup::isMixed() const {
    return std::ranges::any_of(edit().clickEvents, [first = first()](const auto& zoom) {
        return isActive(zoom) &&
               (zoom.zoomLevel != first.zoomLevel || zoom.startOffset != first.startOffset ||
                zoom.endOffset != first.endOffset);
    });
}

void AllZoomsGroup::set(std::string name, const timeline::ZoomValues& values) {
    change(std::move(name), [&](auto& edit) {
        edit.clickEvents = timeline::allChanged(edit.clickEvents, values, duration());
    });
}

void AllZoomsGroup::setLevel(double level) {
    set(QT_TRANSLATE_NOOP("Edit", "Change All Zoom Levels"), {.level = level});
}

void AllZoomsGroup::setLeadIn(double seconds) {
    set(QT_TRANSLATE_NOOP("Edit", "Change All Lead-Ins"), {.leadIn = seconds});
}

void AllZoomsGroup::setLeadOut(double seconds) {
    set(QT_TRANSLATE_NOOP("Edit", "Change All Lead-Outs"), {.leadOut = seconds});
}

void AllZoomsGroup::removeAll() {
    change(QT_TRANSLATE_NOOP("Edit", "Remove All Zooms"),
           [](auto& edit) { edit.clickEvents = {}; });
    state().setSelectedClickID({});
}

void AllZoomsGroup::reset() {
    const model::ClickEvent fresh;
    set(QT_TRANSLATE_NOOP("Edit", "Reset All Zooms"),
        {.level = fresh.zoomLevel, .leadIn = fresh.startOffset, .leadOut = fresh.endOffset});
}

} // namespace vantro::editor::sidebar
