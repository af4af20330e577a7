#include "capture/camera/CameraFormat.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>

namespace vantro::capture::camera {
namespace {

using media::RawLayout;

constexpr int wantedWidth = 640;
constexpr int wantedHeight = 480;
// Below this, movement is seen as single pictures.
constexpr double fluent = 15;
// More is twice the work for what nobody sees in a corner of a film.
constexpr double highestUseful = 60;
constexpr double sameRate = 0.5; // 29.97 and 30 are

/// What it costs to make an encoder's picture of it, the least first.
constexpr std::array costs{RawLayout::i420, RawLayout::nv12, RawLayout::yuyv, RawLayout::uyvy,
                           RawLayout::yv12, RawLayout::nv21, RawLayout::yvyu, RawLayout::gray,
                           RawLayout::bgrx, RawLayout::rgbx, RawLayout::xrgb, RawLayout::xbgr,
                           RawLayout::bgra, RawLayout::rgba, RawLayout::argb, RawLayout::abgr,
                           RawLayout::bgr,  RawLayout::rgb,  RawLayout::mjpeg};

/// Smaller is better.
auto rank(const CameraFormat& format) {
    // Too small is worse than too large: what is not there cannot be shown.
    const auto distance = [](int length, int wanted) {
        return std::abs(std::log2(static_cast<double>(length) / wanted)) *
               (length < wanted ? 1.5 : 1.0);
    };
    const double away = distance(format.width, wantedWidth) + distance(format.height, wantedHeight);
    const double useful = std::min(format.rate, highestUseful);
    return std::tuple(format.rate < fluent, away, -std::round(useful / sameRate),
                      std::max(format.rate, highestUseful),
                      std::ranges::find(costs, format.layout) - costs.begin());
}

CameraFormat nearest(CameraFormat format) {
    format.width = std::clamp(wantedWidth, format.width, std::max(format.width, format.mostWidth));
    format.height =
        std::clamp(wantedHeight, format.height, std::max(format.height, format.mostHeight));
    format.rate = std::clamp(highestUseful, format.rate, std::max(format.rate, format.highestRate));
    format.mostWidth = format.width;
    format.mostHeight = format.height;
    format.highestRate = format.rate;
    return format;
}

} // namespace

std::optional<CameraFormat> chooseFormat(std::span<const CameraFormat> offered) {
    std::optional<CameraFormat> best;
    for (const auto& each : offered) {
        if (each.width <= 0 || each.height <= 0 || !(each.rate >= 0))
            continue;
        const auto format = nearest(each);
        if (!best || rank(format) < rank(*best))
            best = format;
    }
    return best;
}

} // namespace vantro::capture::camera
