#include "capture/KeyLog.h"
#include "capture/x11/input/X11GlobalKeys.h"
#include "support/TestWindow.h"

#include <cstdlib>

#include <gmock/gmock.h>

namespace vantro::capture::x11 {
namespace {

using enum GlobalAction;
using Kind = GlobalKeysState::Kind;
using test::KeyLog;
using ::testing::HasSubstr;

class X11GlobalKeysTest : public ::testing::Test {
  protected:
    std::unique_ptr<GlobalKeys> bind(KeyLog& listening,
                                     const std::vector<GlobalKey>& keys = usualGlobalKeys()) {
        return grabKeys(keys, listening.listener(), server.display());
    }
    /// Whether another client could have them.
    bool areFree(const std::vector<GlobalKey>& keys) {
        KeyLog other;
        const auto taken = bind(other, keys);
        return other.becomes(Kind::bound);
    }
    /// As a user, or a program that a user runs.
    void run(const std::string& command) const {
        const auto there = "DISPLAY=" + server.display() + " " + command;
        ASSERT_EQ(std::system(there.c_str()), 0) << command; // NOLINT(concurrency-mt-unsafe)
    }

    test::XServer server;
    KeyLog log;
};

TEST_F(X11GlobalKeysTest, ComeWhateverWindowHasTheKeyboardAndWhateverIsLocked) {
    const test::TestWindow other(server, {0, 0, 100, 100}, 0xff0000);
    run("xdotool windowfocus " + std::to_string(other.id()));
    const auto keys = bind(log);
    ASSERT_TRUE(log.becomes(Kind::bound));
    EXPECT_EQ(log.state().keys, usualGlobalKeys());
    run("xdotool key ctrl+alt+r key ctrl+r key ctrl+alt+shift+r key ctrl+alt+p key ctrl+alt+z");
    run("xdotool key Caps_Lock key ctrl+alt+r key Num_Lock key ctrl+alt+z");
    EXPECT_TRUE(log.hasPressed({toggle, pause, mark, toggle, mark}));
}

TEST_F(X11GlobalKeysTest, ComeOnceHoweverLongTheyAreHeld) {
    const auto keys = bind(log);
    ASSERT_TRUE(log.becomes(Kind::bound));
    run("xdotool keydown ctrl keydown alt keydown r"); // repeated after two thirds of a second
    EXPECT_FALSE(
        test::eventually([&] { return log.pressed().size() > 1; }, std::chrono::seconds(1)));
    run("xdotool keyup r key z key r");
    EXPECT_TRUE(log.hasPressed({toggle, mark, toggle}));
}

TEST_F(X11GlobalKeysTest, SayWhichKeyCannotBeHad) {
    KeyLog other;
    const auto taken = bind(other, {{mark, "Ctrl+Alt+Z"}});
    ASSERT_TRUE(other.becomes(Kind::bound));
    const std::pair<const char*, const char*> cases[] = {
        {"Ctrl+Alt+Z", "Another program has Ctrl+Alt+Z already"},
        {"Ctrl+Alt+R", "Ctrl+Alt+R cannot do two things"},
        {"Ctrl+F35", "The keyboard has no key for Ctrl+F35"},
        {"R", "R cannot be used from anywhere"},
        {"Ctrl+Nonsense", "cannot be used"}};
    for (const auto& [wished, sentence] : cases) {
        KeyLog told;
        const auto keys = bind(told, {{toggle, "Ctrl+Alt+R"}, {mark, wished}});
        ASSERT_TRUE(told.becomes(Kind::failed)) << wished;
        EXPECT_THAT(told.state().whyNot, HasSubstr(sentence));
        EXPECT_TRUE(areFree({{toggle, "Ctrl+Alt+R"}})) << "nothing is kept of what failed";
    }
    const auto none = grabKeys(usualGlobalKeys(), log.listener(), ":no");
    EXPECT_TRUE(log.becomes(Kind::failed));
}

TEST_F(X11GlobalKeysTest, FollowTheKeyboardAndAreGivenBack) {
    auto keys = bind(log);
    ASSERT_TRUE(log.becomes(Kind::bound));
    run("xmodmap -e 'keysym r = q' -e 'keysym x = r R'");
    ASSERT_TRUE(test::eventually([&] {
        run("xdotool key --clearmodifiers ctrl+alt+r");
        return !log.pressed().empty();
    }));
    keys.reset();
    EXPECT_TRUE(areFree(usualGlobalKeys()));
    KeyLog later;
    keys = bind(later);
    ASSERT_TRUE(later.becomes(Kind::bound));
    server.crash();
    EXPECT_TRUE(later.becomes(Kind::ended));
}

} // namespace
} // namespace vantro::capture::x11
