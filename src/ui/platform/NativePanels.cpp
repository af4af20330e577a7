#include "ui/platform/NativePanels.h"

#include "app/files/ProjectPackage.h"
#include "app/state/AppState.h"

#include <QDir>
#include <QFileDialog>
#include <QStandardPaths>
#include <QWindow>

namespace vantro::ui {
namespace {

struct PanelTexts {
    QString title;
    QString suffix;
    QString filter;
};

PanelTexts textsFor(app::flows::PanelKind kind) {
    switch (kind) {
    case app::flows::PanelKind::saveMovie:
        return {QStringLiteral("Export"), QStringLiteral("mp4"),
                QStringLiteral("MPEG-4 movie (*.mp4)")};
    case app::flows::PanelKind::saveGif:
        return {QStringLiteral("Export"), QStringLiteral("gif"),
                QStringLiteral("Animated GIF (*.gif)")};
    case app::flows::PanelKind::saveProject:
        return {QStringLiteral("Save Project"), QStringLiteral("vantro"),
                QStringLiteral("Vantro project (*.vantro)")};
    case app::flows::PanelKind::openProject:
        return {QStringLiteral("Open Project"), {}, {}};
    }
    return {};
}

QString startFolder() {
    const auto movies = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    return QDir(movies).exists() ? movies : QDir::homePath();
}

/// The native panels pass a typed name on without a suffix.
std::filesystem::path withSuffix(const QString& path, const QString& suffix) {
    const bool complete = suffix.isEmpty() || path.endsWith(u'.' + suffix, Qt::CaseInsensitive);
    return (complete ? path : path + u'.' + suffix).toStdString();
}

} // namespace

void NativePanels::ask(app::flows::PanelKind kind, const std::string& proposedName, Answer answer) {
    const auto texts = textsFor(kind);
    auto* dialog = new QFileDialog(nullptr, texts.title, startFolder(), texts.filter);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::ApplicationModal);
    if (kind == app::flows::PanelKind::openProject) {
        // To the desktop a package is a folder.
        dialog->setFileMode(QFileDialog::Directory);
        dialog->setOption(QFileDialog::ShowDirsOnly);
    } else {
        dialog->setAcceptMode(QFileDialog::AcceptSave);
        dialog->setFileMode(QFileDialog::AnyFile);
        dialog->setDefaultSuffix(texts.suffix);
        dialog->selectFile(QString::fromStdString(proposedName));
    }
    QObject::connect(dialog, &QFileDialog::finished,
                     [dialog, answer = std::move(answer), suffix = texts.suffix](int result) {
                         const auto chosen = dialog->selectedFiles();
                         if (result == QDialog::Accepted && !chosen.isEmpty())
                             answer(withSuffix(chosen.front(), suffix));
                         else
                             answer({});
                     });
    dialog->winId();
    if (auto* window = qobject_cast<QWindow*>(m_state.mainWindow()))
        dialog->windowHandle()->setTransientParent(window);
    dialog->open();
}

} // namespace vantro::ui
