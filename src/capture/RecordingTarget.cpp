#include "capture/RecordingTarget.h"

#include "base/Fatal.h"
#include "model/VantroError.h"

#include <algorithm>
#include <limits>

namespace vantro::capture {
namespace {

constexpr base::HostDuration frameInterval{1'000'000'000 / 60}; // 60 frames a second at most

[[noreturn]] void failStart(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::captureStartFailed, message);
}

/// Whole points times whole pixels per point, rounded down to even.
int evenPixels(double points, std::int64_t scale) {
    const auto pixels = base::checkedMultiply(base::truncatedToInteger(points), scale);
    base::require(pixels >= 0 && pixels <= std::numeric_limits<int>::max(),
                  "picture size out of range");
    return static_cast<int>(pixels) & ~1;
}

std::vector<std::uint32_t> ownWindows(const ShareableContent& content) {
    std::vector<std::uint32_t> own;
    for (const auto& window : content.windows)
        if (window.bundleIdentifier == ownBundleIdentifier)
            own.push_back(window.windowID);
    return own;
}

} // namespace

model::Rect clippedArea(model::Rect area, const ShareableContent& content) {
    double left = std::numeric_limits<double>::max();
    double top = left;
    double right = -left;
    double bottom = -left;
    for (const auto& [id, name, frame, scale, isMain] : content.displays) {
        left = std::min(left, frame.x);
        top = std::min(top, frame.y);
        right = std::max(right, frame.x + frame.width);
        bottom = std::max(bottom, frame.y + frame.height);
    }
    left = std::max(left, area.x);
    top = std::max(top, area.y);
    const model::Rect clipped{.x = left,
                              .y = top,
                              .width = std::min(right, area.x + area.width) - left,
                              .height = std::min(bottom, area.y + area.height) - top};
    if (!(clipped.width > 0 && clipped.height > 0))
        throw model::VantroError(model::VantroError::Kind::invalidSelection);
    return clipped;
}

RecordingTarget resolveTarget(const RecordingChoice& choice, const ShareableContent& content) {
    const auto display =
        std::ranges::find(content.displays, choice.displayID, &ShareableDisplay::displayID);
    if (display == content.displays.end())
        failStart("Display not found");
    RecordingTarget target;
    target.display = *display;
    target.filter.displayID = choice.displayID;
    target.stream.minimumFrameInterval = frameInterval;
    const model::Rect frame = display->frame;
    model::Size size{.width = frame.width, .height = frame.height};
    switch (choice.captureMode) {
    case model::CaptureMode::screen:
        target.filter.excludedWindows = ownWindows(content);
        break;
    case model::CaptureMode::area: {
        const model::Rect area = choice.captureRect;
        target.filter.excludedWindows = ownWindows(content);
        target.stream.sourceRect = model::Rect{.x = area.x - frame.x,
                                               .y = area.y - frame.y,
                                               .width = area.width,
                                               .height = area.height};
        size = {.width = area.width, .height = area.height};
        break;
    }
    case model::CaptureMode::window:
        if (!choice.selectedWindow)
            failStart("No window selected");
        target.filter.window = choice.selectedWindow->windowID;
        size = {.width = choice.selectedWindow->frame.width,
                .height = choice.selectedWindow->frame.height};
        break;
    }
    const auto scale = base::truncatedToInteger(display->backingScaleFactor);
    target.stream.width = evenPixels(size.width, scale);
    target.stream.height = evenPixels(size.height, scale);
    if (choice.captureMode == model::CaptureMode::area &&
        (target.stream.width == 0 || target.stream.height == 0))
        throw model::VantroError(model::VantroError::Kind::invalidSelection);
    return target;
}

} // namespace vantro::capture
