#pragma once

#include "capture/Colors.h"
#include "capture/OwnProcess.h"
#include "capture/RecordingTarget.h"
#include "capture/SampleCollector.h"
#include "support/Eventually.h"
#include "support/TestWindow.h"

#include <algorithm>

namespace vantro::test {

/// As a user chooses a window.
inline capture::RecordingChoice choiceOf(const XServer& server, const TestWindow& window) {
    const auto content = connectTo(server)->shareableContent().value();
    const auto found =
        std::ranges::find(content.windows, window.id(), &capture::ShareableWindow::windowID);
    return {.captureMode = model::CaptureMode::window,
            .displayID = content.displays.front().displayID,
            .captureRect = found->frame,
            .selectedWindow = *found};
}

/// A running stream from the server that a test gives.
struct RunningStream {
    /// The whole main display, or the part of it in `sourceRect`.
    explicit RunningStream(const XServer& server, std::optional<model::Rect> sourceRect = {})
        : platform(connectTo(server)) {
        const auto display = platform->shareableContent().value().displays.front();
        const model::Rect shown = sourceRect.value_or(display.frame);
        capture::ContentFilter filter;
        filter.displayID = display.displayID;
        capture::ScreenStreamConfiguration configuration;
        configuration.width = static_cast<int>(shown.width) & ~1;
        configuration.height = static_cast<int>(shown.height) & ~1;
        configuration.sourceRect = sourceRect;
        stream = platform->makeScreenStream(filter, configuration).value();
        stream->startCapture(collector);
    }

    /// What a user chooses, resolved as a recording does it.
    RunningStream(const XServer& server, const capture::RecordingChoice& choice)
        : platform(connectTo(server)) {
        const auto target = capture::resolveTarget(choice, platform->shareableContent().value());
        stream = platform->makeScreenStream(target.filter, target.stream).value();
        stream->startCapture(collector);
    }

    bool awaitColor(int x, int y, std::uint32_t color) {
        return collector.awaitSample([=](const capture::ScreenSample& sample) {
            return hasColor(*sample.pixels, x, y, color);
        });
    }
    /// As soon as the newest picture has the colour.
    bool awaitLatestColor(int x, int y, std::uint32_t color) {
        return eventually([=, this] {
            const auto latest = collector.latest();
            return latest && hasColor(*latest, x, y, color);
        });
    }
    /// Whether any picture so far has this colour at a pixel.
    bool everHadColor(int x, int y, std::uint32_t color) {
        for (const auto& sample : collector.samples())
            if (hasColor(*sample.pixels, x, y, color))
                return true;
        return false;
    }

    std::unique_ptr<capture::CapturePlatform> platform;
    SampleCollector collector;
    std::unique_ptr<capture::ScreenStream> stream;
};

} // namespace vantro::test
