#include "editor/sidebar/ZoomGroup.h"

#include "timeline/TimeAxis.h"
#include "ui/Sentences.h"

#include <algorithm>

namespace vantro::editor::sidebar {

ZoomGroup::ZoomGroup(app::AppState& state, EditSteps& steps)
    : SettingsGroup(state, steps,
                    [](const auto& a, const auto& b) { return a.clickEvents != b.clickEvents; }) {
    connect(&state, &app::AppState::selectedClickIDChanged, this, &ZoomGroup::changed);
}

const model::ClickEvent* ZoomGroup::selected() const {
    const auto& id = state().selectedClickID();
    return id ? timeline::findZoom(edit().clickEvents, *id) : nullptr;
}

model::ClickEvent ZoomGroup::shown() const {
    const auto* zoom = selected();
    return zoom != nullptr ? *zoom : model::ClickEvent{.id = {}};
}

QString ZoomGroup::title() const {
    return tr("Zoom at %1").arg(ui::localNumber(timeline::rulerLabel(shown().timestamp, true)));
}

double ZoomGroup::width() const {
    return state().metadata() != nullptr ? state().metadata()->captureRect.width : 0;
}

double ZoomGroup::height() const {
    return state().metadata() != nullptr ? state().metadata()->captureRect.height : 0;
}

void ZoomGroup::set(std::string name, const timeline::ZoomValues& values) {
    if (const auto* zoom = selected())
        change(std::move(name), [&, id = zoom->id](auto& edit) {
            edit.clickEvents = timeline::changed(edit.clickEvents, id, values, duration());
        });
}

void ZoomGroup::setLevel(double level) {
    set(QT_TRANSLATE_NOOP("Edit", "Change Zoom Level"), {.level = level});
}

void ZoomGroup::setLeadIn(double seconds) {
    set(QT_TRANSLATE_NOOP("Edit", "Change Zoom Lead-In"), {.leadIn = seconds});
}

void ZoomGroup::setLeadOut(double seconds) {
    set(QT_TRANSLATE_NOOP("Edit", "Change Zoom Lead-Out"), {.leadOut = seconds});
}

void ZoomGroup::setCenter(model::Point center) {
    const auto inside = [](double value, double length) {
        return std::clamp(value, 0.0, std::max(length, 0.0));
    };
    set(QT_TRANSLATE_NOOP("Edit", "Move Zoom Center"),
        {.center = model::Point{inside(center.x, width()), inside(center.y, height())}});
}

void ZoomGroup::setX(double x) {
    setCenter({x, y()});
}

void ZoomGroup::setY(double y) {
    setCenter({x(), y});
}

void ZoomGroup::remove() {
    const auto* zoom = selected();
    if (zoom == nullptr)
        return;
    change(QT_TRANSLATE_NOOP("Edit", "Delete Zoom"), [id = zoom->id](auto& edit) {
        edit.clickEvents = timeline::withoutZoom(edit.clickEvents, id);
    });
    state().setSelectedClickID({});
}

void ZoomGroup::reset() {
    const auto* zoom = selected();
    if (zoom == nullptr)
        return;
    const model::ClickEvent fresh;
    timeline::ZoomValues values{
        .level = fresh.zoomLevel, .leadIn = fresh.startOffset, .leadOut = fresh.endOffset};
    if (const auto* click = timeline::findZoom(state().metadata()->clickEvents, zoom->id))
        values.center = model::Point{click->x, click->y};
    set(QT_TRANSLATE_NOOP("Edit", "Reset Zoom"), values);
}

} // namespace vantro::editor::sidebar
