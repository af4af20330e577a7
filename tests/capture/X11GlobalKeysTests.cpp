#include "capture/KeyLog.h"
#include "capture/x11/X11GlobalKeys.h"
#include "support/Keyboard.h"
#include "support/TestWindow.h"

#include <gmock/gmock.h>

namespace vantro::capture::x11 {
namespace {

using enum GlobalAction;
using Kind = GlobalKeysState::Kind;
using test::KeyLog;
using ::testing::HasSubstr;

// As X.Org's keysymdef.h has them.
constexpr std::uint32_t control = 0xffe3;
constexpr std::uint32_t alt = 0xffe9;
constexpr std::uint32_t shift = 0xffe1;
constexpr std::uint32_t capsLock = 0xffe5;
constexpr std::uint32_t numLock = 0xff7f;
constexpr std::uint16_t controlAndAlt = 4 | 8;

class X11GlobalKeysTest : public ::testing::Test {
  protected:
    std::unique_ptr<GlobalKeys> bind(KeyLog& log,
                                     const std::vector<GlobalKey>& keys = usualGlobalKeys()) {
        return grabKeys(keys, log.listener(), server.display());
    }
    test::XServer server;
    test::Keyboard keyboard{server};
};

TEST_F(X11GlobalKeysTest, ComeWhateverWindowHasTheKeyboardAndWhateverIsLocked) {
    const test::TestWindow other(server, {0, 0, 100, 100}, 0xff0000);
    keyboard.focus(other.id());
    KeyLog log;
    const auto keys = bind(log);
    ASSERT_TRUE(log.becomes(Kind::bound));
    EXPECT_EQ(log.state().keys, usualGlobalKeys());
    keyboard.type({control, alt, 'r'});
    keyboard.type({control, 'r'});
    keyboard.type({control, alt, shift, 'r'});
    keyboard.type({control, alt, 'z'});
    keyboard.type({capsLock});
    keyboard.type({control, alt, 'r'});
    keyboard.type({numLock});
    keyboard.type({control, alt, 'z'});
    EXPECT_TRUE(log.hasPressed({toggle, mark, toggle, mark}));
}

TEST_F(X11GlobalKeysTest, ComeOnceHoweverLongTheyAreHeld) {
    KeyLog log;
    const auto keys = bind(log);
    ASSERT_TRUE(log.becomes(Kind::bound));
    keyboard.press(control);
    keyboard.press(alt);
    keyboard.press('r'); // the server repeats it after two thirds of a second
    EXPECT_FALSE(
        test::eventually([&] { return log.pressed().size() > 1; }, std::chrono::seconds(1)));
    keyboard.release('r');
    keyboard.type({'z'});
    keyboard.type({'r'});
    EXPECT_TRUE(log.hasPressed({toggle, mark, toggle}));
}

TEST_F(X11GlobalKeysTest, SayWhichKeyCannotBeHad) {
    ASSERT_TRUE(keyboard.take('z', controlAndAlt));
    const std::pair<const char*, const char*> cases[] = {
        {"Ctrl+Alt+Z", "Another program has Ctrl+Alt+Z already"},
        {"Ctrl+F35", "The keyboard has no key for Ctrl+F35"},
        {"R", "R cannot be used from anywhere"},
        {"Ctrl+Nonsense", "cannot be used"}};
    for (const auto& [wished, sentence] : cases) {
        KeyLog log;
        const auto keys = bind(log, {{toggle, "Ctrl+Alt+R"}, {mark, wished}});
        ASSERT_TRUE(log.becomes(Kind::failed)) << wished;
        EXPECT_THAT(log.state().whyNot, HasSubstr(sentence));
    }
    EXPECT_TRUE(keyboard.take('r', controlAndAlt)) << "nothing is kept of what failed";
    KeyLog log;
    const auto none = grabKeys(usualGlobalKeys(), log.listener(), ":no");
    EXPECT_TRUE(log.becomes(Kind::failed));
}

TEST_F(X11GlobalKeysTest, FollowTheKeyboardAndAreGivenBack) {
    KeyLog log;
    auto keys = bind(log);
    ASSERT_TRUE(log.becomes(Kind::bound));
    EXPECT_FALSE(keyboard.take('r', controlAndAlt));
    keyboard.remap('q', 'x'); // so that no key is without a sign
    keyboard.remap('r', 'q');
    keyboard.remap('x', 'r');
    ASSERT_TRUE(test::eventually([&] {
        keyboard.type({control, alt, 'r'});
        return !log.pressed().empty();
    }));
    keys.reset();
    EXPECT_TRUE(keyboard.take('r', controlAndAlt));
    KeyLog later;
    const auto more = bind(later, {{mark, "Ctrl+Alt+Z"}});
    ASSERT_TRUE(later.becomes(Kind::bound));
    server.crash();
    EXPECT_TRUE(later.becomes(Kind::ended));
}

} // namespace
} // namespace vantro::capture::x11
