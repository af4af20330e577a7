#include "export/RecordingFixture.h"
#include "export/StillFrame.h"
#include "media/AssetWriter.h"
#include "render/RendererFactory.h"
#include "render/WebcamMovie.h"

#include <fstream>

#include <gtest/gtest.h>

namespace vantro::exporting {
namespace {

using namespace vantro::test;

constexpr int tolerance = 10; // the codec's loss on flat colours

test::Rgb colorOf(const std::shared_ptr<const media::PixelBuffer>& picture) {
    return test::meanColor(*test::asBgra(picture), picture->width() / 2, picture->height() / 2);
}

/// A webcam movie of flat colours whose frames come at the given times, in milliseconds.
void writeWebcam(const std::filesystem::path& path, const std::vector<int>& milliseconds) {
    media::AssetWriter writer(path, media::FileType::quickTimeMovie,
                              {.width = 320, .height = 180, .expectsRealTime = false});
    writer.startWriting();
    writer.startSession({0, 1000});
    for (std::size_t index = 0; index < milliseconds.size(); ++index) {
        auto pixels = media::PixelBuffer::allocate(media::PixelFormat::bgra, 320, 180);
        test::fill(*pixels, test::colorOfSecond(static_cast<int>(index)));
        writer.append({pixels, {milliseconds[index], 1000}, {}});
    }
    writer.finish(media::MediaTime{milliseconds.back() + 500, 1000});
}

TEST(WebcamMovie, ShowsTheLatestFrameNotAfterATimeInAnyOrderOfTimes) {
    const test::TemporaryFolder folder;
    writeWebcam(folder / "webcam.mov", {0, 700, 750, 2000});
    render::WebcamMovie webcam(folder / "webcam.mov");
    const struct {
        double time;
        int frame;
    } asked[]{{0, 0},   {0.699, 0}, {0.7, 1},  {0.76, 2}, {1.9, 2},
              {2.0, 3}, {9, 3},     {0.71, 1}, {0.2, 0}};
    for (const auto& [time, frame] : asked) {
        const auto picture = webcam.pictureAt(time);
        ASSERT_NE(picture, nullptr) << time;
        EXPECT_LE(test::distance(colorOf(picture), test::colorOfSecond(frame)), tolerance)
            << "at " << time;
    }
    EXPECT_EQ(webcam.pictureAt(1.0), webcam.pictureAt(1.5)); // one picture, one texture
}

TEST(WebcamMovie, ShowsNothingWhereThereIsNothing) {
    const test::TemporaryFolder folder;
    EXPECT_EQ(render::WebcamMovie(folder / "missing.mov").pictureAt(1), nullptr);
    std::ofstream(folder / "noise.mov") << "not a movie";
    EXPECT_EQ(render::WebcamMovie(folder / "noise.mov").pictureAt(1), nullptr);
    std::ofstream(folder / "empty.mov").flush();
    EXPECT_EQ(render::WebcamMovie(folder / "empty.mov").pictureAt(1), nullptr);
}

TEST(ComposedMovie, StandsTheWebcamInItsCornerAndDoesWithoutABrokenOne) {
    const test::TemporaryFolder folder;
    test::writeMovie(folder / "recording.mov", 640, 360, 30, 30,
                     [](media::PixelBuffer& bgra, int) { test::fill(bgra, {20, 20, 20}); });
    writeWebcam(folder / "webcam.mov", {0});
    model::RecordingMetadata metadata;
    metadata.hasWebcam = true;
    auto project = test::plainProject(folder / "recording.mov", 30, metadata);
    project.edit.webcamSize = 0.25; // a square of 160 pixels, 12.8 from the edges
    const auto still = [&] {
        return composeStillFrame(project.recording, project.edit, ExportResolution::original, 0.5,
                                 render::makeRenderer(render::RendererChoice::software));
    };
    const struct {
        model::WebcamPosition position;
        int x;
        int y;
    } corners[]{{model::WebcamPosition::topLeft, 93, 93},
                {model::WebcamPosition::topRight, 547, 93},
                {model::WebcamPosition::bottomLeft, 93, 267},
                {model::WebcamPosition::bottomRight, 547, 267}};
    for (const auto& shown : corners) {
        project.edit.webcamPosition = shown.position;
        const auto picture = still();
        for (const auto& corner : corners) {
            const bool isThere = corner.position == shown.position;
            EXPECT_EQ(test::distance(test::meanColor(*picture, corner.x, corner.y),
                                     test::colorOfSecond(0)) <= tolerance,
                      isThere);
        }
    }
    std::filesystem::remove(folder / "webcam.mov");
    EXPECT_LE(test::distance(test::meanColor(*still(), 547, 267), {20, 20, 20}), tolerance);
}

} // namespace
} // namespace vantro::exporting
