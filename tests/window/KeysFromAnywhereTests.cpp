#include "window/WindowFixture.h"
#include "window/settings/KeysModel.h"

#include <QTest>

namespace vantro::window {
namespace {

using capture::GlobalAction;
using capture::GlobalKey;
using Kind = capture::GlobalKeysState::Kind;

/// A desktop that answers what the test says.
class KeysFromAnywhereTest : public test::WindowFixture {
  protected:
    std::unique_ptr<KeysFromAnywhere> start(bool desktopChooses = false) {
        return std::make_unique<KeysFromAnywhere>(
            preferences,
            KeysService{[this](const auto& wished, auto listener) {
                            bound.push_back(wished);
                            desk = std::move(listener);
                            return std::make_unique<Bound>();
                        },
                        desktopChooses},
            [this](auto action) { acted.push_back(action); });
    }
    void answer(const capture::GlobalKeysState& told) {
        desk.changed(told);
        QCoreApplication::processEvents();
    }

    class Bound : public capture::GlobalKeys {};
    std::vector<std::vector<GlobalKey>> bound;
    capture::GlobalKeys::Listener desk;
    std::vector<GlobalAction> acted;
};

TEST_F(KeysFromAnywhereTest, AreBoundOnceSetUpAndThenAtEachStart) {
    auto keys = start();
    EXPECT_TRUE(bound.empty()) << "nobody has asked for them";
    const std::vector<GlobalKey> wished{{GlobalAction::toggle, "Ctrl+Alt+R"},
                                        {GlobalAction::pause, "Ctrl+Alt+P"},
                                        {GlobalAction::mark, "Ctrl+F7"}};
    keys->setUp(wished);
    answer({Kind::failed, {}, "Another program has it"});
    EXPECT_FALSE(preferences.hasGlobalKeys()) << "it would fail at each start";
    keys->setUp(wished);
    answer({Kind::bound, wished, {}});
    desk.pressed(GlobalAction::mark);
    QCoreApplication::processEvents();
    EXPECT_EQ(acted, std::vector{GlobalAction::mark});
    keys = start();
    ASSERT_EQ(bound.size(), 3U);
    EXPECT_EQ(bound.back(), wished);
    keys->turnOff();
    desk.pressed(GlobalAction::toggle);
    QCoreApplication::processEvents();
    EXPECT_EQ(acted.size(), 1U) << "too late";
    keys = start();
    EXPECT_EQ(bound.size(), 3U);
    EXPECT_EQ(keys->wished(), wished) << "offered again";
}

TEST_F(KeysFromAnywhereTest, AreShownAsTheDesktopCallsThemAlsoBesideTheRecordButton) {
    platform.able.clicks.whyNot = "not told";
    guard.askAgain();
    showWindow();
    EXPECT_TRUE(text("sourceNote").contains(QStringLiteral("The options set up a key")));
    const auto keys = start(true);
    settings::KeysModel shown(*keys);
    QObject::connect(keys.get(), &KeysFromAnywhere::changed,
                     [&] { app.setMarkKey(keys->markKey()); });
    shown.setUp();
    answer({Kind::bound, {{GlobalAction::mark, "Meta+M"}}, {}});
    EXPECT_EQ(shown.data(shown.index(2), static_cast<int>(settings::KeysModel::Role::keys)),
              "Meta+M");
    EXPECT_TRUE(
        text("sourceNote").contains(QStringLiteral("Press Meta+M where a zoom should be.")));
    answer({Kind::ended, {}, "The desktop has taken the keys back."});
    EXPECT_EQ(shown.status(), "The desktop has taken the keys back.");
    EXPECT_TRUE(text("sourceNote").contains(QStringLiteral("The options")));
}

} // namespace
} // namespace vantro::window
