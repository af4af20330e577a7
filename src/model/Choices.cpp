#include "model/Choices.h"

#include <algorithm>

namespace vantro::model {

std::string_view rawValue(WebcamPosition position) {
    switch (position) {
    case WebcamPosition::topLeft:
        return "topLeft";
    case WebcamPosition::topRight:
        return "topRight";
    case WebcamPosition::bottomLeft:
        return "bottomLeft";
    case WebcamPosition::bottomRight:
        return "bottomRight";
    }
    return {};
}

std::string_view rawValue(CaptureMode mode) {
    switch (mode) {
    case CaptureMode::screen:
        return "screen";
    case CaptureMode::window:
        return "window";
    case CaptureMode::area:
        return "area";
    }
    return {};
}

std::optional<CaptureMode> captureModeFrom(std::string_view text) {
    const auto* found =
        std::ranges::find_if(allCaptureModes, [&](auto mode) { return rawValue(mode) == text; });
    return found == allCaptureModes.end() ? std::nullopt : std::optional(*found);
}

} // namespace vantro::model
