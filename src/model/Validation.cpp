#include "model/Validation.h"

#include <string>
#include <string_view>

#include <fmt/format.h>

namespace vantro::model {
namespace {

// Limits, both far beyond sense and far within what the arithmetic bears: a time in seconds (30
// years) fits 64-bit media times of any timescale, a position in points a 32-bit float.
constexpr double timeLimit = 1e9;
constexpr double positionLimit = 1e9;
constexpr double zoomLimit = 1000;
constexpr double displayScaleLimit = 100;
constexpr double cursorScaleLimit = 1000;
constexpr std::int64_t frameRateLimit = 1000;
constexpr double volumeLimit = 2;
// Speeds beyond these play a recording of a minute within a frame, or for days.
constexpr double slowestSpeed = 0.001;
constexpr double fastestSpeed = 1000;
// Neighboring segments that share a bound may miss each other by rounding.
constexpr double overlapTolerance = 1e-9;

/// Checks the values of one part of the document at a time.
class Check {
  public:
    /// The part that the keys of the following checks belong to: "metadata.captureRect.".
    explicit Check(std::string_view prefix) : m_prefix(prefix) {}
    /// The same for an element of a list: "metadata.", "clickEvents", 1.
    Check(std::string_view prefix, std::string_view list, std::size_t index)
        : m_prefix(prefix), m_list(list), m_index(index) {}

    [[noreturn]] void fail(std::string_view key, std::string_view text) const {
        const auto element = m_list.empty() ? "" : fmt::format("{}[{}].", m_list, m_index);
        throw DecodingError(fmt::format("{}{}{}: {}", m_prefix, element, key, text));
    }
    /// Numbers that are not finite lie in no range.
    void inRange(std::string_view key, double value, double low, double high) const {
        if (!(value >= low && value <= high))
            fail(key, fmt::format("must be from {} to {}, is {}", low, high, value));
    }
    void within(std::string_view key, double value, double limit) const {
        inRange(key, value, -limit, limit);
    }
    void positive(std::string_view key, double value, double high) const {
        if (!(value > 0))
            fail(key, fmt::format("must be greater than 0, is {}", value));
        if (!(value <= high))
            fail(key, fmt::format("must be at most {}, is {}", high, value));
    }

  private:
    std::string_view m_prefix;
    std::string_view m_list;
    std::size_t m_index = 0;
};

void checkClicks(std::string_view prefix, std::string_view list,
                 const std::vector<ClickEvent>& clicks) {
    for (std::size_t i = 0; i < clicks.size(); ++i) {
        const auto& click = clicks[i];
        const Check check(prefix, list, i);
        check.within("x", click.x, positionLimit);
        check.within("y", click.y, positionLimit);
        check.within("timestamp", click.timestamp, timeLimit);
        check.within("startOffset", click.startOffset, timeLimit);
        check.within("endOffset", click.endOffset, timeLimit);
        check.positive("zoomLevel", click.zoomLevel, zoomLimit);
    }
}

void checkCursor(std::string_view prefix, const std::vector<CursorPosition>& positions) {
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const Check check(prefix, "cursorPositions", i);
        check.within("x", positions[i].x, positionLimit);
        check.within("y", positions[i].y, positionLimit);
        check.within("timestamp", positions[i].timestamp, timeLimit);
    }
}

void checkMetadata(std::string_view prefix, const RecordingMetadata& metadata) {
    const Check check(prefix);
    check.within("startTime", metadata.startTime, timeLimit);
    check.inRange("endTime", metadata.endTime, 0, timeLimit);
    if (metadata.endTime < metadata.startTime)
        check.fail("endTime", "must not lie before startTime");
    if (metadata.frameRate < 1 || metadata.frameRate > frameRateLimit)
        check.fail("frameRate",
                   fmt::format("must be from 1 to {}, is {}", frameRateLimit, metadata.frameRate));
    check.positive("displayScaleFactor", metadata.displayScaleFactor, displayScaleLimit);
    check.within("captureRect.x", metadata.captureRect.x, positionLimit);
    check.within("captureRect.y", metadata.captureRect.y, positionLimit);
    check.inRange("captureRect.width", metadata.captureRect.width, 0, positionLimit);
    check.inRange("captureRect.height", metadata.captureRect.height, 0, positionLimit);
    checkCursor(prefix, metadata.cursorPositions);
    checkClicks(prefix, "clickEvents", metadata.clickEvents);
}

void checkSegments(const std::vector<TimelineSegment>& segments) {
    if (segments.empty())
        Check("").fail("segments", "nothing is left of the recording");
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const auto& segment = segments[i];
        const Check check("", "segments", i);
        check.inRange("startFraction", segment.startFraction, 0, 1);
        check.inRange("endFraction", segment.endFraction, 0, 1);
        if (segment.endFraction <= segment.startFraction)
            check.fail("endFraction", "must lie after startFraction");
        if (i > 0 && segment.startFraction < segments[i - 1].endFraction - overlapTolerance)
            check.fail("startFraction", "must not lie before the end of the segment before it");
        check.positive("speed", segment.speed, fastestSpeed);
        if (segment.speed < slowestSpeed)
            check.fail("speed",
                       fmt::format("must be at least {}, is {}", slowestSpeed, segment.speed));
    }
}

void checkBackground(const BackgroundSettings& background) {
    const Check check("backgroundSettings.");
    if (!(background.padding >= 0 && background.padding < 0.5))
        check.fail("padding",
                   fmt::format("must be at least 0 and below 0.5, is {}", background.padding));
    check.inRange("cornerRadius", background.cornerRadius, 0, positionLimit);
    if (const auto* color = std::get_if<BackgroundColor>(&background.type)) {
        check.inRange("type.color.red", color->red, 0, 1);
        check.inRange("type.color.green", color->green, 0, 1);
        check.inRange("type.color.blue", color->blue, 0, 1);
    } else if (std::get<BackgroundImageSource>(background.type).path.filename().empty()) {
        check.fail("type.image.customFilename", "names no file");
    }
}

} // namespace

void validate(const RecordingMetadata& metadata) {
    checkMetadata("", metadata);
}

void validate(const Look& look) {
    checkBackground(look.background);
}

void validate(const RecordingMetadata& metadata, const Edit& edit) {
    checkMetadata("metadata.", metadata);
    checkClicks("", "editableClickEvents", edit.clickEvents);
    checkSegments(edit.segments);
    checkBackground(edit.background);
    const Check check("");
    check.inRange("cursorScale", edit.cursorScale, 0, cursorScaleLimit);
    check.positive("webcamSize", edit.webcamSize, 1);
    check.inRange("systemAudioVolume", edit.systemAudioVolume, 0, volumeLimit);
    check.inRange("microphoneVolume", edit.microphoneVolume, 0, volumeLimit);
}

} // namespace vantro::model
