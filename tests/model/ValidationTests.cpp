#include "model/SampleProject.h"
#include "model/Validation.h"

#include <functional>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::model {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto nan = std::numeric_limits<double>::quiet_NaN();
constexpr auto infinity = std::numeric_limits<double>::infinity();

/// The parts of a project, open to changes.
struct Parts {
    RecordingMetadata metadata = sampleMetadata();
    Edit edit = sampleEdit();
    std::vector<TimelineSegment> segments = edit.segments;
    std::vector<ClickEvent> clicks = edit.clickEvents;
};

std::vector<std::string> problemsAfter(const std::function<void(Parts&)>& change) {
    Parts parts;
    change(parts);
    parts.edit.segments = parts.segments;
    parts.edit.clickEvents = parts.clicks;
    return validationProblems(Project{"", Recording("", parts.metadata), parts.edit});
}

TEST(Validation, FindsNothingWrongWithSoundProjects) {
    EXPECT_THAT(validationProblems(sampleProject()), IsEmpty());
    EXPECT_THAT(validationProblems(sampleMetadata()), IsEmpty());
    EXPECT_THAT(validationProblems(Project{"", Recording("", RecordingMetadata{}), {}}), IsEmpty());
    // Bounds that meet, a cursor of size nothing, positions outside the recording.
    EXPECT_THAT(problemsAfter([](Parts& project) {
                    project.segments[0].endFraction = project.segments[1].startFraction;
                    project.edit.cursorScale = 0;
                    project.edit.background.padding = 0;
                    project.metadata.cursorPositions[0].x = -5000;
                }),
                IsEmpty());
}

TEST(Validation, NamesWhatIsWrongWithSegments) {
    const auto first = [](auto change) {
        return problemsAfter([&](Parts& project) { change(project.segments[0]); });
    };
    EXPECT_THAT(first([](auto& segment) { segment.speed = 0; }),
                ElementsAre("segments[0].speed: must be greater than 0, is 0"));
    EXPECT_THAT(first([](auto& segment) { segment.speed = -2; }),
                ElementsAre("segments[0].speed: must be greater than 0, is -2"));
    EXPECT_THAT(first([](auto& segment) { segment.speed = nan; }), SizeIs(1));
    EXPECT_THAT(first([](auto& segment) { segment.speed = infinity; }),
                ElementsAre("segments[0].speed: must be at most 1000, is inf"));
    EXPECT_THAT(first([](auto& segment) { segment.speed = 1e-300; }),
                ElementsAre("segments[0].speed: must be at least 0.001, is 1e-300"));
    EXPECT_THAT(first([](auto& segment) { segment.startFraction = -0.1; }),
                ElementsAre("segments[0].startFraction: must be from 0 to 1, is -0.1"));
    EXPECT_THAT(first([](auto& segment) { segment.endFraction = nan; }),
                ElementsAre("segments[0].endFraction: must be from 0 to 1, is nan"));
    EXPECT_THAT(first([](auto& segment) { segment.endFraction = segment.startFraction; }),
                ElementsAre("segments[0].endFraction: must lie after startFraction"));
    EXPECT_THAT(
        first([](auto& segment) { segment.endFraction = 0.7; }),
        ElementsAre(
            "segments[1].startFraction: must not lie before the end of the segment before it"));
    EXPECT_THAT(problemsAfter([](Parts& project) { project.segments.clear(); }),
                ElementsAre("segments: nothing is left of the recording"));
}

TEST(Validation, NamesWhatIsWrongElsewhere) {
    const auto expect = [](const std::function<void(Parts&)>& change, const char* path) {
        const auto problems = problemsAfter(change);
        ASSERT_THAT(problems, SizeIs(1)) << path;
        EXPECT_THAT(problems[0], testing::StartsWith(std::string(path) + ": must"));
    };
    expect(
        [](auto& p) {
            p.metadata.endTime = -1;
            p.metadata.startTime = -2;
        },
        "metadata.endTime");
    expect([](auto& p) { p.metadata.endTime = 1e300; }, "metadata.endTime");
    expect([](auto& p) { p.metadata.startTime = 20; }, "metadata.endTime");
    expect([](auto& p) { p.metadata.startTime = nan; }, "metadata.startTime");
    expect([](auto& p) { p.metadata.frameRate = 0; }, "metadata.frameRate");
    expect([](auto& p) { p.metadata.displayScaleFactor = 0; }, "metadata.displayScaleFactor");
    expect([](auto& p) { p.metadata.captureRect.height = -1; }, "metadata.captureRect.height");
    expect([](auto& p) { p.metadata.cursorPositions[1].timestamp = infinity; },
           "metadata.cursorPositions[1].timestamp");
    expect([](auto& p) { p.metadata.clickEvents[0].x = nan; }, "metadata.clickEvents[0].x");
    expect([](auto& p) { p.clicks[0].zoomLevel = 0; }, "editableClickEvents[0].zoomLevel");
    expect([](auto& p) { p.clicks[0].endOffset = -infinity; }, "editableClickEvents[0].endOffset");
    expect([](auto& p) { p.edit.background.padding = 0.5; }, "backgroundSettings.padding");
    expect([](auto& p) { p.edit.background.cornerRadius = nan; },
           "backgroundSettings.cornerRadius");
    expect([](auto& p) { p.edit.background.type = BackgroundColor{0, 2, 0}; },
           "backgroundSettings.type.color.green");
    expect([](auto& p) { p.edit.cursorScale = -1; }, "cursorScale");
    expect([](auto& p) { p.edit.webcamSize = 1.5; }, "webcamSize");
    EXPECT_THAT(problemsAfter([](auto& p) {
                    p.edit.background.type = BackgroundImageSource::custom("folder/");
                }),
                ElementsAre("backgroundSettings.type.image.customFilename: names no file"));
}

TEST(Validation, StopsAtTheLimitHoweverMuchIsWrong) {
    auto metadata = sampleMetadata();
    metadata.clickEvents.assign(500'000, ClickEvent{.id = {}, .x = nan});
    EXPECT_THAT(validationProblems(metadata, 3),
                ElementsAre("clickEvents[0].x: must be from -1000000000 to 1000000000, is nan",
                            "clickEvents[1].x: must be from -1000000000 to 1000000000, is nan",
                            "clickEvents[2].x: must be from -1000000000 to 1000000000, is nan"));
}

} // namespace
} // namespace vantro::model
