// Keys through the genuine portal.
#include "capture/KeyLog.h"
#include "capture/wayland/PortalFixture.h"
#include "capture/wayland/portal/PortalGlobalKeys.h"

namespace vantro::capture::wayland {
namespace {

using enum GlobalAction;
using Kind = GlobalKeysState::Kind;
using test::eventually;
using test::KeyLog;

class PortalKeysTest : public test::PortalFixture {
  protected:
    void SetUp() override {
        PortalFixture::SetUp();
        if (desk)
            desk->startPortal({.hasKeys = true});
    }
    test::KeysBackend& user() { return desk->portal().keys(); }

    KeyLog log;
};

TEST_F(PortalKeysTest, AreWhatTheDesktopGivesAndCallsThem) {
    auto keys = bindPortalKeys(usualGlobalKeys(), log.listener());
    ASSERT_TRUE(log.becomes(Kind::bound));
    EXPECT_TRUE(hasPortalKeys());
    EXPECT_EQ(user().wished(), (std::vector<std::string>{"toggle CTRL+ALT+r", "pause CTRL+ALT+p",
                                                         "mark CTRL+ALT+z"}));
    const std::vector<GlobalKey> given{
        {toggle, "Press CTRL+ALT+r"}, {pause, "Press CTRL+ALT+p"}, {mark, "Press CTRL+ALT+z"}};
    EXPECT_EQ(log.state().keys, given);
    user().press("mark");
    user().press("pause");
    user().press("toggle");
    user().press("something else");
    EXPECT_TRUE(log.hasPressed({mark, pause, toggle}));
    user().rename("mark", "Meta+M");
    EXPECT_TRUE(
        eventually([&] { return log.state().keys == std::vector{GlobalKey{mark, "Meta+M"}}; }));
    keys.reset();
    EXPECT_TRUE(eventually([&] { return user().isClosed(); }));
}

TEST_F(PortalKeysTest, AreRefusedOrMissedInOneStep) {
    user().setAnswer(1);
    auto keys = bindPortalKeys(usualGlobalKeys(), log.listener());
    EXPECT_TRUE(log.becomes(Kind::refused));
    user().setAnswer(3);
    KeyLog waiting;
    keys = bindPortalKeys(usualGlobalKeys(), waiting.listener());
    EXPECT_TRUE(eventually([&] { return user().asked() == 2; }));
    keys.reset(); // while the desktop still asks
    EXPECT_EQ(waiting.state().kind, Kind::asking);
    desk->endPortal();
    desk->startPortal({.hasKeys = false});
    EXPECT_FALSE(hasPortalKeys());
    KeyLog missing;
    keys = bindPortalKeys(usualGlobalKeys(), missing.listener());
    EXPECT_TRUE(missing.becomes(Kind::failed));
    EXPECT_EQ(missing.state().whyNot, keyboardSettingsText);
}

TEST_F(PortalKeysTest, EndWithTheirSessionOrThePortal) {
    auto keys = bindPortalKeys(usualGlobalKeys(), log.listener());
    ASSERT_TRUE(log.becomes(Kind::bound));
    user().closeSession();
    EXPECT_TRUE(log.becomes(Kind::ended));
    KeyLog later;
    keys = bindPortalKeys(usualGlobalKeys(), later.listener());
    ASSERT_TRUE(later.becomes(Kind::bound));
    desk->endPortal();
    EXPECT_TRUE(later.becomes(Kind::ended));
    EXPECT_EQ(later.state().whyNot, "The desktop's service for keys has ended.");
}

} // namespace
} // namespace vantro::capture::wayland
