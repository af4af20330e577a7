// The program on a Wayland desktop as a user meets it there.
#include "app/CommandLineFixture.h"
#include "capture/Colors.h"
#include "capture/MovieFrames.h"
#include "support/ScriptedCompositor.h"
#include "support/ScriptedScreen.h"
#include "support/WaylandDesk.h"

#include <gmock/gmock.h>
namespace vantro::app {
namespace {

using namespace vantro::test;
using ::testing::HasSubstr;

class WaylandCommand : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!WaylandDesk::isInstalled())
            GTEST_SKIP() << "xdg-desktop-portal, PipeWire or WirePlumber is not installed";
        desk = std::make_unique<WaylandDesk>();
    }
    void offer(PortalScript script = {}) {
        screen = std::make_unique<ScriptedScreen>();
        screen->show({.patches = {{0, 0, 640, 360, colors::green}}, .pointer = {{100, 50}}});
        script.node = screen->node();
        desk->startPortal(script);
    }
    /// With an X server's name beside it, as under XWayland.
    Result run(const std::string& arguments) const {
        return vantro(arguments, fmt::format("WAYLAND_DISPLAY=wayland-0 DISPLAY=:0 TMPDIR='{}'",
                                             folder.path().string()));
    }
    std::string record(const std::string& more = "") const {
        return fmt::format("record --output '{}' --seconds 0.5 {}", project.string(), more);
    }

    std::unique_ptr<WaylandDesk> desk;
    std::unique_ptr<ScriptedScreen> screen;
    TemporaryFolder folder;
    std::filesystem::path project = folder / "made.vantro";
};

TEST_F(WaylandCommand, RecordsWhatTheDialogGaveAndSaysWhatThatIs) {
    offer({.sourceType = 1}); // as some desktops tell, whatever they give
    const auto result = run(record("--mode window"));
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, HasSubstr("Recording a window of 640x360 pixels\n"));
    EXPECT_THAT(result.output, HasSubstr("Clicks are not recorded"));
    const auto first = framesOf(project / "recording.mov").at(0);
    EXPECT_TRUE(hasColor(*first.pixels, 320, 180, colors::green, 8));
    const auto metadata = files::readProjectFile(project).recording.metadata();
    EXPECT_EQ(metadata.cursorPositions.at(0).x, 100);
    const auto area = run(record("--mode area --rect 90,40,100,50 --force"));
    EXPECT_THAT(area.output, HasSubstr("Recording an area of 100x50 pixels\n"));
    EXPECT_EQ(files::readProjectFile(project).recording.metadata().cursorPositions.at(0).x, 10);
    for (const auto* none : {"", "--rect 640,0,10,10"})
        EXPECT_EQ(run(record(std::string("--mode area --force ") + none)).exitCode, 1);
    const auto named = run(record("--mode window --window-title x --force"));
    EXPECT_THAT(named.output, HasSubstr("The desktop itself asks what to record"));
}

TEST_F(WaylandCommand, EndsAsCancelledWhenTheUserRefuses) {
    offer({.answer = PortalScript::takesBack});
    const auto result = run(record());
    EXPECT_EQ(result.exitCode, 130) << result.output;
    EXPECT_FALSE(std::filesystem::exists(project));
}

TEST_F(WaylandCommand, SaysWhatIsMissingWithoutAPortal) {
    const auto result = run(record());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr("install xdg-desktop-portal"));
    const auto found = vantro("doctor", "WAYLAND_DISPLAY=wayland-0 XDG_CURRENT_DESKTOP=neon:KDE");
    EXPECT_EQ(found.exitCode, 1);
    EXPECT_THAT(found.output, HasSubstr("wireplumber xdg-desktop-portal xdg-desktop-portal-kde, "
                                        "to record the screen on Wayland"));
}

TEST_F(WaylandCommand, TellsTruthfullyWhatTheDesktopCanDo) {
    offer({.cursorModes = 3});
    for (const auto* list : {"displays", "windows --json"}) {
        const auto result = run(list);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_THAT(result.output, HasSubstr("vantro: The desktop itself asks what to record"));
    }
    const auto told = nlohmann::json::parse(run("doctor --json").output);
    EXPECT_EQ(told.at("desktop"), "wayland");
    for (const auto& [ability, isThere] : {std::pair{"screens", true},
                                           {"windows", true},
                                           {"areas", true},
                                           {"clicks", false},
                                           {"pointer", false},
                                           {"listsContent", false}}) {
        const auto& finding = told.at("abilities").at(ability);
        EXPECT_EQ(finding.at("available"), isThere) << ability;
        EXPECT_TRUE(finding.at("sentence").get<std::string>().ends_with('.')) << ability;
    }
    const ScriptedCompositor compositor; // that tells of the pointer itself
    EXPECT_THAT(run("doctor").output,
                HasSubstr("yes  The pointer is recorded apart from the picture, but as part"));
}

} // namespace
} // namespace vantro::app
