#include "app/files/ProjectStores.h"
#include "app/files/RecordingFolder.h"
#include "window/WindowFixture.h"

#include <QAccessible>
#include <algorithm>
#include <deque>
#include <iterator>
namespace vantro::window {
namespace {

namespace fs = std::filesystem;
using Kind = model::VantroError::Kind;

/// A start screen over recordings that nobody saved and projects that were used before.
class StartScreenTest : public test::WindowFixture {
  protected:
    StartScreenTest() { variables.set("TMPDIR", home.path()); }

    fs::path recorded(const std::string& name) {
        const auto movie = app::files::makeRecordingDirectory() / "recording.mov";
        test::writeColorClock(movie, 320, 180, 10, 2);
        app::files::nameRecording(movie, name);
        return movie;
    }
    /// A project of that name, edited with this cursor scale.
    fs::path saved(const std::string& name) {
        const auto package = home / (name + ".vantro");
        const auto movie = home / (name + ".mov");
        test::writeColorClock(movie, 320, 180, 10, 2);
        app::files::saveProject(package, {name, test::plainProject(movie, 10).recording, {}}, true);
        preferences.addRecentProject(QString::fromStdString(package.string()));
        return package;
    }
    void show() {
        recovery.find();
        showWindow();
        runTasks();
    }
    /// The row of a list with that title.
    QQuickItem& row(const QString& title) {
        return found([&](const QQuickItem& shown) {
            return shown.property("title").toString() == title &&
                   shown.property("removeSymbol").isValid();
        });
    }
    QQuickItem& part(const QString& title, const QString& name) {
        return found([&](const QQuickItem& shown) { return shown.objectName() == name; },
                     &row(title));
    }
    QQuickItem& found(const std::function<bool(const QQuickItem&)>& isMeant,
                      QQuickItem* root = nullptr) {
        std::deque<QQuickItem*> left{root != nullptr ? root : window().contentItem()};
        for (; !left.empty(); left.pop_front()) {
            if (left.front()->isVisible() && isMeant(*left.front()))
                return *left.front();
            std::ranges::copy(left.front()->childItems(), std::back_inserter(left));
        }
        throw std::logic_error("no such item is shown");
    }
    void clickAt(QQuickItem& target) {
        const auto middle = target.mapToScene({target.width() / 2, target.height() / 2}).toPoint();
        QTest::mouseMove(&window(), middle);
        QTest::mouseClick(&window(), Qt::LeftButton, {}, middle);
        runTasks();
    }
    void clickRemove(const QString& title) { clickAt(part(title, QStringLiteral("remove"))); }
    void answer(const char* button) {
        window().grabWindow(); // lays the buttons out
        click(button);
        runTasks();
    }
    bool drop(const std::vector<fs::path>& dropped) {
        const QPoint middle(window().width() / 2, window().height() / 2);
        const bool isTaken = WindowFixture::drop(middle, dropped);
        EXPECT_EQ(isFrameShown, isTaken);
        return isTaken;
    }

    test::TemporaryFolder home;
    test::Environment variables;
};

TEST_F(StartScreenTest, ListsRecordingsThatNobodySavedAndAClickOpensOne) {
    const auto movie = recorded("Tour");
    show();
    EXPECT_EQ(row("Tour").property("note").toString(),
              "00:02, " +
                  QLocale().formattedDataSize(static_cast<qint64>(app::files::recordingSize(movie)),
                                              1, QLocale::DataSizeSIFormat));
    const auto pixel = colorAt(part("Tour", QStringLiteral("recordingPicture")));
    EXPECT_LT(test::distance(test::rgbOf(pixel), test::colorOfSecond(1)), 8);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&row("Tour"))->role(), QAccessible::ListItem);
    clickAt(row("Tour"));
    EXPECT_EQ(state.recordingPath(), movie);
    EXPECT_EQ(state.recordingName(), "Tour");
    key(Qt::Key_N, Qt::ControlModifier);
    runTasks();
    EXPECT_EQ(state.phase(), app::AppPhase::idle());
    EXPECT_TRUE(row("Tour").isVisible()) << "it never goes by itself";
}

TEST_F(StartScreenTest, DeletesARecordingOnlyAfterAskingAndKeysDoTheSame) {
    const auto movie = recorded("Tour");
    show();
    clickRemove("Tour");
    EXPECT_THAT(item("deleteCard").property("text").toString().toStdString(),
                testing::HasSubstr("Tour"));
    key(Qt::Key_Escape);
    runTasks();
    EXPECT_TRUE(fs::exists(movie));
    item("unsavedRecordings").forceActiveFocus();
    key(Qt::Key_Delete);
    key(Qt::Key_Return); // keeps
    runTasks();
    EXPECT_TRUE(fs::exists(movie));
    clickRemove("Tour");
    answer("rejectButton");
    EXPECT_FALSE(fs::exists(movie.parent_path()));
    EXPECT_FALSE(shows("unsavedRecordings"));
    EXPECT_EQ(window().size(), QSize(340, 120));
}

TEST_F(StartScreenTest, OpensRecentProjectsAndTellsWhichAreGone) {
    const auto package = saved("Demo");
    saved("Gone");
    fs::remove_all(home / "Gone.vantro");
    show();
    EXPECT_THAT(row("Gone").property("note").toString().toStdString(),
                testing::StartsWith("Not found"));
    clickAt(row("Gone"));
    EXPECT_TRUE(shows("alertCard"));
    answer("acceptButton");
    clickRemove("Gone");
    EXPECT_EQ(preferences.recentProjects().size(), 1);
    item("recentProjects").forceActiveFocus();
    key(Qt::Key_Return);
    runTasks();
    EXPECT_EQ(state.projectPath(), package);
}

TEST_F(StartScreenTest, WhatIsDroppedOnTheWindowIsOpenedAndAnythingElseIsRefused) {
    const auto package = saved("Demo");
    const auto movie = home / "Holiday.mp4";
    test::writeColorClock(movie, 320, 180, 10, 2);
    const auto text = home.write("notes.txt", "text");
    const auto broken = home.write("broken.webm", "no movie");
    show();
    EXPECT_FALSE(drop({text}));
    EXPECT_TRUE(drop({text, package}));
    EXPECT_EQ(state.projectPath(), package);
    EXPECT_TRUE(drop({movie}));
    EXPECT_EQ(state.recordingName(), "Holiday");
    EXPECT_TRUE(state.editableClickEvents().empty());
    EXPECT_FALSE(state.projectPath());
    EXPECT_TRUE(stageBecomes(test::colorOfSecond(0)));
    const auto before = state.document().project();
    EXPECT_TRUE(drop({broken}));
    test::expectError(state, Kind::projectOpenFailed, "broken.webm");
    EXPECT_EQ(state.document().project(), before);
    EXPECT_FALSE(drop({package})) << "a message lies over the window";
}

TEST_F(StartScreenTest, ClosingAsksAboutChangesAndDoesWhatIsAnswered) {
    const auto package = saved("Demo");
    show();
    int quits = 0;
    QObject::connect(&app, &MainModel::quitReady, [&] { ++quits; });
    clickAt(row("Demo"));
    struct Answer {
        std::function<void()> give;
        int quits; ///< so far
        double saved;
    };
    for (const auto& [give, expected, saved] :
         std::initializer_list<Answer>{{[this] { click("dismissButton"); }, 0, 3},
                                       {[this] { key(Qt::Key_Escape); }, 0, 3},
                                       {[this] { click("acceptButton"); }, 1, 1.5},
                                       {[this] { click("rejectButton"); }, 2, 1.5}}) {
        state.setCursorScale(expected == 2 ? 2.5 : 1.5);
        expected == 2 ? key(Qt::Key_Q, Qt::ControlModifier) : void(window().close());
        settle();
        EXPECT_THAT(item("unsavedCard").property("title").toString().toStdString(),
                    testing::HasSubstr("Demo"));
        give();
        runTasks();
        EXPECT_EQ(quits, expected);
        EXPECT_EQ(app::files::readProjectFile(package).edit.cursorScale, saved);
    }
}

} // namespace
} // namespace vantro::window
