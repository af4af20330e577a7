#include "timeline/TimeAxis.h"

#include "base/Fatal.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <fmt/format.h>

namespace vantro::timeline {
namespace {

struct Interval {
    double longest; ///< seconds in view up to which it is used
    double major;   ///< seconds
};
constexpr std::array intervals{
    Interval{3, 0.5}, Interval{10, 1},   Interval{30, 5},
    Interval{60, 10}, Interval{180, 30}, Interval{HUGE_VAL, 60},
};
/// For parts in view that are shorter than any film worth a ruler: magnified ones.
constexpr Interval finest{0.6, 0.1};
constexpr std::array coarserMajors{60.0, 300.0, 600.0, 1800.0, 3600.0, 7200.0, 14400.0};
constexpr int minorsPerMajor = 5;

TimeAxis within(TimeAxis axis) {
    axis.span = std::clamp(axis.span, 0.0, 1.0);
    axis.start = std::clamp(axis.start, 0.0, 1 - axis.span);
    return axis;
}

double majorInterval(double visible, bool magnified, double pointsPerSecond, double labelWidth) {
    if (magnified && visible <= finest.longest + 0.001)
        return finest.major;
    double major = std::ranges::find_if(intervals, [&](const auto& each) {
                       return visible <= each.longest;
                   })->major;
    for (const double coarser : coarserMajors)
        if (major * pointsPerSecond < labelWidth && coarser > major)
            major = coarser;
    return major;
}

} // namespace

double TimeAxis::placeAt(double x) const {
    return width > 0 ? std::clamp(start + x / width * span, 0.0, 1.0) : 0;
}

TimeAxis TimeAxis::magnified(double factor, double x, double shortestSpan) const {
    if (!(factor > 0) || !std::isfinite(factor) || !(width > 0))
        return *this;
    TimeAxis axis = *this;
    axis.span = std::clamp(span / factor, std::min(shortestSpan, 1.0), 1.0);
    axis.start = start + x / width * (span - axis.span);
    return within(axis);
}

TimeAxis TimeAxis::scrolled(double points) const {
    TimeAxis axis = *this;
    if (width > 0 && std::isfinite(points))
        axis.start += points / width * span;
    return within(axis);
}

TimeAxis TimeAxis::revealing(double place) const {
    TimeAxis axis = *this;
    axis.start = std::clamp(start, place - span, std::max(place, place - span));
    return within(axis);
}

std::vector<RulerMark> rulerMarks(const render::SegmentTimeMap& map, const TimeAxis& axis,
                                  double labelWidth) {
    const double length = map.totalDuration();
    const double source = map.sourceDuration();
    if (!(length > 0) || !std::isfinite(length) || !(axis.width > 0) || !(axis.span > 0))
        return {};
    const double first = map.outputTime(axis.start * source);
    const double last = map.outputTime((axis.start + axis.span) * source);
    const double major = majorInterval(axis.showsAll() ? length : last - first, !axis.showsAll(),
                                       axis.width / (axis.span * source), labelWidth);
    const double minor = major / minorsPerMajor;
    std::vector<RulerMark> marks;
    for (auto step = static_cast<long long>(std::ceil(first / minor - 1e-6));; ++step) {
        const bool isMajor = step % minorsPerMajor == 0;
        const double time = static_cast<double>(step) * minor;
        if (time > last + 0.001 || time > length + (isMajor ? 0.001 : 0))
            return marks;
        const double place = map.sourceTime(std::min(time, length)) / source;
        marks.push_back(
            {axis.xOf(place), isMajor, isMajor ? rulerLabel(time, major < 1) : std::string()});
    }
}

std::string rulerLabel(double seconds, bool tenthsAlways) {
    base::require(std::isfinite(seconds) && std::abs(seconds) < 9.2e18, "a label of no time");
    // A hundredth of a tick forgives what a sum of intervals lacks.
    const double rounded = seconds + 1e-6;
    const auto whole = static_cast<long long>(rounded);
    const double fraction = rounded - static_cast<double>(whole);
    const auto minutes = whole / 60;
    if ((seconds >= 10 && !tenthsAlways) || fraction <= 0.01)
        return fmt::format("{}:{:02}", minutes, whole % 60);
    return fmt::format("{}:{:02}.{}", minutes, whole % 60, static_cast<int>(fraction * 10));
}

} // namespace vantro::timeline
