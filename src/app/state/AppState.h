#pragma once

#include "app/state/AppPhase.h"
#include "capture/ShareableContent.h"
#include "model/ProjectData.h"
#include "model/VantroError.h"

#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>

namespace vantro::app::flows {
class AreaOverlay;
class Recorder;
} // namespace vantro::app::flows

namespace vantro::app {

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
    void setError(const std::string& message, model::VantroError::Kind kind);
    /// Makes the state ready for a new recording. The capture choices, the background and the
    /// recording's name stay.
    void reset();
    /// The edit as a project keeps it; nothing without a recording.
    std::optional<model::ProjectData> projectData() const;

    // The phase changes only as AppPhase.h draws it; anything else is fatal.
    AppPhase phase() const { return m_phase; }
    const model::Rect& selectedRect() const {
        return m_selectedRect;
    } ///< capture rectangle, global points
    std::uint32_t selectedDisplayID() const { return m_selectedDisplayID; }
    const std::optional<std::filesystem::path>& recordingURL() const {
        return m_recordingURL;
    } ///< the recorded movie
    const std::optional<std::filesystem::path>& metadataURL() const {
        return m_metadataURL;
    } ///< written beside the movie
    const std::optional<model::RecordingMetadata>& metadata() const { return m_metadata; }
    const std::optional<model::VantroError>& error() const { return m_error; }
    bool showError() const { return m_showError; } ///< the alert is presented
    model::CaptureMode captureMode() const { return m_captureMode; }
    const std::optional<capture::ShareableWindow>& selectedWindow() const {
        return m_selectedWindow;
    } ///< chosen in window mode
    bool systemAudioEnabled() const { return m_systemAudioEnabled; }
    bool microphoneAudioEnabled() const { return m_microphoneAudioEnabled; }
    bool webcamEnabled() const { return m_webcamEnabled; }
    model::WebcamPosition webcamPosition() const { return m_webcamPosition; }
    double webcamSize() const { return m_webcamSize; } ///< fraction of the canvas width
    model::CanvasAspectRatio canvasAspectRatio() const { return m_canvasAspectRatio; }
    const model::BackgroundSettings& backgroundSettings() const { return m_backgroundSettings; }
    const std::vector<model::TimelineSegment>& segments() const { return m_segments; }
    const std::optional<model::Uuid>& selectedSegmentID() const {
        return m_selectedSegmentID;
    } ///< in the editor
    double cursorScale() const { return m_cursorScale; }
    const std::vector<model::ClickEvent>& editableClickEvents() const {
        return m_editableClickEvents;
    } ///< the zooms as edited
    const std::optional<model::Uuid>& selectedClickID() const {
        return m_selectedClickID;
    } ///< in the editor
    const std::string& recordingName() const {
        return m_recordingName;
    } ///< base name of exports and projects
    const std::optional<std::filesystem::path>& projectURL() const {
        return m_projectURL;
    } ///< last saved or opened
    QObject* mainWindow() const { return m_mainWindow; } ///< not owned
    const std::shared_ptr<flows::AreaOverlay>& overlayWindow() const {
        return m_overlayWindow;
    } ///< while an area is selected
    const std::shared_ptr<flows::Recorder>& recorder() const {
        return m_recorder;
    } ///< of the recording in progress, else the last one

    void setPhase(AppPhase value);
    void setSelectedRect(model::Rect value);
    void setSelectedDisplayID(std::uint32_t value);
    void setRecordingURL(std::optional<std::filesystem::path> value);
    void setMetadataURL(std::optional<std::filesystem::path> value);
    void setMetadata(std::optional<model::RecordingMetadata> value);
    void setError(std::optional<model::VantroError> value);
    void setShowError(bool value);
    void setCaptureMode(model::CaptureMode value);
    void setSelectedWindow(std::optional<capture::ShareableWindow> value);
    void setSystemAudioEnabled(bool value);
    void setMicrophoneAudioEnabled(bool value);
    void setWebcamEnabled(bool value);
    void setWebcamPosition(model::WebcamPosition value);
    void setWebcamSize(double value);
    void setCanvasAspectRatio(model::CanvasAspectRatio value);
    void setBackgroundSettings(model::BackgroundSettings value);
    void setSegments(std::vector<model::TimelineSegment> value);
    void setSelectedSegmentID(std::optional<model::Uuid> value);
    void setCursorScale(double value);
    void setEditableClickEvents(std::vector<model::ClickEvent> value);
    void setSelectedClickID(std::optional<model::Uuid> value);
    void setRecordingName(std::string value);
    void setProjectURL(std::optional<std::filesystem::path> value);
    void setMainWindow(QObject* value);
    void setOverlayWindow(std::shared_ptr<flows::AreaOverlay> value);
    void setRecorder(std::shared_ptr<flows::Recorder> value);

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
    model::Rect m_selectedRect;
    std::uint32_t m_selectedDisplayID = 0;
    std::optional<std::filesystem::path> m_recordingURL;
    std::optional<std::filesystem::path> m_metadataURL;
    std::optional<model::RecordingMetadata> m_metadata;
    std::optional<model::VantroError> m_error;
    bool m_showError = false;
    model::CaptureMode m_captureMode = model::CaptureMode::area;
    std::optional<capture::ShareableWindow> m_selectedWindow;
    bool m_systemAudioEnabled = true;
    bool m_microphoneAudioEnabled = false;
    bool m_webcamEnabled = false;
    model::WebcamPosition m_webcamPosition = model::WebcamPosition::bottomRight;
    double m_webcamSize = 0.2;
    model::CanvasAspectRatio m_canvasAspectRatio = model::CanvasAspectRatio::automatic;
    model::BackgroundSettings m_backgroundSettings;
    std::vector<model::TimelineSegment> m_segments = model::fullLengthTimeline();
    std::optional<model::Uuid> m_selectedSegmentID;
    double m_cursorScale = 3.0;
    std::vector<model::ClickEvent> m_editableClickEvents;
    std::optional<model::Uuid> m_selectedClickID;
    std::string m_recordingName;
    std::optional<std::filesystem::path> m_projectURL;
    QObject* m_mainWindow = nullptr;
    std::shared_ptr<flows::AreaOverlay> m_overlayWindow;
    std::shared_ptr<flows::Recorder> m_recorder;
};

} // namespace vantro::app
