#include "export/GifExporter.h"
#include "export/RecordingFixture.h"
#include "export/VideoExporter.h"
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

TEST(GifExporter, IsNeverWiderThan640NorLargerThanTheRecording) {
    EXPECT_EQ(gifBaseSize({1920, 1080}), (model::Size{640, 360}));
    EXPECT_EQ(gifBaseSize({1000, 563}), (model::Size{640, 360}));
    EXPECT_EQ(gifBaseSize({321, 201}), (model::Size{320, 200}));
}

} // namespace
} // namespace vantro::exporting
