#include "model/Validation.h"

#include <cmath>
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
// Neighbouring segments that share a bound may miss each other by rounding.
constexpr double overlapTolerance = 1e-9;

/// Collects problems below one part of the document at a time.
class Findings {
  public:
    explicit Findings(std::size_t limit) : m_limit(limit) {}

    bool isFull() const { return m_problems.size() >= m_limit; }
    std::vector<std::string> take() { return std::move(m_problems); }

    /// The part that the keys of the following checks belong to: "metadata.".
    void enter(std::string_view prefix) { m_list = prefix, m_index.reset(); }
    /// The same for an element of a list: "segments", 1.
    void enter(std::string_view list, std::size_t index) { m_list = list, m_index = index; }

    /// Numbers that are not finite lie in no range.
    void inRange(std::string_view key, double value, double low, double high) {
        if (!(value >= low && value <= high))
            add(key, fmt::format("must be from {} to {}, is {}", low, high, value));
    }
    void within(std::string_view key, double value, double limit) {
        inRange(key, value, -limit, limit);
    }
    void positive(std::string_view key, double value, double high) {
        if (!(value > 0))
            add(key, fmt::format("must be greater than 0, is {}", value));
        else if (!(value <= high))
            add(key, fmt::format("must be at most {}, is {}", high, value));
    }
    void add(std::string_view key, std::string_view text) {
        if (isFull())
            return;
        m_problems.push_back(m_index ? fmt::format("{}[{}].{}: {}", m_list, *m_index, key, text)
                                     : fmt::format("{}{}: {}", m_list, key, text));
    }

  private:
    std::size_t m_limit;
    std::vector<std::string> m_problems;
    std::string m_list;
    std::optional<std::size_t> m_index;
};

void checkClicks(Findings& findings, const std::string& list,
                 const std::vector<ClickEvent>& clicks) {
    for (std::size_t i = 0; i < clicks.size() && !findings.isFull(); ++i) {
        const auto& click = clicks[i];
        findings.enter(list, i);
        findings.within("x", click.x, positionLimit);
        findings.within("y", click.y, positionLimit);
        findings.within("timestamp", click.timestamp, timeLimit);
        findings.within("startOffset", click.startOffset, timeLimit);
        findings.within("endOffset", click.endOffset, timeLimit);
        findings.positive("zoomLevel", click.zoomLevel, zoomLimit);
    }
}

void checkCursor(Findings& findings, const std::string& list,
                 const std::vector<CursorPosition>& positions) {
    for (std::size_t i = 0; i < positions.size() && !findings.isFull(); ++i) {
        findings.enter(list, i);
        findings.within("x", positions[i].x, positionLimit);
        findings.within("y", positions[i].y, positionLimit);
        findings.within("timestamp", positions[i].timestamp, timeLimit);
    }
}

void checkMetadata(Findings& findings, const std::string& prefix,
                   const RecordingMetadata& metadata) {
    findings.enter(prefix);
    findings.within("startTime", metadata.startTime, timeLimit);
    findings.inRange("endTime", metadata.endTime, 0, timeLimit);
    if (metadata.endTime < metadata.startTime)
        findings.add("endTime", "must not lie before startTime");
    if (metadata.frameRate < 1 || metadata.frameRate > frameRateLimit)
        findings.add("frameRate", fmt::format("must be from 1 to {}, is {}", frameRateLimit,
                                              metadata.frameRate));
    findings.positive("displayScaleFactor", metadata.displayScaleFactor, displayScaleLimit);
    findings.enter(prefix + "captureRect.");
    findings.within("x", metadata.captureRect.x, positionLimit);
    findings.within("y", metadata.captureRect.y, positionLimit);
    findings.inRange("width", metadata.captureRect.width, 0, positionLimit);
    findings.inRange("height", metadata.captureRect.height, 0, positionLimit);
    checkCursor(findings, prefix + "cursorPositions", metadata.cursorPositions);
    checkClicks(findings, prefix + "clickEvents", metadata.clickEvents);
}

void checkSegments(Findings& findings, const std::vector<TimelineSegment>& segments) {
    findings.enter("");
    if (segments.empty())
        findings.add("segments", "nothing is left of the recording");
    for (std::size_t i = 0; i < segments.size() && !findings.isFull(); ++i) {
        const auto& segment = segments[i];
        findings.enter("segments", i);
        findings.inRange("startFraction", segment.startFraction, 0, 1);
        findings.inRange("endFraction", segment.endFraction, 0, 1);
        if (segment.endFraction <= segment.startFraction)
            findings.add("endFraction", "must lie after startFraction");
        if (i > 0 && segment.startFraction < segments[i - 1].endFraction - overlapTolerance)
            findings.add("startFraction", "must not lie before the end of the segment before it");
        findings.positive("speed", segment.speed, fastestSpeed);
        if (segment.speed > 0 && segment.speed < slowestSpeed)
            findings.add("speed",
                         fmt::format("must be at least {}, is {}", slowestSpeed, segment.speed));
    }
}

void checkBackground(Findings& findings, const BackgroundSettings& background) {
    findings.enter("backgroundSettings.");
    if (!(background.padding >= 0 && background.padding < 0.5))
        findings.add("padding",
                     fmt::format("must be at least 0 and below 0.5, is {}", background.padding));
    findings.inRange("cornerRadius", background.cornerRadius, 0, positionLimit);
    if (const auto* color = std::get_if<BackgroundColor>(&background.type)) {
        findings.enter("backgroundSettings.type.color.");
        findings.inRange("red", color->red, 0, 1);
        findings.inRange("green", color->green, 0, 1);
        findings.inRange("blue", color->blue, 0, 1);
    } else if (std::get<BackgroundImageSource>(background.type).url.filename().empty()) {
        findings.enter("backgroundSettings.type.image.");
        findings.add("customFilename", "names no file");
    }
}

} // namespace

std::vector<std::string> validationProblems(const Project& project, std::size_t limit) {
    const auto& edit = project.edit;
    Findings findings(limit);
    checkMetadata(findings, "metadata.", project.recording.metadata());
    checkClicks(findings, "editableClickEvents", edit.clickEvents);
    checkSegments(findings, edit.segments);
    checkBackground(findings, edit.background);
    findings.enter("");
    findings.inRange("cursorScale", edit.cursorScale, 0, cursorScaleLimit);
    findings.positive("webcamSize", edit.webcamSize, 1);
    findings.inRange("systemAudioVolume", edit.systemAudioVolume, 0, volumeLimit);
    findings.inRange("microphoneVolume", edit.microphoneVolume, 0, volumeLimit);
    return findings.take();
}

std::vector<std::string> validationProblems(const RecordingMetadata& metadata, std::size_t limit) {
    Findings findings(limit);
    checkMetadata(findings, "", metadata);
    return findings.take();
}

} // namespace vantro::model
