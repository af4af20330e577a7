#include "ui/platform/NativePanels.h"

#include "app/files/ProjectPackage.h"
#include "app/state/AppState.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QStandardPaths>
#include <QWindow>

namespace vantro::ui {
namespace {

using app::files::ProjectForm;

struct PanelTexts {
    QString title;
    QString suffix;
    QString filter;
};

QString inOneFile() {
    return QObject::tr("Vantro project, one file to pass on (*.vantro)");
}

PanelTexts textsFor(app::flows::PanelKind kind) {
    switch (kind) {
    case app::flows::PanelKind::saveMovie:
        return {QObject::tr("Export"), QStringLiteral("mp4"), QObject::tr("MPEG-4 movie (*.mp4)")};
    case app::flows::PanelKind::saveGif:
        return {QObject::tr("Export"), QStringLiteral("gif"), QObject::tr("Animated GIF (*.gif)")};
    case app::flows::PanelKind::saveFrame:
        return {QObject::tr("Save Frame"), QStringLiteral("png"),
                QObject::tr("PNG picture (*.png)")};
    case app::flows::PanelKind::saveProject:
        return {QObject::tr("Save Project"), QStringLiteral("vantro"),
                QObject::tr("Vantro project, a folder (*.vantro)") + QStringLiteral(";;") +
                    inOneFile()};
    case app::flows::PanelKind::openProject:
        return {QObject::tr("Open Project"),
                {},
                QObject::tr("Vantro projects (*.vantro project.json)")};
    case app::flows::PanelKind::openPicture:
        return {QObject::tr("Background Picture"),
                {},
                QObject::tr("Pictures (*.jpg *.jpeg *.png *.webp)")};
    case app::flows::PanelKind::importMovie:
        return {
            QObject::tr("Open Movie"), {}, QObject::tr("Movies (*.mp4 *.mov *.mkv *.webm *.m4v)")};
    }
    return {};
}

FolderUse useOf(app::flows::PanelKind kind) {
    switch (kind) {
    case app::flows::PanelKind::saveProject:
    case app::flows::PanelKind::openProject:
        return FolderUse::projects;
    case app::flows::PanelKind::openPicture:
        return FolderUse::pictures;
    case app::flows::PanelKind::saveMovie:
    case app::flows::PanelKind::saveGif:
    case app::flows::PanelKind::saveFrame:
    case app::flows::PanelKind::importMovie:
        break;
    }
    return FolderUse::films;
}

bool isPackage(const QFileInfo& file) {
    return file.isDir() && QFile::exists(file.filePath() + u'/' +
                                         QString::fromLatin1(app::files::package::projectFile));
}

/// A panel for saving that asks before it replaces what carries the final name: with the suffix
/// that a typed name lacks, and for a project's folder, which panels take for a place to go into.
class SavePanel : public QFileDialog {
  public:
    SavePanel(const PanelTexts& texts, const QString& folder, const QString& proposedName)
        : QFileDialog(nullptr, texts.title, folder, texts.filter), m_suffix(texts.suffix) {
        setAcceptMode(AcceptSave);
        setFileMode(AnyFile);
        setDefaultSuffix(m_suffix);
        selectFile(proposedName);
    }

    const QString& path() const { return m_path; }

    void accept() override {
        const auto chosen = selectedFiles();
        if (chosen.isEmpty())
            return;
        const QFileInfo target(savePath(chosen.front(), m_suffix));
        if (target.isDir() && !isPackage(target))
            return QFileDialog::accept(); // goes there
        const bool desktopHasAsked =
            findChild<QLineEdit*>() == nullptr && target.filePath() == chosen.front();
        if (target.exists() && !desktopHasAsked && !mayReplace(target))
            return;
        m_path = target.filePath();
        done(Accepted);
    }

  private:
    bool mayReplace(const QFileInfo& target) {
        return QMessageBox::warning(this, windowTitle(),
                                    QObject::tr("%1 already exists.\nDo you want to replace it?")
                                        .arg(target.fileName()),
                                    QMessageBox::Yes | QMessageBox::No,
                                    QMessageBox::No) == QMessageBox::Yes;
    }

    QString m_suffix;
    QString m_path;
};

/// A panel for opening that takes a project's folder as well, which panels go into.
class OpenPanel : public QFileDialog {
  public:
    OpenPanel(const PanelTexts& texts, const QString& folder)
        : QFileDialog(nullptr, texts.title, folder, texts.filter) {
        setFileMode(ExistingFile);
    }

    const QString& path() const { return m_path; }

    void accept() override {
        const auto chosen = selectedFiles();
        if (chosen.isEmpty())
            return;
        const QFileInfo file(chosen.front());
        const QFileInfo folder(file.path());
        if (!file.isDir() && isPackage(folder)) // one of its files
            m_path = folder.filePath();
        else if (isPackage(file) || (!file.isDir() && file.exists()))
            m_path = file.filePath();
        else
            return QFileDialog::accept(); // goes there, or says what is wrong
        done(Accepted);
    }

  private:
    QString m_path;
};

QFileDialog* makePanel(app::flows::PanelKind kind, const QString& folder,
                       const QString& proposedName) {
    const auto texts = textsFor(kind);
    if (!texts.suffix.isEmpty())
        return new SavePanel(texts, folder, proposedName);
    return new OpenPanel(texts, folder);
}

} // namespace

QString savePath(const QString& chosen, const QString& suffix) {
    const QFileInfo folder(QFileInfo(chosen).path());
    if (suffix == folder.suffix() && isPackage(folder))
        return folder.filePath();
    const bool complete = chosen.endsWith(u'.' + suffix, Qt::CaseInsensitive);
    return complete || QFileInfo(chosen).isDir() ? chosen : chosen + u'.' + suffix;
}

QString NativePanels::startFolder(app::flows::PanelKind kind) const {
    auto last = m_preferences.folder(useOf(kind));
    if (!last.isEmpty() && QDir(last).exists())
        return last;
    const auto place = kind == app::flows::PanelKind::openPicture ? QStandardPaths::PicturesLocation
                                                                  : QStandardPaths::MoviesLocation;
    const auto usual = QStandardPaths::writableLocation(place);
    return QDir(usual).exists() ? usual : QDir::homePath();
}

void NativePanels::ask(app::flows::PanelKind kind, const std::string& proposedName, Answer answer) {
    auto* panel = makePanel(kind, startFolder(kind), QString::fromStdString(proposedName));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setWindowModality(Qt::ApplicationModal);
    QObject::connect(
        panel, &QFileDialog::finished,
        [panel, kind, &preferences = m_preferences, answer = std::move(answer)](int result) {
            const auto chosen = panel->selectedFiles();
            if (result != QDialog::Accepted || chosen.isEmpty())
                return answer({});
            const auto* saving = dynamic_cast<const SavePanel*>(panel);
            const auto path =
                saving != nullptr ? saving->path() : static_cast<OpenPanel*>(panel)->path();
            preferences.setFolder(useOf(kind), QFileInfo(path).absolutePath());
            const bool oneFile = panel->selectedNameFilter() == inOneFile();
            answer({{.path = path.toStdString(),
                     .form = oneFile ? ProjectForm::oneFile : ProjectForm::folder}});
        });
    panel->winId();
    if (auto* window = qobject_cast<QWindow*>(m_state.mainWindow()))
        panel->windowHandle()->setTransientParent(window);
    panel->open();
}

} // namespace vantro::ui
