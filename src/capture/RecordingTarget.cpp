#include "capture/RecordingTarget.h"

#include "base/Fatal.h"
#include "model/VantroError.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vantro::capture {
namespace {

[[noreturn]] void failStart(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::captureStartFailed, message);
}

/// Whole pixels of a length in points, rounded down to even. Thirds of points come back a hair
/// below the pixels that they were made from.
int evenPixels(double points, double scale) {
    constexpr double hair = 1.0 / 1024;
    const auto pixels = base::truncatedToInteger(points * std::trunc(scale) + hair);
    base::require(pixels >= 0 && pixels <= std::numeric_limits<int>::max(),
                  "picture size out of range");
    return static_cast<int>(pixels) & ~1;
}

bool touch(const model::Rect& a, const model::Rect& b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height &&
           b.y < a.y + a.height;
}

/// The part of an area that lies inside of the smallest rectangle around all displays.
model::Rect clippedArea(const model::Rect& area, const std::vector<ShareableDisplay>& displays) {
    double left = std::numeric_limits<double>::max();
    double top = left;
    double right = -left;
    double bottom = -left;
    for (const ShareableDisplay& display : displays) {
        left = std::min(left, display.frame.x);
        top = std::min(top, display.frame.y);
        right = std::max(right, display.frame.x + display.frame.width);
        bottom = std::max(bottom, display.frame.y + display.frame.height);
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

std::string inLowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char character) {
        const bool isUpper = character >= 'A' && character <= 'Z';
        return isUpper ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return text;
}

/// The front-most one that fits.
const ShareableWindow& findWindow(const RecordingRequest& request,
                                  const std::vector<ShareableWindow>& windows) {
    const std::string title = inLowerCase(request.windowTitle);
    const auto window = std::ranges::find_if(windows, [&](const ShareableWindow& each) {
        if (each.bundleIdentifier == ownBundleIdentifier)
            return false;
        if (request.windowID)
            return each.windowID == *request.windowID;
        return !title.empty() && each.isOnScreen &&
               inLowerCase(each.title).find(title) != std::string::npos;
    });
    if (window == windows.end())
        failStart("No window selected");
    return *window;
}

std::vector<std::uint32_t> ownWindows(const std::vector<ShareableWindow>& windows) {
    std::vector<std::uint32_t> own;
    for (const ShareableWindow& window : windows)
        if (window.bundleIdentifier == ownBundleIdentifier)
            own.push_back(window.windowID);
    return own;
}

const ShareableDisplay& findDisplay(const RecordingRequest& request, const model::Rect* place,
                                    const std::vector<ShareableDisplay>& displays) {
    const ShareableDisplay* display = displays.empty() ? nullptr : &displays.front();
    if (request.displayID) {
        const auto named =
            std::ranges::find(displays, *request.displayID, &ShareableDisplay::displayID);
        display = named == displays.end() ? nullptr : &*named;
    } else if (place != nullptr) {
        display = displayUnder(*place, displays);
    }
    if (display == nullptr)
        failStart("Display not found");
    return *display;
}

} // namespace

const ShareableDisplay* displayUnder(const model::Rect& rect,
                                     const std::vector<ShareableDisplay>& displays) {
    const auto under = std::ranges::find_if(
        displays, [&](const ShareableDisplay& display) { return touch(display.frame, rect); });
    if (under != displays.end())
        return &*under;
    return displays.empty() ? nullptr : &displays.front();
}

RecordingTarget resolveTarget(const RecordingRequest& request, const ShareableContent& content) {
    RecordingTarget target;
    target.mode = request.mode;
    switch (request.mode) {
    case model::CaptureMode::screen:
        target.display = findDisplay(request, nullptr, content.displays);
        target.captureRect = target.display.frame;
        target.excludedWindows = ownWindows(content.windows);
        break;
    case model::CaptureMode::area:
        target.display = findDisplay(request, &request.area, content.displays);
        target.captureRect = clippedArea(request.area, content.displays);
        target.excludedWindows = ownWindows(content.windows);
        break;
    case model::CaptureMode::window: {
        const ShareableWindow& window = findWindow(request, content.windows);
        target.display = findDisplay(request, &window.frame, content.displays);
        target.captureRect = window.frame;
        target.windowID = window.windowID;
        break;
    }
    }
    target.width = evenPixels(target.captureRect.width, target.display.backingScaleFactor);
    target.height = evenPixels(target.captureRect.height, target.display.backingScaleFactor);
    if (request.mode == model::CaptureMode::area && (target.width == 0 || target.height == 0))
        throw model::VantroError(model::VantroError::Kind::invalidSelection);
    return target;
}

RecordingTarget cropped(RecordingTarget target, const model::Rect& area) {
    const double scale = target.display.backingScaleFactor;
    const auto pixels = [scale](double points, double limit) {
        return static_cast<int>(std::lround(std::clamp(points * scale, 0.0, limit)));
    };
    PictureCrop crop;
    const model::Rect whole = target.captureRect;
    crop.width = static_cast<int>(std::lround(whole.width * scale));
    crop.height = static_cast<int>(std::lround(whole.height * scale));
    auto& part = crop.part;
    part.x = pixels(area.x, crop.width);
    part.y = pixels(area.y, crop.height);
    part.width = (pixels(area.x + area.width, crop.width) - part.x) & ~1;
    part.height = (pixels(area.y + area.height, crop.height) - part.y) & ~1;
    if (part.width <= 0 || part.height <= 0)
        throw model::VantroError(model::VantroError::Kind::invalidSelection);
    target.mode = model::CaptureMode::area;
    target.captureRect = {.x = whole.x + part.x / scale,
                          .y = whole.y + part.y / scale,
                          .width = part.width / scale,
                          .height = part.height / scale};
    target.width = part.width;
    target.height = part.height;
    target.crop = crop;
    return target;
}

} // namespace vantro::capture
