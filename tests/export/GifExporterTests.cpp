#include "export/GifExporter.h"
#include "export/RecordingFixture.h"
#include "model/VantroError.h"

#include <fstream>

#include <gtest/gtest.h>

namespace vantro::exporting {
namespace {

using namespace vantro::test;

ExportSummary exportGif(const std::filesystem::path& output, const model::Project& project,
                        const ExportProgress& progress = {}, const std::stop_token& stop = {}) {
    auto film = test::film(project);
    return GifExporter().run(film, output, progress, stop);
}

TEST(GifExporter, IsNeverWiderThan640NorLargerThanTheRecording) {
    EXPECT_EQ(gifBaseSize({1920, 1080}), (model::Size{640, 360}));
    EXPECT_EQ(gifBaseSize({1000, 563}), (model::Size{640, 360}));
    EXPECT_EQ(gifBaseSize({321, 201}), (model::Size{320, 200}));
}

TEST(GifExporter, WritesTwelveFramesASecondThatFollowTheEdit) {
    const test::TemporaryFolder folder;
    test::writeColorClock(folder / "recording.mov", 320, 180, 30, 3);
    auto project = test::plainProject(folder / "recording.mov", 30);
    project.edit.segments = {{{.startFraction = 1.0 / 3, .endFraction = 1, .speed = 2}}};
    const auto summary = exportGif(folder / "out.gif", project);

    EXPECT_EQ(summary.frameCount, 12);
    const auto probed = test::probe(folder / "out.gif");
    EXPECT_EQ(probed["streams"][0]["codec_name"], "gif");
    EXPECT_EQ(probed["streams"][0]["width"], 320);
    EXPECT_NEAR(std::stod(probed["format"]["duration"].get<std::string>()), 1.0, 0.02);
}

TEST(GifExporter, LeavesTheEarlierFileWhenItFailsOrIsCancelled) {
    const test::TemporaryFolder source;
    test::writeColorClock(source / "recording.mov", 320, 180, 30, 4);
    const test::TemporaryFolder target;
    std::ofstream(target / "out.gif") << "earlier";
    EXPECT_THROW(exportGif(target / "out.gif", test::plainProject(source / "missing.mov", 30)),
                 model::VantroError);

    std::stop_source stop;
    const auto summary = exportGif(
        target / "out.gif", test::plainProject(source / "recording.mov", 30),
        [&](double) { stop.request_stop(); }, stop.get_token());
    EXPECT_EQ(summary.outcome, ExportOutcome::cancelled);
    EXPECT_EQ(std::filesystem::file_size(target / "out.gif"), 7U);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(target.path()), {}), 1);
}

} // namespace
} // namespace vantro::exporting
