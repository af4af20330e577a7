#pragma once

#include "app/flows/Flows.h"
#include "app/state/AppState.h"
#include "base/HostClock.h"
#include "editor/EditorPreview.h"
#include "editor/FrameExport.h"
#include "editor/ZoomTarget.h"
#include "editor/sidebar/SidebarModel.h"

#include <QStringList>
#include <QTimer>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor {

/// What the editor needs of its surroundings; all of it outlives the editor.
struct EditorServices {
    app::flows::FilePanels& panels;
    app::flows::TaskRunner& tasks; ///< for work that a click waits for
    OpenMovie openMovie;           ///< for single pictures
    std::function<void(const QString& file)> showInFolder;
    std::function<base::HostTime()> now = base::hostNow;
};

/// What the editor screen shows and does: the preview, the recording's name, and the project and
/// export actions. Holds no truth but the notice of what was last done. Main thread.
class EditorModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(
        QString recordingName READ recordingName WRITE setRecordingName NOTIFY recordingNameChanged)
    Q_PROPERTY(vantro::editor::EditorPreview* preview READ preview CONSTANT)
    Q_PROPERTY(vantro::editor::sidebar::SidebarModel* sidebar READ sidebar CONSTANT)
    Q_PROPERTY(vantro::editor::ZoomTarget* zoomTarget READ zoomTarget CONSTANT)
    Q_PROPERTY(QStringList formats READ formats CONSTANT)
    Q_PROPERTY(QStringList resolutions READ resolutions CONSTANT)
    Q_PROPERTY(QStringList qualities READ qualities CONSTANT)
    Q_PROPERTY(bool exporting READ exporting NOTIFY exportChanged)
    Q_PROPERTY(double progress READ progress NOTIFY exportChanged)
    Q_PROPERTY(QString progressText READ progressText NOTIFY exportChanged)
    Q_PROPERTY(QString timeLeft READ timeLeft NOTIFY exportChanged) ///< empty while not known
    /// The film that was exported last, until something else is done with it; empty without one.
    Q_PROPERTY(QString exportedFile READ exportedFile NOTIFY exportedFileChanged)
    Q_PROPERTY(QString exportedName READ exportedName NOTIFY exportedFileChanged)
    Q_PROPERTY(QString title READ title NOTIFY titleChanged) ///< of the window
    Q_PROPERTY(bool working READ working NOTIFY workingChanged)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)

  public:
    EditorModel(app::AppState& state, EditorPreview& preview, app::flows::Flows flows,
                const EditorServices& services);

    QString recordingName() const { return QString::fromStdString(m_state.recordingName()); }
    void setRecordingName(const QString& name);
    EditorPreview* preview() { return &m_preview; }
    sidebar::SidebarModel* sidebar() { return &m_sidebar; }
    ZoomTarget* zoomTarget() { return &m_zoomTarget; }
    QStringList formats() const;
    QStringList resolutions() const;
    QStringList qualities() const;
    bool exporting() const;
    double progress() const { return m_state.phase().progress; }
    QString progressText() const;
    QString timeLeft() const;
    const QString& exportedFile() const { return m_exportedFile; }
    QString exportedName() const;
    QString title() const;
    bool working() const;
    const QString& notice() const { return m_notice; }

    /// Whether this format has a size and a quality of its own instead of chosen ones.
    Q_INVOKABLE bool hasFixedSize(int format) const;
    /// Indices into formats, resolutions and qualities.
    Q_INVOKABLE void exportRecording(int format, int resolution, int quality);
    Q_INVOKABLE void cancelExport();
    /// "About 12 MB"; empty where nothing can be said. Indices as above.
    Q_INVOKABLE QString sizeEstimate(int format, int resolution, int quality) const;
    Q_INVOKABLE void showExported();
    /// The file onto the clipboard.
    Q_INVOKABLE void copyExported();
    Q_INVOKABLE void forgetExported() { setExportedFile({}); }
    /// The film's picture at the playhead, onto the clipboard or into a file.
    Q_INVOKABLE void copyFrame();
    Q_INVOKABLE void saveFrame();
    Q_INVOKABLE void newRecording();
    Q_INVOKABLE void openProject();
    /// Asks for a place the first time only.
    Q_INVOKABLE void saveProject();
    /// Always asks for a place.
    Q_INVOKABLE void saveProjectAs();

  Q_SIGNALS:
    void recordingNameChanged();
    void exportChanged();
    void workingChanged();
    void noticeChanged();
    void exportedFileChanged();
    void titleChanged();

  private:
    void followState();
    void followFlows();
    void refreshPreview();
    void setNotice(const QString& notice);
    void setExportedFile(const QString& file);

    app::AppState& m_state;
    EditorPreview& m_preview;
    app::flows::Flows m_flows;
    EditorServices m_services;
    sidebar::SidebarModel m_sidebar;
    FrameExport m_frames;
    ZoomTarget m_zoomTarget;
    base::HostTime m_exportStart;
    QString m_exportedFile;
    QTimer m_refresh; ///< fires once the event loop is back
    QString m_notice;
};

} // namespace vantro::editor
