#include "export/VideoExporter.h"
#include "media/Sound.h"
#include "media/TestMovies.h"
#include "model/VantroError.h"
#include "render/RendererFactory.h"

#include <cmath>
#include <fstream>
#include <random>

#include <fmt/format.h>
#include <gmock/gmock.h>
namespace vantro::exporting {
namespace {

using namespace vantro::test;

constexpr int pictures = 60; // at 30 a second

/// A film of `movie` under the default edit, with nothing around the recording.
ExportSummary exportOf(const std::filesystem::path& movie, bool toleratesDamage = false) {
    model::RecordingMetadata metadata;
    metadata.frameRate = 30;
    model::Edit edit;
    edit.background = {.type = model::BackgroundColor{}, .padding = 0, .cornerRadius = 0};
    render::MovieSession session({movie, std::move(metadata)}, std::move(edit),
                                 render::makeRenderer(render::RendererChoice::software));
    VideoExporter exporter;
    exporter.setToleratesDamage(toleratesDamage);
    return exporter.run(session, ExportResolution::original, movie.parent_path() / "film.mp4", {},
                        {});
}

struct ForeignMovie {
    const char* name;
    const char* extension;
    const char* arguments; ///< behind the pictures' own
    double length;         ///< of the film, seconds
    double picturesBegin = 0;
    double soundBegins = 0;
    double soundEnds = 0;
};

class ForeignMovies : public testing::TestWithParam<ForeignMovie> {};

TEST_P(ForeignMovies, BecomeFilmsWithEachPictureAndSoundInItsPlace) {
    const TemporaryFolder folder;
    const auto& wanted = GetParam();
    const auto movie = folder / (std::string("movie.") + wanted.extension);
    makeNumberedMovie(
        movie, {pictures, 192, 108, 30},
        fmt::format("{} -vsync passthrough -vf setpts=PTS+{}/TB -c:v libx264 -pix_fmt yuv420p",
                    wanted.arguments, wanted.picturesBegin));
    const auto summary = exportOf(movie);
    EXPECT_NEAR(summary.duration, wanted.length, 0.035);

    const auto asset = media::Asset::open(folder / "film.mp4");
    media::FrameSource source(asset, 0);
    const int first = static_cast<int>(std::lround(wanted.picturesBegin * 30));
    for (int frame = 0; frame < static_cast<int>(summary.frameCount); ++frame)
        ASSERT_EQ(numberIn(*shownAt(source, {2LL * frame + 1, 60}).pixels),
                  std::clamp(frame - first, 0, pictures - 1));

    ASSERT_EQ(asset.tracks(media::MediaType::audio).empty(), wanted.soundEnds == 0);
    if (wanted.soundEnds == 0)
        return;
    const auto sound = soundOf(folder / "film.mp4");
    constexpr double margin = 0.05;
    EXPECT_GT(decibels(sound, wanted.soundBegins + margin, wanted.soundEnds - margin), -40);
    if (wanted.soundBegins > 0) {
        EXPECT_LT(decibels(sound, 0, wanted.soundBegins - margin), -60);
    }
    if (wanted.soundEnds < wanted.length) {
        EXPECT_LT(decibels(sound, wanted.soundEnds + margin, wanted.length - margin), -60);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ForeignMovies,
    testing::Values(
        ForeignMovie{"silent", "mov", "", 2},
        ForeignMovie{"soundLonger", "mov", "-f lavfi -i sine=d=3 -c:a aac", 3, 0, 0, 3},
        ForeignMovie{"soundShorter", "mp4", "-f lavfi -i sine=d=1 -c:a aac", 2, 0, 0, 1},
        ForeignMovie{"soundLate", "mkv", "-itsoffset 1 -f lavfi -i sine=d=1 -c:a libopus", 2, 0, 1,
                     2},
        ForeignMovie{"picturesLate", "mov", "-f lavfi -i sine=d=2 -c:a aac", 2.5, 0.5, 0, 2},
        ForeignMovie{"sixChannels", "mp4", "-f lavfi -i sine=d=2 -ac 6 -c:a aac", 2, 0, 0, 2},
        ForeignMovie{"eightChannels", "mov", "-f lavfi -i sine=d=2 -ac 8 -c:a pcm_s24le", 2, 0, 0,
                     2}),
    [](const auto& movie) { return movie.param.name; });

TEST(ForeignMovie, OfAnOddSizeBecomesAFilmOfTheEvenSizeBelow) {
    const TemporaryFolder folder;
    runFfmpeg("-f lavfi -i color=c=red:s=321x181:r=30:d=0.5 -c:v png", folder / "odd.mov");
    EXPECT_EQ(exportOf(folder / "odd.mov").frameCount, 15);
    const auto film = media::Asset::open(folder / "film.mp4").tracks(media::MediaType::video).at(0);
    EXPECT_EQ(film.naturalSize, (model::Size{320, 180}));
}

/// Whatever bytes of a movie are lost, there is a film, or one message that says where it breaks
/// off and leaves no file behind.
TEST(ForeignMovie, BreaksOffWithOneMessageWhereItIsDamaged) {
    const TemporaryFolder folder;
    makeNumberedMovie(folder / "whole.mp4", {pictures, 192, 108, 30},
                      "-f lavfi -i sine=d=2 -c:a aac -c:v libx264 -g 15 -bf 2 -pix_fmt yuv420p "
                      "-movflags faststart");
    const auto size = std::filesystem::file_size(folder / "whole.mp4");
    std::mt19937 random(31);
    int broken = 0;
    for (int attempt = 0; attempt < 24; ++attempt) {
        SCOPED_TRACE(attempt);
        const auto movie = folder / "damaged.mp4";
        std::filesystem::copy_file(folder / "whole.mp4", movie,
                                   std::filesystem::copy_options::overwrite_existing);
        std::fstream file(movie, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(static_cast<std::streamoff>(size / 3 + random() % (size / 2)));
        for (int i = 0; i < 400; ++i)
            file.put(static_cast<char>(random()));
        file.close();
        std::filesystem::remove(folder / "film.mp4");
        try {
            EXPECT_EQ(exportOf(movie).frameCount, pictures);
        } catch (const model::VantroError& error) {
            ++broken;
            EXPECT_THAT(std::string(error.message()),
                        testing::AllOf(testing::HasSubstr(movie.string()),
                                       testing::HasSubstr("breaks off at")));
            EXPECT_FALSE(std::filesystem::exists(folder / "film.mp4"));
            const auto part = exportOf(movie, true);
            EXPECT_FALSE(part.damage.empty());
            EXPECT_GT(part.frameCount, 0);
            EXPECT_LT(part.frameCount, pictures);
        }
    }
    EXPECT_GT(broken, 0);
}

} // namespace
} // namespace vantro::exporting
