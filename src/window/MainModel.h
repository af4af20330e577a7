#pragma once

#include "app/flows/Flows.h"
#include "app/flows/RecordingFlow.h"
#include "window/MessagesModel.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <QtQml/qqmlregistration.h>

namespace vantro::app::flows {
class PermissionService;
} // namespace vantro::app::flows

namespace vantro::ui {
class ActionGuard;
} // namespace vantro::ui

namespace vantro::window::picker {
class WindowPickerModel;
} // namespace vantro::window::picker

namespace vantro::window {

/// What the main window shows and does outside of the editor. Holds no truth but whether the
/// program ends after the stop. Main thread.
class MainModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    /// waiting, controls, picker, asking, confirming, countdown, selecting, recording, editor or
    /// empty.
    Q_PROPERTY(QString screen READ screen NOTIFY screenChanged)
    Q_PROPERTY(int captureMode READ captureMode WRITE setCaptureMode NOTIFY captureModeChanged)
    Q_PROPERTY(bool systemAudio READ systemAudio WRITE setSystemAudio NOTIFY sourcesChanged)
    Q_PROPERTY(bool microphone READ microphone WRITE setMicrophone NOTIFY sourcesChanged)
    Q_PROPERTY(bool webcam READ webcam WRITE setWebcam NOTIFY sourcesChanged)
    /// Where zooms do not come by themselves, how they are marked; else empty.
    Q_PROPERTY(QString clicksNote READ clicksNote NOTIFY clicksNoteChanged)
    Q_PROPERTY(QString elapsed READ elapsed NOTIFY recordingChanged)
    Q_PROPERTY(QString recordingNote READ recordingNote NOTIFY recordingChanged)
    Q_PROPERTY(bool captureEnded READ captureEnded NOTIFY recordingChanged)
    Q_PROPERTY(bool stopping READ stopping NOTIFY recordingChanged)
    Q_PROPERTY(bool paused READ paused NOTIFY recordingChanged)
    Q_PROPERTY(int countdown READ countdown NOTIFY countdownChanged)
    /// Of what was chosen in the desktop's dialog, as the URL of an image; empty for none.
    Q_PROPERTY(QString chosenPicture READ chosenPicture NOTIFY chosenChanged)
    Q_PROPERTY(vantro::window::MessagesModel* messages READ messages CONSTANT)

  public:
    MainModel(app::AppState& state, app::flows::PermissionService& permission,
              picker::WindowPickerModel& windows, app::flows::Flows flows, ui::ActionGuard& guard);

    QString screen() const;
    int captureMode() const;
    void setCaptureMode(int mode);
    bool systemAudio() const { return m_state.systemAudioEnabled(); }
    void setSystemAudio(bool enabled) { m_state.setSystemAudioEnabled(enabled); }
    bool microphone() const { return m_state.microphoneAudioEnabled(); }
    void setMicrophone(bool enabled) { m_state.setMicrophoneAudioEnabled(enabled); }
    bool webcam() const { return m_state.webcamEnabled(); }
    void setWebcam(bool enabled) { m_state.setWebcamEnabled(enabled); }
    QString elapsed() const;
    QString recordingNote() const;
    bool captureEnded() const { return !m_flows.recording.recorderStatus().isCapturing(); }
    bool stopping() const { return m_flows.recording.isStopping(); }
    bool paused() const { return m_flows.recording.isPaused(); }
    int countdown() const { return m_flows.recording.preparation().countdownRemaining(); }
    QString chosenPicture() const;
    MessagesModel* messages() { return &m_messages; }

    Q_INVOKABLE void record() { m_flows.recording.preparation().begin(); }
    Q_INVOKABLE void chooseAnew() { m_flows.recording.preparation().chooseAnew(); }
    Q_INVOKABLE void confirmChosen() { m_flows.recording.preparation().confirm(); }
    Q_INVOKABLE void stop() { m_flows.recording.stopRecording(); }
    Q_INVOKABLE void pauseOrResume() { m_flows.recording.pauseOrResume(); }
    Q_INVOKABLE void cancelArea() { m_flows.recording.preparation().areaCancelled(); }
    Q_INVOKABLE void cancelAsking() { m_flows.recording.preparation().cancel(); }
    Q_INVOKABLE void cancelCountdown() { m_flows.recording.preparation().cancel(); }
    /// A row of the window picker's list; one that is gone by now does nothing.
    Q_INVOKABLE void pickWindow(int row);
    Q_INVOKABLE void cancelPicker() { m_flows.recording.preparation().windowPickerCancelled(); }
    Q_INVOKABLE void openProject();
    /// Whether one of these files is a project or a movie, by its name.
    Q_INVOKABLE bool canOpen(const QList<QUrl>& files) const;
    /// The first of them that is.
    Q_INVOKABLE void openFiles(const QList<QUrl>& files);
    /// The options menu, at a place on the screen.
    Q_INVOKABLE void showOptions(double x, double y) { Q_EMIT optionsWanted(x, y); }
    Q_INVOKABLE void showSettings() { Q_EMIT settingsWanted(); }

    /// The window is asked to close. True when it may, and then the program ends; otherwise the
    /// user is asked about a recording or unsaved changes, or a recording that is being finished is
    /// waited for.
    Q_INVOKABLE bool mayClose();
    Q_INVOKABLE void keepRecording();
    /// Finishes the recording's files and then quits.
    Q_INVOKABLE void stopAndQuit();

    QString clicksNote() const;
    /// Marks zooms from anywhere; empty where no key does.
    void setMarkKey(const QString& keys);

  Q_SIGNALS:
    void clicksNoteChanged();
    void screenChanged();
    void captureModeChanged();
    void sourcesChanged();
    void recordingChanged();
    void countdownChanged();
    void chosenChanged();
    void optionsWanted(double x, double y);
    void settingsWanted();
    void quitReady();

  private:
    void connectState();
    void connectFlows();
    void phaseChanged();
    void quit();

    app::AppState& m_state;
    app::flows::PermissionService& m_permission;
    picker::WindowPickerModel& m_windows;
    app::flows::Flows m_flows;
    ui::ActionGuard& m_guard;
    MessagesModel m_messages;
    int m_chosenNumber = 0; ///< of what has been chosen
    QString m_markKey;
    bool m_quitAfterStop = false;
};

} // namespace vantro::window
