#include "capture/wayland/portal/RestoreTokens.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace vantro::capture::wayland {
namespace {

using model::CaptureMode;

TEST(RestoreTokens, AreGoodForOneUseByOneApplicationAndKind) {
    const test::TemporaryFolder folder;
    const auto file = folder / "below" / "tokens.json";
    const RememberedChoice choice{"secret",
                                  {"screen-1", model::Point{1, -2}, model::Size{3, 4}, 640, 360}};
    RestoreTokens started(file, "com.vantro.app");
    started.keep(CaptureMode::screen, choice);
    EXPECT_FALSE(RestoreTokens(file, "").take(CaptureMode::screen));
    EXPECT_FALSE(started.take(CaptureMode::window));
    const auto taken = started.take(CaptureMode::screen).value_or(RememberedChoice());
    EXPECT_EQ(taken.token, "secret");
    EXPECT_EQ(taken.source, choice.source);
    EXPECT_FALSE(started.take(CaptureMode::screen));
}

TEST(RestoreTokens, ThatCannotBeReadAreNone) {
    test::TemporaryFolder folder;
    for (const auto* broken : {"", "{", "[]", R"({"screen/": 1})", R"({"screen/": {"token": 5}})",
                               R"({"screen/": {"token": "a", "id": "", "pixels": [1]}})"}) {
        const auto file = folder.write("tokens.json", broken);
        EXPECT_FALSE(RestoreTokens(file, "").take(CaptureMode::screen)) << broken;
    }
}

TEST(RestoreTokens, KnowWhatTheDesktopTakesAProcessFor) {
    const std::string slice = "0::/user.slice/user-1000.slice/user@1000.service/app.slice/";
    for (const auto& [unit, application] :
         {std::pair{"app-gnome-com.vantro.app-4711.scope", "gnome-com.vantro.app"},
          {"app-com.vantro.app@0f1e.service", "com.vantro.app"},
          {"app-org.gnome.Terminal.slice/vte-spawn-1.scope", ""},
          {"session-2.scope", ""}})
        EXPECT_EQ(applicationOf(slice + unit + "\n"), application) << unit;
    EXPECT_EQ(applicationOf(""), "");
}

} // namespace
} // namespace vantro::capture::wayland
