#pragma once

#include "app/state/AppPhase.h"
#include "capture/ShareableContent.h"
#include "model/ProjectData.h"
#include "model/VantroError.h"

#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>

namespace vantro {

class AreaOverlay;
class Recorder;

/// The one state of the application: what is to be captured, the finished recording, its edit, the
/// error to show and the phase. Everything else on the screen follows from it.
///
/// Each field has a signal that tells of its changes; a write of an equal value tells nobody. Owned
/// by the application for the whole run. Main thread.
class AppState : public QObject {
    Q_OBJECT

  public:
    /// `mainDisplayID` is the display that is captured unless another one is chosen.
    explicit AppState(std::uint32_t mainDisplayID);
    ~AppState() override;

    /// Shows an error of this kind in the alert.
    void setError(const std::string& message, VantroError::Kind kind);
    /// Makes the state ready for a new recording. The capture choices, the background and the
    /// recording's name stay.
    void reset();
    /// The edit as a project keeps it; nothing without a recording.
    std::optional<ProjectData> projectData() const;

    // The phase changes only as AppPhase.h draws it; anything else is fatal.
    AppPhase phase() const { return m_phase; }
    const Rect& selectedRect() const {
        return m_selectedRect;
    } ///< capture rectangle, global points
    std::uint32_t selectedDisplayID() const { return m_selectedDisplayID; }
    const std::optional<std::filesystem::path>& recordingURL() const {
        return m_recordingURL;
    } ///< the recorded movie
    const std::optional<std::filesystem::path>& metadataURL() const {
        return m_metadataURL;
    } ///< written beside the movie
    const std::optional<RecordingMetadata>& metadata() const { return m_metadata; }
    const std::optional<VantroError>& error() const { return m_error; }
    bool showError() const { return m_showError; } ///< the alert is presented
    CaptureMode captureMode() const { return m_captureMode; }
    const std::optional<ShareableWindow>& selectedWindow() const {
        return m_selectedWindow;
    } ///< chosen in window mode
    bool systemAudioEnabled() const { return m_systemAudioEnabled; }
    bool microphoneAudioEnabled() const { return m_microphoneAudioEnabled; }
    bool webcamEnabled() const { return m_webcamEnabled; }
    WebcamPosition webcamPosition() const { return m_webcamPosition; }
    double webcamSize() const { return m_webcamSize; } ///< fraction of the canvas width
    CanvasAspectRatio canvasAspectRatio() const { return m_canvasAspectRatio; }
    const BackgroundSettings& backgroundSettings() const { return m_backgroundSettings; }
    const std::vector<TimelineSegment>& segments() const { return m_segments; }
    const std::optional<Uuid>& selectedSegmentID() const {
        return m_selectedSegmentID;
    } ///< in the editor
    double cursorScale() const { return m_cursorScale; }
    const std::vector<ClickEvent>& editableClickEvents() const {
        return m_editableClickEvents;
    } ///< the zooms as edited
    const std::optional<Uuid>& selectedClickID() const {
        return m_selectedClickID;
    } ///< in the editor
    const std::string& recordingName() const {
        return m_recordingName;
    } ///< base name of exports and projects
    const std::optional<std::filesystem::path>& projectURL() const {
        return m_projectURL;
    } ///< last saved or opened
    QObject* mainWindow() const { return m_mainWindow; } ///< not owned
    const std::shared_ptr<AreaOverlay>& overlayWindow() const {
        return m_overlayWindow;
    } ///< while an area is selected
    const std::shared_ptr<Recorder>& recorder() const {
        return m_recorder;
    } ///< of the recording in progress, else the last one

    void setPhase(AppPhase value);
    void setSelectedRect(Rect value);
    void setSelectedDisplayID(std::uint32_t value);
    void setRecordingURL(std::optional<std::filesystem::path> value);
    void setMetadataURL(std::optional<std::filesystem::path> value);
    void setMetadata(std::optional<RecordingMetadata> value);
    void setError(std::optional<VantroError> value);
    void setShowError(bool value);
    void setCaptureMode(CaptureMode value);
    void setSelectedWindow(std::optional<ShareableWindow> value);
    void setSystemAudioEnabled(bool value);
    void setMicrophoneAudioEnabled(bool value);
    void setWebcamEnabled(bool value);
    void setWebcamPosition(WebcamPosition value);
    void setWebcamSize(double value);
    void setCanvasAspectRatio(CanvasAspectRatio value);
    void setBackgroundSettings(BackgroundSettings value);
    void setSegments(std::vector<TimelineSegment> value);
    void setSelectedSegmentID(std::optional<Uuid> value);
    void setCursorScale(double value);
    void setEditableClickEvents(std::vector<ClickEvent> value);
    void setSelectedClickID(std::optional<Uuid> value);
    void setRecordingName(std::string value);
    void setProjectURL(std::optional<std::filesystem::path> value);
    void setMainWindow(QObject* value);
    void setOverlayWindow(std::shared_ptr<AreaOverlay> value);
    void setRecorder(std::shared_ptr<Recorder> value);

  Q_SIGNALS:
    void phaseChanged();
    void selectedRectChanged();
    void selectedDisplayIDChanged();
    void recordingURLChanged();
    void metadataURLChanged();
    void metadataChanged();
    void errorChanged();
    void showErrorChanged();
    void captureModeChanged();
    void selectedWindowChanged();
    void systemAudioEnabledChanged();
    void microphoneAudioEnabledChanged();
    void webcamEnabledChanged();
    void webcamPositionChanged();
    void webcamSizeChanged();
    void canvasAspectRatioChanged();
    void backgroundSettingsChanged();
    void segmentsChanged();
    void selectedSegmentIDChanged();
    void cursorScaleChanged();
    void editableClickEventsChanged();
    void selectedClickIDChanged();
    void recordingNameChanged();
    void projectURLChanged();
    void mainWindowChanged();
    void overlayWindowChanged();
    void recorderChanged();

  private:
    AppPhase m_phase;
    Rect m_selectedRect;
    std::uint32_t m_selectedDisplayID = 0;
    std::optional<std::filesystem::path> m_recordingURL;
    std::optional<std::filesystem::path> m_metadataURL;
    std::optional<RecordingMetadata> m_metadata;
    std::optional<VantroError> m_error;
    bool m_showError = false;
    CaptureMode m_captureMode = CaptureMode::area;
    std::optional<ShareableWindow> m_selectedWindow;
    bool m_systemAudioEnabled = true;
    bool m_microphoneAudioEnabled = false;
    bool m_webcamEnabled = false;
    WebcamPosition m_webcamPosition = WebcamPosition::bottomRight;
    double m_webcamSize = 0.2;
    CanvasAspectRatio m_canvasAspectRatio = CanvasAspectRatio::automatic;
    BackgroundSettings m_backgroundSettings;
    std::vector<TimelineSegment> m_segments = fullLengthTimeline();
    std::optional<Uuid> m_selectedSegmentID;
    double m_cursorScale = 3.0;
    std::vector<ClickEvent> m_editableClickEvents;
    std::optional<Uuid> m_selectedClickID;
    std::string m_recordingName;
    std::optional<std::filesystem::path> m_projectURL;
    QObject* m_mainWindow = nullptr;
    std::shared_ptr<AreaOverlay> m_overlayWindow;
    std::shared_ptr<Recorder> m_recorder;
};

} // namespace vantro
