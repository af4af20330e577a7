#include "app/CommandLineFixture.h"

#include <gmock/gmock.h>

namespace vantro::app {
namespace {

using namespace vantro::test;
using ::testing::HasSubstr;

TEST_F(CommandLine, ExportsFramesAndInspectsAProject) {
    const auto exported =
        vantro("export --json " + path("sample.vantro") + " --output " + path("out.mp4"));
    ASSERT_EQ(exported.exitCode, 0) << exported.output;
    EXPECT_THAT(exported.output, HasSubstr(R"("event":"finished")"));
    EXPECT_EQ(probe(folder / "out.mp4")["streams"][0]["nb_read_frames"], "60");

    const auto frame = vantro("frame " + path("sample.vantro") +
                              " --time 1.1 --resolution 720p --output " + path("frame.png"));
    ASSERT_EQ(frame.exitCode, 0) << frame.output;
    EXPECT_EQ(probe(folder / "frame.png")["streams"][0]["width"], 1280);

    const auto inspected = vantro("inspect --json --keyframes 10 " + path("sample.vantro"));
    ASSERT_EQ(inspected.exitCode, 0) << inspected.output;
    const auto document = nlohmann::json::parse(inspected.output);
    EXPECT_NEAR(document["sourceDuration"].get<double>(), 2.0, 0.001);
    EXPECT_EQ(document["canvasWidth"], 320);
    EXPECT_EQ(document["segments"].size(), 1U);
    EXPECT_EQ(document["clickEvents"][0]["timestamp"], 1.0);
    EXPECT_DOUBLE_EQ(document["keyframes"].at(10)["scale"].get<double>(), 1.5);
}

TEST_F(CommandLine, AnswersWrongUsageWithTwo) {
    for (const auto* arguments :
         {"dance", "export", "export a.vantro", "export a.vantro --output b.avi",
          "export a.vantro --output b.mp4 --resolution 8k", "inspect a.vantro --keyframes none",
          "frame a.vantro --output b.png", "frame a.vantro --time 1 --source-time 1 --output b.png",
          "record --output a.vantro --seconds -3", "record --output a.mov",
          "record --output a.vantro --mode area --rect 0,0,100",
          "record --output a.vantro --mode area --rect 0,0,nan,100",
          "record --output a.vantro --max-size 0",
          "export a.vantro --output b.mp4 --encoder theora", "play", "play a.vantro --seconds 0"})
        EXPECT_EQ(vantro(arguments).exitCode, 2) << arguments;
    EXPECT_EQ(vantro("--help").exitCode, 0);
    EXPECT_EQ(vantro("export --help").exitCode, 0);
}

TEST_F(CommandLine, SaysWhatIsWrongWithFilesAndPlaces) {
    const auto fails = [&](const std::string& arguments, const std::string& message) {
        const auto result = vantro(arguments);
        EXPECT_EQ(result.exitCode, 1) << arguments;
        EXPECT_THAT(result.output, HasSubstr(message)) << arguments;
    };
    fails("frame " + path("sample.vantro") + " --time 99 --output " + path("f.png"),
          "0 to 2.000 s");
    fails("frame " + path("sample.vantro") + " --source-time 2.1 --output " + path("f.png"),
          "0 to 2.000 s");
    fails("", "display"); // the window needs one as well
    fails("displays", "display");
    fails("play " + path("sample.vantro"), "display");
    fails(path("sample.vantro"), "display");
    fails("play " + path("none.vantro"), "none.vantro: no such project");
    fails(path("none.vantro"), "none.vantro: no such project");
    fails(path("none.webm"), "none.webm: no such file");
    fails("record --seconds 1 --output " + path("new.vantro"), "display");
    EXPECT_FALSE(exists("new.vantro"));
    EXPECT_FALSE(exists("f.png"));

    std::ofstream(folder / "sample.vantro" / "recording.mov") << "noise";
    fails("export " + path("sample.vantro") + " --output " + path("o.mp4"), "recording.mov");
    EXPECT_FALSE(exists("o.mp4"));
}

TEST_F(CommandLine, TellsAShellWhatMayFollow) {
    const auto script = (folder / "completion").string();
    const auto offered = [&](const std::string& words) {
        const auto said = vantro(fmt::format(
            "--completion bash >'{0}' && bash -c 'source {0}; COMP_WORDS=(vantro {1}); "
            "COMP_CWORD=$((${{#COMP_WORDS[@]}} - 1)); _vantro; echo \"${{COMPREPLY[*]}}\"'",
            script, words));
        return said.output;
    };
    EXPECT_EQ(offered("exp"), "export\n");
    EXPECT_EQ(offered("export film.vantro --qual"), "--quality\n");
    EXPECT_EQ(offered("export film.vantro --quality b"), "balanced\n");
    EXPECT_EQ(offered("export film"), "\n") << "files, which the shell knows";
}

} // namespace
} // namespace vantro::app
