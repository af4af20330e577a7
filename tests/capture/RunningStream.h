#pragma once

#include "capture/Colors.h"
#include "capture/OwnProcess.h"
#include "capture/RecordingTarget.h"
#include "capture/SampleCollector.h"
#include "support/TestWindow.h"

#include <algorithm>

namespace vantro::test {

/// Makes a window ours.
inline const TestWindow::Names ours{.title = {}, .applicationClass = {}, .process = ownProcess};

inline capture::RecordingRequest windowRequest(const TestWindow& window) {
    capture::RecordingRequest request;
    request.mode = model::CaptureMode::window;
    request.windowID = window.id();
    return request;
}

/// Of the display with this name.
inline capture::RecordingRequest screenRequest(const XServer& server, const std::string& name) {
    const auto displays = connectTo(server)->displays().value();
    capture::RecordingRequest request;
    request.displayID =
        std::ranges::find(displays, name, &capture::ShareableDisplay::name)->displayID;
    return request;
}

inline capture::RecordingRequest areaRequest(model::Rect area) {
    capture::RecordingRequest request;
    request.mode = model::CaptureMode::area;
    request.area = area;
    return request;
}

/// A running stream from the server that a test gives.
struct RunningStream {
    /// The whole main display unless told otherwise.
    explicit RunningStream(const XServer& server, const capture::RecordingRequest& request = {})
        : platform(connectTo(server))
        , stream(platform
                     ->makeScreenStream(
                         awaitTarget(*platform, request).value_or(capture::RecordingTarget()))
                     .value()) {
        stream->startCapture(collector);
    }

    bool awaitColor(int x, int y, std::uint32_t color) {
        return eventually([=, this] { return everHadColor(x, y, color); });
    }
    /// As soon as the newest picture has the color.
    bool awaitLatestColor(int x, int y, std::uint32_t color) {
        return eventually([=, this] {
            const auto samples = collector.samples();
            return !samples.empty() && hasColor(*samples.back().pixels, x, y, color);
        });
    }
    /// Whether any picture so far has this color at a pixel.
    bool everHadColor(int x, int y, std::uint32_t color) {
        return std::ranges::any_of(collector.samples(), [=](const auto& sample) {
            return hasColor(*sample.pixels, x, y, color);
        });
    }

    std::unique_ptr<capture::CapturePlatform> platform;
    SampleCollector collector;
    std::unique_ptr<capture::ScreenStream> stream;
};

} // namespace vantro::test
