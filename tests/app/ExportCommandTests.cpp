// `vantro export` run as a user runs it: ranges, rates, formats, encoders, batches, damaged movies.
#include "app/CommandLineFixture.h"
#include "support/Ffmpeg.h"

#include <gmock/gmock.h>

namespace vantro::app {
namespace {

using namespace vantro::test;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;

using ExportCommand = CommandLine;

TEST_F(ExportCommand, ExportsAPartAtAnotherRate) {
    const auto command = "export " + path("sample.vantro") + " --output " + path("part.mp4");
    const auto exported = vantro(command + " --range 0.5:1.25 --fps 20 --quality small");
    ASSERT_EQ(exported.exitCode, 0) << exported.output;
    const auto probed = probe(folder / "part.mp4");
    EXPECT_EQ(probed["streams"][0]["nb_read_frames"], "15");
    EXPECT_EQ(probed["streams"][0]["r_frame_rate"], "20/1");
    const auto again = vantro(command);
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_THAT(again.output, HasSubstr("--force"));
    const auto beyond = vantro(command + " --force --range 7:");
    EXPECT_EQ(beyond.exitCode, 1);
    EXPECT_THAT(beyond.output, HasSubstr("lasts 2.00 s"));
    for (const auto* wrong :
         {"--range 3", "--range 2:1", "--range a:b", "--range -1:2", "--fps 0", "--quality best"})
        EXPECT_EQ(vantro(command + " " + wrong).exitCode, 2) << wrong;
}

TEST_F(ExportCommand, ExportsSeveralProjectsAndSumsUp) {
    save("second.vantro");
    std::filesystem::create_directory(folder / "out");
    const auto result =
        vantro("export --json " + path("sample.vantro") + " " + path("none.vantro") + " " +
               path("second.vantro") + "/ --output " + path("out"));
    EXPECT_EQ(result.exitCode, 1); // one of them failed
    EXPECT_THAT(result.output, HasSubstr(R"({"event":"summary","exported":2,"failed":1})"));
    EXPECT_THAT(result.output, HasSubstr(R"("event":"failed")"));
    for (const auto* name : {"out/sample.mp4", "out/second.mp4"})
        EXPECT_EQ(probe(folder / name)["streams"][0]["nb_read_frames"], "60") << name;
    EXPECT_EQ(vantro("export a/x.vantro b/x.vantro --output " + path("out")).exitCode, 2);
}

TEST_F(ExportCommand, MakesGifsAtTheRateAskedFor) {
    const auto command = "export --json " + path("sample.vantro") + " --output " + path("a.gif");
    EXPECT_THAT(vantro(command).output, HasSubstr(R"("frames":24,"duration":2.0)"));
    const auto quick = vantro(command + " --force --fps 25 --range 0.5:");
    EXPECT_THAT(quick.output, HasSubstr(R"("frames":38,"duration":1.5)"));
    EXPECT_NEAR(std::stod(probe(folder / "a.gif")["format"]["duration"].get<std::string>()), 1.52,
                0.011);
    for (const auto* wrong :
         {"--fps 60", "--format mp4", "--format avi", "--encoder libx264", "--quality small"})
        EXPECT_EQ(vantro(command + " --force " + wrong).exitCode, 2) << wrong;
}

TEST_F(ExportCommand, TellsWhereADamagedMovieBreaksOrKeepsWhatComesBefore) {
    const auto movie = folder / "sample.vantro" / "recording.mov";
    std::filesystem::remove(movie);
    runFfmpeg("-i ../recording.mov -c copy -movflags faststart", movie);
    std::filesystem::resize_file(movie, std::filesystem::file_size(movie) * 4 / 5);
    const auto command = "export " + path("sample.vantro") + " --output " + path("out.mp4");
    const auto failed = vantro(command);
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_THAT(failed.output, ContainsRegex("breaks off at [01]\\.[0-9]+ s of 2\\.00 s"));
    EXPECT_FALSE(exists("out.mp4"));
    const auto kept = vantro(command + " --tolerate-damage");
    EXPECT_EQ(kept.exitCode, 0) << kept.output;
    EXPECT_THAT(kept.output, HasSubstr("breaks off at"));
    const auto film = probe(folder / "out.mp4");
    const auto duration = std::stod(film["format"]["duration"].get<std::string>());
    EXPECT_GT(duration, 0.1);
    EXPECT_LT(duration, 1.95);
}

} // namespace
} // namespace vantro::app
