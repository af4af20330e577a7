#include "app/state/AppState.h"
#include "ui/platform/NativePanels.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace vantro::ui {
namespace {

using app::flows::PanelKind;

/// A folder with a project, a film, and a folder that is no project.
class NativePanelsTest : public testing::Test {
  protected:
    NativePanelsTest() {
        QDir(folder.path()).mkpath(QStringLiteral("tour.vantro"));
        QDir(folder.path()).mkpath(QStringLiteral("films"));
        for (const auto* name : {"tour.vantro/project.json", "take.one.mp4", "one.vantro"})
            QFile(folder.filePath(QString::fromLatin1(name))).open(QIODevice::WriteOnly);
    }

    /// Types a path into a panel and accepts it; a question about replacing is answered.
    std::optional<std::filesystem::path> choose(PanelKind kind, const QString& typed,
                                                std::optional<bool> replace) {
        std::optional<std::filesystem::path> chosen;
        panels.ask(kind, "proposed", [&](const auto& file) {
            if (file)
                chosen = file->path;
        });
        auto* panel = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        panel->findChild<QLineEdit*>()->setText(folder.filePath(typed));
        bool asked = false;
        QTimer::singleShot(0, panel, [&] {
            auto* question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (question == nullptr)
                return;
            asked = true;
            question->button(replace.value_or(false) ? QMessageBox::Yes : QMessageBox::No)->click();
        });
        static_cast<QDialog*>(panel)->accept();
        QCoreApplication::processEvents();
        EXPECT_EQ(asked, replace.has_value()) << typed.toStdString();
        if (panel->isVisible())
            panel->reject();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return chosen;
    }
    std::filesystem::path in(const char* name) {
        return folder.filePath(QString::fromLatin1(name)).toStdString();
    }

    QTemporaryDir folder;
    ui::Preferences preferences{folder.filePath(QStringLiteral("vantro.ini"))};
    app::AppState state{1};
    NativePanels panels{state, preferences};
};

TEST_F(NativePanelsTest, NothingIsReplacedUnaskedAndProjectsOpenInEitherForm) {
    struct Case {
        PanelKind kind;
        const char* typed;
        std::optional<bool> replace; ///< the answer to the question that is expected
        const char* chosen;          ///< null: none
    };
    for (const auto& [kind, typed, replace, chosen] : std::vector<Case>{
             {PanelKind::saveProject, "new", {}, "new.vantro"},
             {PanelKind::saveProject, "v1.2", {}, "v1.2.vantro"},
             {PanelKind::saveProject, "tour", true, "tour.vantro"},
             {PanelKind::saveProject, "tour.vantro", true, "tour.vantro"},
             {PanelKind::saveProject, "tour.vantro", false, nullptr},
             {PanelKind::saveProject, "tour.vantro/again.vantro", true, "tour.vantro"},
             {PanelKind::saveProject, "films", {}, nullptr}, // goes there
             {PanelKind::saveMovie, "take.two", {}, "take.two.mp4"},
             {PanelKind::saveMovie, "take.one", true, "take.one.mp4"},
             {PanelKind::saveMovie, "take.one", false, nullptr},
             {PanelKind::saveGif, "take.MP4.GIF", {}, "take.MP4.GIF"},
             {PanelKind::openProject, "tour.vantro", {}, "tour.vantro"},
             {PanelKind::openProject, "tour.vantro/project.json", {}, "tour.vantro"},
             {PanelKind::openProject, "one.vantro", {}, "one.vantro"},
             {PanelKind::openProject, "films", {}, nullptr}}) {
        const auto expected = chosen ? std::optional(in(chosen)) : std::nullopt;
        EXPECT_EQ(choose(kind, QString::fromLatin1(typed), replace), expected) << typed;
    }
}

TEST_F(NativePanelsTest, APanelOpensWhereTheLastOfItsUseWasLeft) {
    const auto shownFolder = [this](PanelKind kind) {
        panels.ask(kind, "proposed", [](const auto&) {});
        auto* panel = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        const auto shown = panel->directory().absolutePath();
        panel->reject();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return shown;
    };
    const auto films = folder.filePath(QStringLiteral("films"));
    choose(PanelKind::saveMovie, QStringLiteral("films/a.mp4"), {});
    for (const auto kind : {PanelKind::saveGif, PanelKind::saveFrame})
        EXPECT_EQ(shownFolder(kind), films);
    for (const auto kind : {PanelKind::saveProject, PanelKind::openPicture})
        EXPECT_NE(shownFolder(kind), films);
    QDir(films).removeRecursively();
    EXPECT_NE(shownFolder(PanelKind::saveMovie), films) << "it is gone";
}

} // namespace
} // namespace vantro::ui
