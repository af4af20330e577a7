#include "render/scene/SourceMotion.h"

#include <algorithm>

namespace vantro::render {
namespace {

std::vector<model::ClickEvent> inPixels(std::vector<model::ClickEvent> clicks,
                                        double pixelsPerPoint) {
    for (auto& click : clicks) {
        click.x *= pixelsPerPoint;
        click.y *= pixelsPerPoint;
    }
    return clicks;
}

} // namespace

std::optional<model::Point> pointerAt(const std::vector<model::CursorPosition>& positions,
                                      double t) {
    if (positions.empty())
        return {};
    const auto& first = positions.front();
    const auto& last = positions.back();
    if (!(t > first.timestamp))
        return model::Point{first.x, first.y};
    if (t >= last.timestamp)
        return model::Point{last.x, last.y};
    const auto next = std::ranges::upper_bound(positions, t, {}, &model::CursorPosition::timestamp);
    const auto& high = *next;
    const auto& low = *std::prev(next);
    const double span = high.timestamp - low.timestamp;
    const double share = span > 0 ? (t - low.timestamp) / span : 0;
    return model::Point{low.x + (high.x - low.x) * share, low.y + (high.y - low.y) * share};
}

SourceMotion::SourceMotion(model::Recording recording,
                           const model::SharedList<model::ClickEvent>& clicks,
                           model::Size videoSize)
    : m_recording(std::move(recording))
    , m_animator(inPixels(clicks, m_recording.metadata().displayScaleFactor), videoSize) {}

std::optional<PixelPoint> SourceMotion::pointer(double t) const {
    const auto& metadata = m_recording.metadata();
    const auto point = pointerAt(metadata.cursorPositions, t);
    if (!point)
        return {};
    return PixelPoint{point->x * metadata.displayScaleFactor,
                      point->y * metadata.displayScaleFactor};
}

} // namespace vantro::render
