#include "editor/bars/BarPress.h"

namespace vantro::editor::bars {
namespace {

// Handles are narrow, so a drag of one is told from a click sooner.
constexpr double bodyTravel = 2;
constexpr double handleTravel = 1;

} // namespace

bool BarPress::isOnHandle() const {
    return target == Target::edge ||
           (target == Target::zoom && zoom.part != timeline::ZoomPart::body);
}

bool BarPress::isOnZoomBody() const {
    return target == Target::zoom && zoom.part == timeline::ZoomPart::body;
}

double BarPress::travel() const {
    return isOnHandle() ? handleTravel : bodyTravel;
}

BarPress pressOnGround(const TimelineModel& model, double x, bool marks) {
    auto& edits = model.edits();
    return {.x = x,
            .place = model.axis().unlimitedPlaceAt(x),
            .target = marks ? BarPress::Target::mark : BarPress::Target::playhead,
            .zooms = edits.zooms(),
            .segments = edits.segments(),
            .playhead = edits.transport().progress()};
}

BarPress pressOnSegments(const TimelineModel& model, double x, bool marks) {
    auto press = pressOnGround(model, x, marks);
    if (const auto edge = timeline::edgeAt(model.edgeRows(), x, model.handleWidth())) {
        press.edge = *edge;
        press.target = BarPress::Target::edge;
    }
    return press;
}

BarPress pressOnZooms(const TimelineModel& model, double x, bool marks) {
    auto press = pressOnGround(model, x, marks);
    const auto& axis = model.axis();
    if (const auto zoom = timeline::zoomAt(model.zoomRows(), press.zooms, axis, model.duration(), x,
                                           model.handleWidth())) {
        press.zoom = *zoom;
        press.target = BarPress::Target::zoom;
    } else if (const auto suggestion =
                   timeline::zoomAt(model.suggestedRows(), model.proposals().zooms(), axis,
                                    model.duration(), x, 0)) {
        press.zoom = *suggestion;
        press.target = BarPress::Target::suggestion;
    }
    return press;
}

} // namespace vantro::editor::bars
