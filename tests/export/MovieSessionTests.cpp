#include "export/Inspection.h"
#include "export/RecordingFixture.h"
#include "media/AssetWriter.h"
#include "model/VantroError.h"
#include "render/WebcamMovie.h"

#include <cmath>
#include <fstream>

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

TEST(MovieSession, GoesOnWithAnotherEditFromTheNextPictureOn) {
    const TemporaryFolder folder;
    writeColorClock(folder / "recording.mov", 320, 180, 30, 4);
    auto project = plainProject(folder / "recording.mov", 30);
    project.edit.clickEvents = {{{.x = 160,
                                  .y = 90,
                                  .timestamp = 3.5,
                                  .startOffset = 0.2,
                                  .endOffset = 0.4,
                                  .zoomLevel = 2}}};
    auto session = film(project);
    EXPECT_TRUE(isColorOfSecond(middleOf(still(session, 1.5)), 1));

    auto edit = project.edit;
    edit.background = {.type = model::BackgroundColor{1, 1, 0}, .padding = 0.25, .cornerRadius = 0};
    edit.segments = {{{.startFraction = 0, .endFraction = 0.25, .speed = 1},
                      {.startFraction = 0.5, .endFraction = 1, .speed = 2}}};
    session.setEdit(edit);
    EXPECT_EQ(session.duration(), (media::MediaTime{2, 1}));
    const auto picture = still(session, 1.25);
    EXPECT_TRUE(isColorOfSecond(middleOf(picture), 2)) << "second 1 is cut";
    EXPECT_LE(distance(meanColor(*picture, 5, 5), {255, 255, 0}), tolerance);
    EXPECT_TRUE(isColorOfSecond(meanColor(*still(session, 1.75), 5, 5), 3)) << "zoomed by then";
    EXPECT_THROW(still(session, 2.5), model::VantroError);

    auto nothing = edit;
    nothing.segments = std::vector<model::TimelineSegment>{};
    EXPECT_THROW(session.setEdit(nothing), model::VantroError);
    EXPECT_EQ(session.edit(), edit);
    const auto again = still(session, 1.25);
    EXPECT_EQ(still(session, 1.26), again) << "nothing changed, so nothing is drawn again";
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

/// A webcam movie of flat colors whose frames come at the given times, in
/// milliseconds.
void writeWebcam(const std::filesystem::path& path, const std::vector<int>& milliseconds) {
    media::AssetWriter writer(path, media::FileType::quickTimeMovie,
                              {.width = 320, .height = 180, .expectsRealTime = false});
    writer.startWriting();
    writer.startSession({0, 1000});
    for (std::size_t index = 0; index < milliseconds.size(); ++index) {
        auto pixels = media::PixelBuffer::allocate(media::PixelFormat::bgra, 320, 180);
        fill(*pixels, colorOfSecond(static_cast<int>(index)));
        writer.append({pixels, {milliseconds[index], 1000}, {}});
    }
    writer.finish(media::MediaTime{milliseconds.back() + 500, 1000});
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

TEST(WebcamMovie, ShowsTheLatestFrameNotAfterATimeInAnyOrderOfTimes) {
    const TemporaryFolder folder;
    writeWebcam(folder / "webcam.mov", {0, 700, 750, 2000});
    render::WebcamMovie webcam(folder / "webcam.mov");
    const struct {
        int time; ///< milliseconds
        int frame;
    } asked[]{{0, 0},    {699, 0},  {700, 1}, {760, 2}, {1900, 2},
              {2000, 3}, {9000, 3}, {710, 1}, {200, 0}};
    for (const auto& [time, frame] : asked) {
        const auto picture = webcam.pictureAt({time, 1000});
        ASSERT_NE(picture, nullptr) << time;
        EXPECT_TRUE(isColorOfSecond(middleOf(picture), frame)) << "at " << time;
    }
    EXPECT_EQ(webcam.pictureAt({1, 1}), webcam.pictureAt({3, 2})); // one picture, one texture
}

} // namespace
} // namespace vantro::exporting
