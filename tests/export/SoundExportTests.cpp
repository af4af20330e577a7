#include "capture/MovieFrames.h"
#include "export/GifExporter.h"
#include "export/RecordingFixture.h"
#include "export/VideoExporter.h"
#include "media/Sound.h"
#include "support/Ffmpeg.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stop_token>

#include <fmt/format.h>
namespace vantro::exporting {
namespace {

using namespace vantro::test;

constexpr int frameRate = 60;

/// A recording whose picture flashes white and whose sound, on one channel, beeps in the first
/// tenth of every second.
void writeFlashesAndBeeps(const std::filesystem::path& movie, int seconds) {
    const auto picture = movie.parent_path() / "picture.mov";
    writeMovie(
        picture, 160, 90, frameRate, seconds * frameRate, [](media::PixelBuffer& bgra, int frame) {
            fill(bgra, frame % frameRate < frameRate / 10 ? Rgb{255, 255, 255} : Rgb{0, 0, 0});
        });
    runFfmpeg("-i picture.mov -f lavfi -i \"aevalsrc='0.5*sin(2*PI*1000*t)*lt(mod(t,1),0.1)'"
              ":s=48000:d=" +
                  std::to_string(seconds) + "\" -c:v copy -c:a pcm_s16le -ac 1 -ar 44100",
              movie);
    std::filesystem::remove(picture);
}

model::Project edited(const std::filesystem::path& movie,
                      std::vector<model::TimelineSegment> segments) {
    auto project = plainProject(movie, frameRate);
    if (!segments.empty())
        project.edit.segments = std::move(segments);
    return project;
}

void exportTo(const std::filesystem::path& output, const model::Project& project) {
    auto session = film(project);
    VideoExporter().run(session, ExportResolution::original, output, {}, {});
}

TEST(SoundExport, BeepsWithTheFlashAtEverySegmentBoundary) {
    const TemporaryFolder folder;
    writeFlashesAndBeeps(folder / "recording.mov", 20);
    // Every segment begins at a flash; where one does not end at the next, a
    // second is cut.
    const auto at = [](int from, int to, double speed) {
        return model::TimelineSegment{
            .startFraction = from / 20.0, .endFraction = to / 20.0, .speed = speed};
    };
    const auto project = edited(folder / "recording.mov",
                                {at(0, 2, 1), at(3, 5, 2), at(6, 7, 0.5), at(7, 8, 1), at(9, 13, 4),
                                 at(14, 15, 0.25), at(15, 17, 1), at(18, 20, 1)});
    exportTo(folder / "out.mp4", project);

    const auto isWhite = [](const media::PixelBuffer& picture) {
        return picture.row(0, 45)[80] > 127;
    };
    const auto flashes = timesOf(turning(framesOf(folder / "out.mp4"), isWhite));
    const auto beeps = beepTimes(soundOf(folder / "out.mp4"));
    const std::vector<double> boundaries{0, 2, 3, 5, 6, 7, 11, 13};
    const auto nearest = [](const std::vector<double>& times, double wanted) {
        return *std::ranges::min_element(times, {},
                                         [wanted](double time) { return std::abs(time - wanted); });
    };
    for (const double boundary : boundaries) {
        EXPECT_NEAR(nearest(flashes, boundary), boundary, 0.001);
        EXPECT_NEAR(nearest(beeps, boundary), nearest(flashes, boundary), 0.010);
    }
    const auto sound = probeStreams(folder / "out.mp4").at(1);
    EXPECT_EQ(sound["codec_name"], "aac");
    EXPECT_EQ(sound["profile"], "LC");
    EXPECT_EQ(sound["sample_rate"], "48000");
    EXPECT_EQ(sound["channels"], 2);
}

/// The outcome of an export that is cancelled when progress is told for the `point`th time, and the
/// fractions that were told.
std::pair<ExportOutcome, std::vector<double>>
exportCancelledAt(std::size_t point, render::MovieSession& session,
                  const std::filesystem::path& output) {
    std::stop_source stop;
    std::vector<double> fractions;
    const auto follow = [&](double fraction) {
        fractions.push_back(fraction);
        if (fractions.size() == point)
            stop.request_stop();
    };
    const auto summary = output.extension() == ".gif"
                             ? GifExporter().run(session, output, follow, stop.get_token())
                             : VideoExporter().run(session, ExportResolution::original, output,
                                                   follow, stop.get_token());
    return {summary.outcome, fractions};
}

TEST(SoundExport, LeavesTheEarlierFileAndNothingElseWheneverItIsCancelled) {
    const TemporaryFolder source;
    writeFlashesAndBeeps(source / "recording.mov", 1);
    auto session = film(edited(source / "recording.mov", {}));
    for (const std::string name : {"out.mp4", "out.gif"}) {
        const TemporaryFolder folder;
        const auto [whole, fractions] = exportCancelledAt(0, session, folder / name);
        EXPECT_EQ(whole, ExportOutcome::finished);
        EXPECT_TRUE(std::ranges::is_sorted(fractions));
        EXPECT_EQ(fractions.back(), 1.0);
        const auto isFinishing = [](double fraction) { return fraction >= 0.99; };
        const auto finishing =
            static_cast<std::size_t>(std::ranges::count_if(fractions, isFinishing));
        EXPECT_GE(finishing, name == "out.mp4" ? 4U : 2U);
        // Composing, and each step of the finishing, up to the one right before the file appears.
        const auto composing = fractions.size() - finishing;
        for (std::size_t point = 1; point <= fractions.size(); ++point) {
            if (point > 2 && point < composing)
                continue;
            SCOPED_TRACE(fmt::format("{} at {}", name, fractions[point - 1]));
            std::ofstream(folder / name) << "the earlier file";
            const auto [outcome, told] = exportCancelledAt(point, session, folder / name);
            if (told.size() < point)
                break; // where threads run otherwise, fewer steps are told
            EXPECT_EQ(outcome, ExportOutcome::cancelled);
            EXPECT_EQ(std::filesystem::file_size(folder / name), 16U);
            EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
        }
    }
}

TEST(GifExporter, IsNeverWiderThan640NorLargerThanTheRecording) {
    EXPECT_EQ(gifBaseSize({1920, 1080}), (model::Size{640, 360}));
    EXPECT_EQ(gifBaseSize({1000, 563}), (model::Size{640, 360}));
    EXPECT_EQ(gifBaseSize({321, 201}), (model::Size{320, 200}));
}

} // namespace
} // namespace vantro::exporting
