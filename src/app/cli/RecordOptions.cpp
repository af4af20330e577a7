#include "app/cli/RecordOptions.h"

#include "app/cli/CommonOptions.h"
#include "app/files/ProjectPackage.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <system_error>

namespace vantro::app::cli {
namespace {

constexpr double longestRecording = 1e6; // seconds, eleven days: a slip of the keyboard beyond
constexpr double longestDelay = 3600;    // seconds

/// Four finite numbers between commas.
std::optional<model::Rect> parseRect(const std::string& text) {
    std::array<double, 4> numbers{};
    const char* position = text.data();
    const char* const end = text.data() + text.size();
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        if (index > 0) {
            if (position == end || *position != ',')
                return {};
            ++position;
        }
        const auto [next, error] = std::from_chars(position, end, numbers[index]);
        if (error != std::errc() || !std::isfinite(numbers[index]))
            return {};
        position = next;
    }
    if (position != end)
        return {};
    return model::Rect{.x = numbers[0], .y = numbers[1], .width = numbers[2], .height = numbers[3]};
}

void addRequestOptions(base::Command command, capture::RecordingRequest& request) {
    const auto mode = command
                          .option(
                              "--mode",
                              [&request](const std::string& text) {
                                  request.mode = model::captureModeFrom(text).value();
                              },
                              "What to record (default: screen)")
                          .valueName("screen|area|window")
                          .oneOf({"screen", "area", "window"});
    command
        .option("--display", request.displayID,
                "The display to record, by the number that `vantro displays` prints")
        .valueName("ID");
    command
        .option(
            "--rect",
            [&request](const std::string& text) { request.area = parseRect(text).value(); },
            "The area to record, in points of the desktop; on Wayland from the "
            "top left corner of the screen that is chosen")
        .valueName("X,Y,W,H")
        .check([](const std::string& text) {
            return parseRect(text) ? std::string() : "four numbers X,Y,W,H are needed, not " + text;
        })
        .needs(mode);
    command.option("--fps", request.frameRate, "Frames a second, at most (default: 60)")
        .valueName("60|30|24|15")
        .oneOf({"60", "30", "24", "15"});
    const auto window =
        command
            .option("--window", request.windowID,
                    "The window to record, by the number that `vantro windows` prints")
            .valueName("ID")
            .needs(mode);
    command.flag("--choose", request.chooseAgain,
                 "Where the desktop asks what to record: ask anew, though it was chosen before");
    command
        .option("--window-title", request.windowTitle,
                "The front-most window with this text in its title, in any case")
        .valueName("TEXT")
        .needs(mode)
        .excludes(window);
}

void addSourceOptions(base::Command command, capture::SourceSwitches& sources) {
    sources.systemSound = true; // as in the window
    command.flag("--system-audio,!--no-system-audio", sources.systemSound,
                 "Record what the computer plays (default: yes)");
    command
        .option(
            "--microphone",
            [&sources](const std::string& device) {
                sources.microphone = true;
                sources.microphoneDevice = device;
            },
            "Record a microphone too: the default one, or one that `vantro devices` prints")
        .valueName("DEVICE")
        .optionalValue();
    command
        .option(
            "--webcam",
            [&sources](const std::string& device) {
                sources.camera = true;
                sources.cameraDevice = device;
            },
            "Record a camera too: the default one, or one that `vantro devices` prints")
        .valueName("DEVICE")
        .optionalValue();
}

void addEndOptions(base::Command command, RecordingLimits& limits) {
    command
        .option("--seconds", limits.seconds,
                "How long to record, without the pauses (default: until Ctrl-C)")
        .valueName("S")
        .within(0.1, longestRecording);
    command
        .option(
            "--max-size",
            [&limits](const std::string& text) { limits.bytes = parseByteSize(text); },
            "Stop when the movie is about this large, for example 500M or 2G")
        .valueName("SIZE")
        .check([](const std::string& text) {
            return parseByteSize(text) ? std::string()
                                       : text + " is no size such as 500M, 1.5G or 800000";
        });
}

} // namespace

void addRecordOptions(base::Command command, RecordOptions& options) {
    command.option("--output,-o", options.output, "The project to make, NAME.vantro")
        .required()
        .valueName("NAME")
        .check(endsIn({files::package::extension}));
    addRequestOptions(command, options.request);
    addSourceOptions(command, options.request.sources);
    command.option("--delay", options.delay, "How long to wait before the start")
        .valueName("S")
        .within(0.0, longestDelay);
    addEndOptions(command, options.limits);
    command.flag("--force", options.force, "Replace an existing project");
    command.flag("--json", options.json, "Print the summary as JSON");
}

} // namespace vantro::app::cli
