#include "window/WindowFixture.h"
#include "window/platform/KeysFromAnywhere.h"
#include "window/platform/SettingsSheet.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
namespace vantro::window {
namespace {

class SettingsSheetTest : public test::WindowFixture {
  protected:
    template <typename Control>
    Control& control(const char* name) {
        return *sheet.findChild<Control*>(QString::fromLatin1(name));
    }
    void press(const char* name) { QTest::mouseClick(&control<QPushButton>(name), Qt::LeftButton); }
    /// With the keyboard, from the first entry on.
    void pick(const char* name, int row) {
        auto& box = control<QComboBox>(name);
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_Home);
        for (int i = 0; i < row; ++i)
            QTest::keyClick(&box, Qt::Key_Down);
    }

    KeysFromAnywhere keys{
        preferences, {[](const auto&, const auto&) { return nullptr; }, false}, [](auto) {}};
    QString folder = files.path();
    SettingsSheet sheet{preferences, keys, [this](auto*, const auto&) { return folder; }};
};

TEST_F(SettingsSheetTest, KeepsWhatIsChosenAndRefusesAFolderThatCannotBeWritten) {
    sheet.show();
    pick("frameRate", 2);
    pick("countdown", 3);
    pick("language", 2);
    EXPECT_EQ(preferences.frameRate(), 24);
    EXPECT_EQ(preferences.countdown(), 10);
    EXPECT_EQ(preferences.language(), "de");
    EXPECT_TRUE(control<QLabel>("languageNote").isVisible());
    press("chooseFolder");
    EXPECT_EQ(preferences.recordingsFolder(), files.path());
    EXPECT_EQ(control<QLabel>("folder").text(), files.path());
    folder = files.filePath(QStringLiteral("gone"));
    press("chooseFolder");
    EXPECT_EQ(preferences.recordingsFolder(), files.path());
    EXPECT_EQ(control<QLabel>("folderProblem").text(),
              "Recordings cannot go to " + folder + ": No such file or directory.");
    press("usualFolder");
    EXPECT_EQ(preferences.recordingsFolder(), "");
    EXPECT_FALSE(control<QLabel>("folderProblem").isVisible());
    for (const auto* each : sheet.findChildren<QComboBox*>())
        EXPECT_FALSE(each->accessibleName().isEmpty());
}

TEST_F(SettingsSheetTest, ShowsTheLookOfAFilmAndGivesItUp) {
    QObject::connect(editor.sidebar()->frame(), &editor::sidebar::FrameGroup::lookChosen,
                     [this](const auto& look) { preferences.setLook(look); });
    QSignalSpy wanted(&app, &MainModel::settingsWanted);
    showWindow();
    showEditor();
    key(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(wanted.size(), 1);
    editor.sidebar()->frame()->setPadding(0.2);
    EXPECT_FALSE(control<QPushButton>("usualLook").isEnabled());
    item("useForNew").forceActiveFocus();
    key(Qt::Key_Return);
    EXPECT_EQ(preferences.look(), model::lookOf(state.document().edit()));
    EXPECT_EQ(control<QLabel>("look").text(), "#262626, padding 20 %, corners 0 px, canvas Auto");
    sheet.show();
    press("usualLook");
    EXPECT_FALSE(preferences.look());
}

} // namespace
} // namespace vantro::window
