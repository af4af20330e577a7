#include "export/Inspection.h"
#include "export/RecordingFixture.h"
#include "model/VantroError.h"

#include <cmath>

#include <gtest/gtest.h>

namespace vantro::exporting {
namespace {

using namespace vantro::test;

constexpr int tolerance = 10; // the codec's loss on flat colors

std::shared_ptr<const media::PixelBuffer> still(render::MovieSession& film, double time) {
    return film.still(time, film.canvas(film.videoSize()));
}

Rgb middleOf(const std::shared_ptr<const media::PixelBuffer>& picture) {
    return meanColor(*asBgra(picture), picture->width() / 2, picture->height() / 2);
}

bool isColorOfSecond(Rgb color, int second) {
    return distance(color, colorOfSecond(second)) <= tolerance;
}

TEST(MovieSession, ShowsAnyTimeOfTheFilmAndNoOther) {
    const TemporaryFolder folder;
    writeColorClock(folder / "recording.mov", 320, 180, 30, 2);
    auto session = film(plainProject(folder / "recording.mov", 30));
    EXPECT_EQ(session.duration(), (media::MediaTime{2, 1}));
    EXPECT_TRUE(isColorOfSecond(middleOf(still(session, 0)), 0));
    EXPECT_TRUE(isColorOfSecond(middleOf(still(session, 2)), 1)) << "the last picture";
    for (const double outside : {-0.1, 2.001, std::nan("")})
        EXPECT_THROW(still(session, outside), model::VantroError) << outside;
    for (const model::Size unfit : {model::Size{0, 0}, {1e9, 1e9}})
        EXPECT_THROW(session.canvas(unfit), model::VantroError);
}

TEST(MovieSession, IsInspectedInTheFilmsTimeAndTheVideosPixels) {
    const TemporaryFolder folder;
    writeColorClock(folder / "recording.mov", 320, 180, 30, 2);
    model::RecordingMetadata metadata;
    metadata.displayScaleFactor = 2;
    metadata.cursorPositions = {{10, 20, 0}, {30, 20, 2}};
    auto project = plainProject(folder / "recording.mov", 30, metadata);
    project.edit.segments = {{{.startFraction = 0.5, .endFraction = 1, .speed = 0.5}}};
    project.edit.clickEvents = {
        {{.x = 60, .y = 50, .timestamp = 1.5, .startOffset = 0.5, .endOffset = 2, .zoomLevel = 2}}};
    const auto found = inspect(film(project), 2);
    EXPECT_EQ(found.sourceDuration, 2);
    EXPECT_EQ(found.outputDuration, 2);
    EXPECT_EQ(found.canvasSize, (render::PixelSize{320, 180}));
    ASSERT_EQ(found.keyframes.size(), 5U);
    const auto& sample = found.keyframes[2];
    EXPECT_EQ(sample.outputTime, 1);
    EXPECT_EQ(sample.sourceTime, 1.5);
    EXPECT_EQ(sample.keyframe, (render::ZoomKeyframe{2, 120, 100}));
    EXPECT_EQ(sample.pointer, (render::PixelPoint{50, 40}));
}

TEST(MovieSession, DoesWithoutABrokenWebcamMovie) {
    const TemporaryFolder folder;
    writeColorClock(folder / "recording.mov", 320, 180, 30, 1);
    std::ofstream(folder / "webcam.mov") << "not a movie";
    model::RecordingMetadata metadata;
    metadata.hasWebcam = true;
    auto session = film(plainProject(folder / "recording.mov", 30, metadata));
    EXPECT_TRUE(isColorOfSecond(meanColor(*still(session, 0.5), 290, 150), 0));
}

} // namespace
} // namespace vantro::exporting
