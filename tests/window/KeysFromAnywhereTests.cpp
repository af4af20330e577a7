#include "window/WindowFixture.h"
#include "window/platform/KeysSheet.h"

#include <QKeySequenceEdit>
#include <QLabel>
#include <QPushButton>
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

QString statusOf(const KeysSheet& sheet) {
    return sheet.findChild<QLabel*>(QStringLiteral("status"))->text();
}

TEST_F(KeysFromAnywhereTest, AreBoundOnceSetUpAndThenAtEachStart) {
    auto keys = start();
    EXPECT_TRUE(bound.empty()) << "nobody has asked for them";
    {
        KeysSheet sheet(*keys);
        sheet.show();
        auto* field = sheet.findChildren<QKeySequenceEdit*>().at(2);
        EXPECT_EQ(field->keySequence().toString(), "Ctrl+Alt+Z");
        field->setKeySequence(QKeySequence(Qt::CTRL | Qt::Key_F7));
        sheet.findChild<QPushButton*>(QStringLiteral("setUp"))->click();
        ASSERT_EQ(bound.size(), 1U);
        answer({Kind::failed, {}, "Another program has it"});
        EXPECT_EQ(statusOf(sheet), "Another program has it");
        EXPECT_FALSE(preferences.hasGlobalKeys()) << "it would fail at each start";
        sheet.findChild<QPushButton*>(QStringLiteral("setUp"))->click();
        answer({Kind::bound, bound.back(), {}});
        EXPECT_TRUE(statusOf(sheet).startsWith(QStringLiteral("The keys work")));
    }
    desk.pressed(GlobalAction::mark);
    QCoreApplication::processEvents();
    EXPECT_EQ(acted, std::vector{GlobalAction::mark});
    keys = start();
    const std::vector<GlobalKey> wished{{GlobalAction::toggle, "Ctrl+Alt+R"},
                                        {GlobalAction::pause, "Ctrl+Alt+P"},
                                        {GlobalAction::mark, "Ctrl+F7"}};
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
    KeysSheet sheet(*keys);
    EXPECT_TRUE(sheet.findChildren<QKeySequenceEdit*>().isEmpty());
    QObject::connect(keys.get(), &KeysFromAnywhere::changed,
                     [&] { app.setMarkKey(keys->markKey()); });
    sheet.findChild<QPushButton*>(QStringLiteral("setUp"))->click();
    answer({Kind::bound, {{GlobalAction::mark, "Meta+M"}}, {}});
    QStringList texts;
    for (const auto* label : sheet.findChildren<QLabel*>())
        texts << label->text();
    EXPECT_TRUE(texts.contains(QStringLiteral("Meta+M")));
    EXPECT_TRUE(
        text("sourceNote").contains(QStringLiteral("Press Meta+M where a zoom should be.")));
    answer({Kind::ended, {}, "The desktop has taken the keys back."});
    EXPECT_EQ(statusOf(sheet), "The desktop has taken the keys back.");
    EXPECT_TRUE(text("sourceNote").contains(QStringLiteral("The options")));
}

} // namespace
} // namespace vantro::window
