#include "window/SettingsWindow.h"
#include "window/WindowFixture.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

namespace vantro::window {
namespace {

class SettingsWindowTest : public test::WindowFixture {
  protected:
    QQuickWindow& window() override {
        return shown ? shown->window() : test::WindowFixture::window();
    }
    void showSettings() {
        shown.emplace(preferences, appearance, keys,
                      [this](const auto&, const auto& answer) { answer(folder); });
        shown->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
        settle();
    }
    /// With the keyboard, some entries after the one that is chosen.
    void pick(const char* name, int down) {
        item(name).forceActiveFocus(Qt::TabFocusReason);
        for (int i = 0; i < down; ++i)
            key(Qt::Key_Down);
    }
    void keep(const char* name) {
        window().grabWindow(); // lays out what has appeared, to which the window is fitted
        keepPicture(QString::fromLatin1(name));
    }
    void answer(const capture::GlobalKeysState& told) {
        desk.changed(told);
        settle();
    }

    std::vector<std::vector<capture::GlobalKey>> bound;
    capture::GlobalKeys::Listener desk; ///< of a desktop that answers what the test says
    class Bound : public capture::GlobalKeys {};
    KeysFromAnywhere keys{preferences,
                          {[this](const auto& wished, auto listener) {
                               bound.push_back(wished);
                               desk = std::move(listener);
                               return std::make_unique<Bound>();
                           },
                           false},
                          [](auto) {}};
    QString folder = files.path();
    std::optional<SettingsWindow> shown;
};

TEST_F(SettingsWindowTest, KeepsWhatIsChosenAndRefusesAFolderThatCannotBeWritten) {
    showSettings();
    pick("frameRateChoice", 2);
    pick("countdownChoice", 3);
    pick("languageChoice", 2);
    EXPECT_EQ(preferences.frameRate(), 24);
    EXPECT_EQ(preferences.countdown(), 10);
    EXPECT_EQ(preferences.language(), "de");
    EXPECT_TRUE(shows("languageNote"));
    EXPECT_FALSE(shows("usualFolder"));
    click("chooseFolder");
    EXPECT_EQ(preferences.recordingsFolder(), files.path());
    EXPECT_EQ(text("folder"), files.path());
    folder = files.filePath(QStringLiteral("gone"));
    click("chooseFolder");
    EXPECT_EQ(preferences.recordingsFolder(), files.path());
    EXPECT_EQ(text("folderProblem"),
              "Recordings cannot go to " + folder + ": No such file or directory.");
    pick("themeChoice", 1);
    EXPECT_EQ(preferences.theme(), ui::ThemeChoice::dark);
    keep("settings-chosen");
    click("usualFolder");
    EXPECT_EQ(preferences.recordingsFolder(), "");
    EXPECT_FALSE(shows("folderProblem"));
    key(Qt::Key_Escape);
    EXPECT_FALSE(window().isVisible());
}

TEST_F(SettingsWindowTest, TakesTheKeysThatArePressedOnceTheyAreToBeUsed) {
    showSettings();
    click("keys2");
    key(Qt::Key_K);
    EXPECT_TRUE(text("keysStatus").startsWith(QStringLiteral("K alone")));
    key(Qt::Key_Escape);
    EXPECT_TRUE(window().isVisible()) << "the field gives the keyboard back first";
    item("keys2").forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Return);
    key(Qt::Key_F7, Qt::ControlModifier);
    EXPECT_EQ(item("keys2").property("keys").toString(), "Ctrl+F7");
    click("keys0");
    key(Qt::Key_Backspace);
    EXPECT_TRUE(bound.empty());
    click("setUp");
    using capture::GlobalAction;
    const std::vector<capture::GlobalKey> wished{{GlobalAction::toggle, ""},
                                                 {GlobalAction::pause, "Ctrl+Alt+P"},
                                                 {GlobalAction::mark, "Ctrl+F7"}};
    ASSERT_EQ(bound.size(), 1U);
    EXPECT_EQ(bound.back(), wished);
    answer({capture::GlobalKeysState::Kind::failed, {}, "Another program has it"});
    EXPECT_EQ(text("keysStatus"), "Another program has it");
    click("setUp");
    answer({capture::GlobalKeysState::Kind::bound, wished, {}});
    EXPECT_TRUE(text("keysStatus").startsWith(QStringLiteral("The keys work")));
    EXPECT_FALSE(item("setUp").isEnabled());
    keep("settings-keys");
    click("turnOff");
    EXPECT_FALSE(preferences.hasGlobalKeys());
}

TEST_F(SettingsWindowTest, ShowsTheLookOfAFilmAndGivesItUp) {
    QObject::connect(editor.sidebar()->frame(), &editor::sidebar::FrameGroup::lookChosen,
                     [this](const auto& look) { preferences.setLook(look); });
    QSignalSpy wanted(&app, &MainModel::settingsWanted);
    showWindow();
    showEditor();
    key(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(wanted.size(), 1);
    editor.sidebar()->frame()->setPadding(0.2);
    item("useForNew").forceActiveFocus();
    key(Qt::Key_Return);
    EXPECT_EQ(preferences.look(), model::lookOf(state.document().edit()));
    keepPicture(QStringLiteral("look-for-new"));
    showSettings();
    EXPECT_EQ(text("look"), "#262626, padding 20 %, corners 0 px, canvas Auto");
    keep("settings-look");
    click("usualLook");
    EXPECT_FALSE(preferences.look());
    EXPECT_FALSE(shows("usualLook"));
}

} // namespace
} // namespace vantro::window
