#include "export/RecordingFixture.h"
#include "export/VideoExporter.h"
#include "media/FrameSource.h"
#include "model/VantroError.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::exporting {
namespace {

using namespace vantro::test;
using ::testing::HasSubstr;

constexpr int colorTolerance = 8; // the codec's own loss on flat colors

ExportSummary exportTo(const std::filesystem::path& output, const model::Project& project,
                       const ExportProgress& progress = {}) {
    auto film = test::film(project);
    return VideoExporter().run(film, ExportResolution::original, output, progress, {});
}

test::Rgb colorAt(const std::filesystem::path& movie, double seconds) {
    const auto asset = media::Asset::open(movie);
    media::FrameSource source(asset, asset.tracks(media::MediaType::video).front().id);
    const auto frame = source.frameAt(media::MediaTime::fromSeconds(seconds, 90'000));
    const auto bgra = test::asBgra(frame->pixels);
    return test::meanColor(*bgra, bgra->width() / 2, bgra->height() / 2);
}

std::string failureOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const model::VantroError& error) {
        return error.what();
    }
    return "no error";
}

TEST(VideoExporter, WritesTaggedHighProfileH264OfExactLengthAndRate) {
    const test::TemporaryFolder folder;
    test::writeColorClock(folder / "recording.mov", 320, 180, 30, 2);
    std::vector<double> reports;
    const auto summary =
        exportTo(folder / "out.mp4", test::plainProject(folder / "recording.mov", 30),
                 [&](double fraction) { reports.push_back(fraction); });

    EXPECT_EQ(summary.frameCount, 60);
    const auto probed = test::probe(folder / "out.mp4");
    const auto& stream = probed["streams"][0];
    EXPECT_EQ(stream["codec_name"], "h264");
    EXPECT_EQ(stream["profile"], "High");
    EXPECT_EQ(stream["pix_fmt"], "yuv420p");
    EXPECT_EQ(stream["width"], 320);
    EXPECT_EQ(stream["height"], 180);
    EXPECT_EQ(stream["nb_read_frames"], "60");
    EXPECT_EQ(stream["r_frame_rate"], "30/1");
    for (const auto* tag : {"color_space", "color_primaries", "color_transfer"})
        EXPECT_EQ(stream[tag], "bt709") << tag;
    EXPECT_EQ(stream["color_range"], "tv");
    EXPECT_NEAR(std::stod(probed["format"]["duration"].get<std::string>()), 2.0, 0.001);

    EXPECT_FALSE(reports.empty());
    EXPECT_TRUE(std::is_sorted(reports.begin(), reports.end()));
    EXPECT_LE(reports.back(), 1.0);
}

TEST(VideoExporter, PlaysCutsAndSpeedsInOrder) {
    const test::TemporaryFolder folder;
    test::writeColorClock(folder / "recording.mov", 320, 180, 30, 4);
    auto project = test::plainProject(folder / "recording.mov", 30);
    // Second 0 at double speed, second 1 cut, second 2 at half speed, second 3 as it is.
    project.edit.segments = {{{.startFraction = 0, .endFraction = 0.25, .speed = 2},
                              {.startFraction = 0.5, .endFraction = 0.75, .speed = 0.5},
                              {.startFraction = 0.75, .endFraction = 1, .speed = 1}}};
    const auto summary = exportTo(folder / "out.mp4", project);

    EXPECT_NEAR(summary.duration, 3.5, 0.01);
    EXPECT_EQ(summary.frameCount, 105);
    const struct {
        double time;
        int sourceSecond;
    } expected[]{{0.1, 0}, {0.45, 0}, {0.55, 2}, {2.4, 2}, {2.55, 3}, {3.4, 3}};
    for (const auto& [time, second] : expected)
        EXPECT_LE(test::distance(colorAt(folder / "out.mp4", time), test::colorOfSecond(second)),
                  colorTolerance)
            << "at " << time;
}

TEST(VideoExporter, GivesAnOddCanvasTheEvenSizeBelow) {
    const test::TemporaryFolder folder;
    // Encoders write even sizes, so the odd recording comes from another codec.
    const auto command = "ffmpeg -v error -f lavfi -i color=c=red:s=321x181:r=30:d=0.5 -c:v png '" +
                         (folder / "recording.mov").string() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    exportTo(folder / "out.mp4", test::plainProject(folder / "recording.mov", 30));
    const auto stream = test::probe(folder / "out.mp4")["streams"][0];
    EXPECT_EQ(stream["width"], 320);
    EXPECT_EQ(stream["height"], 180);
    EXPECT_EQ(stream["nb_read_frames"], "15");
}

TEST(VideoExporter, EncodesTheSamePictureThatAStillFrameShows) {
    const test::TemporaryFolder folder;
    test::writeMovie(folder / "recording.mov", 640, 360, 30, 60, [](media::PixelBuffer& bgra, int) {
        test::fill(bgra, {240, 240, 240});
        for (int y = 40; y < 80; ++y)
            for (int x = 100; x < 160; ++x)
                bgra.mutableRow(0, y)[x * 4 + 1] = 0;
    });
    model::RecordingMetadata metadata;
    metadata.cursorPositions = {{130, 60, 0}, {130, 60, 2}};
    auto project = test::plainProject(folder / "recording.mov", 30, metadata);
    project.edit.background = {};
    project.edit.clickEvents = {
        {{.x = 130, .y = 60, .timestamp = 1, .startOffset = 0.5, .endOffset = 1, .zoomLevel = 2}}};
    exportTo(folder / "out.mp4", project);

    auto film = test::film(project);
    const auto still = film.still(1.2, film.canvas(film.videoSize()));
    const auto asset = media::Asset::open(folder / "out.mp4");
    media::FrameSource source(asset, asset.tracks(media::MediaType::video).front().id);
    const auto frame = source.frameAt({36, 30});
    const auto exported = test::asBgra(frame->pixels);
    for (int y = 20; y < 360; y += 40)
        for (int x = 20; x < 640; x += 40)
            EXPECT_LE(
                test::distance(test::meanColor(*still, x, y), test::meanColor(*exported, x, y)), 12)
                << "at " << x << ", " << y;
}

TEST(VideoExporter, TellsWhatIsWrongWithAMovieAndLeavesTheEarlierFile) {
    const test::TemporaryFolder folder;
    std::ofstream(folder / "out.mp4") << "the earlier file";
    const auto fails = [&](const std::string& name) {
        return failureOf(
            [&] { exportTo(folder / "out.mp4", test::plainProject(folder / name, 30)); });
    };
    EXPECT_THAT(fails("missing.mov"), HasSubstr("missing.mov"));

    std::ofstream(folder / "garbage.mov") << "this is no movie";
    EXPECT_THAT(fails("garbage.mov"), HasSubstr("garbage.mov"));

    const auto silence = "ffmpeg -v error -f lavfi -i anullsrc=d=1 -c:a aac '" +
                         (folder / "sound.mov").string() + "'";
    ASSERT_EQ(std::system(silence.c_str()), 0);
    EXPECT_EQ(fails("sound.mov"), "Export failed: No video track found");

    test::writeColorClock(folder / "cut.mov", 320, 180, 30, 2);
    const auto whole = std::filesystem::file_size(folder / "cut.mov");
    const auto faststart = "ffmpeg -v error -i '" + (folder / "cut.mov").string() +
                           "' -c copy -movflags faststart '" + (folder / "damaged.mov").string() +
                           "'";
    ASSERT_EQ(std::system(faststart.c_str()), 0);
    std::filesystem::resize_file(folder / "damaged.mov", whole / 2);
    EXPECT_THAT(fails("damaged.mov"), HasSubstr("damaged.mov"));

    EXPECT_EQ(std::filesystem::file_size(folder / "out.mp4"), 16U);
}

} // namespace
} // namespace vantro::exporting
