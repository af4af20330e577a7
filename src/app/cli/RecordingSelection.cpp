#include "app/cli/RecordingSelection.h"

#include "model/VantroError.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace vantro::app::cli {
namespace {

[[noreturn]] void failStart(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::captureStartFailed, message);
}

const capture::ShareableDisplay& findDisplay(const RecordingSelection& selection,
                                             const capture::ShareableContent& content) {
    const auto& displays = content.displays;
    const auto display = selection.displayID
                             ? std::ranges::find(displays, *selection.displayID,
                                                 &capture::ShareableDisplay::displayID)
                             : displays.begin();
    if (display == displays.end())
        failStart("Display not found");
    return *display;
}

std::string inLowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char character) {
        const bool isUpper = character >= 'A' && character <= 'Z';
        return isUpper ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return text;
}

/// The front-most one that fits.
const capture::ShareableWindow& findWindow(const RecordingSelection& selection,
                                           const capture::ShareableContent& content) {
    const std::string title = inLowerCase(selection.windowTitle);
    const auto fits = [&](const capture::ShareableWindow& window) {
        if (window.bundleIdentifier == capture::ownBundleIdentifier)
            return false;
        if (selection.windowID)
            return window.windowID == *selection.windowID;
        return !title.empty() && window.isOnScreen &&
               inLowerCase(window.title).find(title) != std::string::npos;
    };
    const auto window = std::ranges::find_if(content.windows, fits);
    if (window == content.windows.end())
        failStart("No window selected");
    return *window;
}

} // namespace

std::optional<model::Rect> parseRect(const std::string& text) {
    std::array<double, 4> numbers{};
    const char* position = text.data();
    const char* const end = text.data() + text.size();
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        if (index > 0 && (position == end || *position++ != ','))
            return {};
        const auto [next, error] = std::from_chars(position, end, numbers[index]);
        if (error != std::errc() || !std::isfinite(numbers[index]))
            return {};
        position = next;
    }
    if (position != end)
        return {};
    return model::Rect{.x = numbers[0], .y = numbers[1], .width = numbers[2], .height = numbers[3]};
}

capture::RecordingChoice chooseRecording(const RecordingSelection& selection,
                                         const capture::ShareableContent& content) {
    const capture::ShareableDisplay& display = findDisplay(selection, content);
    capture::RecordingChoice choice;
    choice.captureMode =
        model::captureModeFrom(selection.mode).value_or(model::CaptureMode::screen);
    choice.displayID = display.displayID;
    switch (choice.captureMode) {
    case model::CaptureMode::screen:
        choice.captureRect = display.frame;
        break;
    case model::CaptureMode::area:
        // Without a display that is asked for, an area counts from the main one: the pointer's
        // coordinates do too, so that its places are exact on every display.
        choice.captureRect =
            capture::clippedArea(parseRect(selection.rect).value_or(model::Rect{}), content);
        break;
    case model::CaptureMode::window:
        choice.selectedWindow = findWindow(selection, content);
        choice.captureRect = choice.selectedWindow->frame;
        break;
    }
    return choice;
}

} // namespace vantro::app::cli
