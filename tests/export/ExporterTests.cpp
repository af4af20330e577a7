#include "export/GifExporter.h"
#include "export/RecordingFixture.h"
#include "export/VideoExporter.h"
#include "media/FrameSource.h"
#include "support/Ffmpeg.h"

#include <gtest/gtest.h>

namespace vantro::exporting {
namespace {

using namespace vantro::test;

void exportTo(const std::filesystem::path& output, const model::Project& project) {
    auto session = film(project);
    VideoExporter().run(session, ExportResolution::original, output, {}, {});
}

TEST(VideoExporter, GivesAnOddCanvasTheEvenSizeBelow) {
    const TemporaryFolder folder;
    // Encoders write even sizes, so the odd recording comes from another codec.
    runFfmpeg("-f lavfi -i color=c=red:s=321x181:r=30:d=0.5 -c:v png", folder / "recording.mov");
    exportTo(folder / "out.mp4", plainProject(folder / "recording.mov", 30));
    const auto stream = probe(folder / "out.mp4")["streams"][0];
    EXPECT_EQ(stream["width"], 320);
    EXPECT_EQ(stream["height"], 180);
    EXPECT_EQ(stream["nb_read_frames"], "15");
}

TEST(VideoExporter, EncodesTheSamePictureThatAStillFrameShows) {
    const TemporaryFolder folder;
    writeMovie(folder / "recording.mov", 640, 360, 30, 60, [](media::PixelBuffer& bgra, int) {
        fill(bgra, {240, 240, 240});
        for (int y = 40; y < 80; ++y)
            for (int x = 100; x < 160; ++x)
                bgra.mutableRow(0, y)[x * 4 + 1] = 0;
    });
    model::RecordingMetadata metadata;
    metadata.cursorPositions = {{130, 60, 0}, {130, 60, 2}};
    auto project = plainProject(folder / "recording.mov", 30, metadata);
    project.edit.background = {};
    project.edit.clickEvents = {
        {{.x = 130, .y = 60, .timestamp = 1, .startOffset = 0.5, .endOffset = 1, .zoomLevel = 2}}};
    exportTo(folder / "out.mp4", project);

    auto session = film(project);
    const auto still = session.still(1.2, session.canvas(session.videoSize()));
    const auto asset = media::Asset::open(folder / "out.mp4");
    media::FrameSource source(asset, asset.tracks(media::MediaType::video).front().id);
    const auto frame = source.frameAt({36, 30});
    const auto exported = asBgra(frame->pixels);
    for (int y = 20; y < 360; y += 40)
        for (int x = 20; x < 640; x += 40)
            EXPECT_LE(distance(meanColor(*still, x, y), meanColor(*exported, x, y)), 12)
                << "at " << x << ", " << y;
}

TEST(GifExporter, IsNeverWiderThan640NorLargerThanTheRecording) {
    EXPECT_EQ(gifBaseSize({1920, 1080}), (model::Size{640, 360}));
    EXPECT_EQ(gifBaseSize({1000, 563}), (model::Size{640, 360}));
    EXPECT_EQ(gifBaseSize({321, 201}), (model::Size{320, 200}));
}

} // namespace
} // namespace vantro::exporting
