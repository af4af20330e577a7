#include "model/Choices.h"

#include <array>

namespace vantro::model {
namespace {

template <typename Choice, std::size_t count>
std::optional<Choice> choiceFrom(const std::array<Choice, count>& choices, std::string_view text) {
    for (const auto choice : choices) {
        if (rawValue(choice) == text)
            return choice;
    }
    return std::nullopt;
}

} // namespace

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

std::optional<WebcamPosition> webcamPositionFrom(std::string_view text) {
    return choiceFrom(allWebcamPositions, text);
}

std::optional<CaptureMode> captureModeFrom(std::string_view text) {
    return choiceFrom(allCaptureModes, text);
}

} // namespace vantro::model
