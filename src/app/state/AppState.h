#pragma once

#include "app/state/AppPhase.h"
#include "app/state/ShownDocument.h"
#include "capture/ShareableContent.h"
#include "model/VantroError.h"

#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>

namespace vantro::app::flows {
class AreaOverlay;
} // namespace vantro::app::flows

namespace vantro::capture {
class Recorder;
} // namespace vantro::capture

namespace vantro::app {

/// The one state of the application: what is to be captured, the finished recording, its edit, the
/// error to show and the phase. Everything else on the screen follows from it.
///
/// Each field has a signal that tells of its changes; a write of an equal value tells nobody. What
/// belongs to the recording and its edit lives in `document()`; this class only shows it field by
/// field. Where one call changes several fields, all are written before the first signal. Owned by
/// the application for the whole run. Main thread.
class AppState : public QObject {
    Q_OBJECT

  public:
    /// `mainDisplayID` is the display that is captured unless another one is chosen.
    explicit AppState(std::uint32_t mainDisplayID);
    ~AppState() override;

    /// Shows an error of this kind in the alert.
    void setError(const std::string& message, model::VantroError::Kind kind);
    /// Puts a recording and its edit into the editor: a project opened from `package`, or without
    /// one a recording that was just made or recovered. Nothing is selected then.
    void show(model::Project project, std::optional<std::filesystem::path> package = {});
    /// Tells that `written`, whose movie was at `movie` before, has been saved as `package`. Does
    /// nothing where the editor shows another recording by now.
    void saved(const model::Project& written, const std::filesystem::path& movie,
               const std::filesystem::path& package);
    /// Makes the state ready for a new recording. The capture choices, the recording's name and the
    /// background stay.
    void reset();
    /// What new recordings look like from now on. Where that is taken back, the next one has the
    /// usual look. What is in the editor stays as it is.
    void setLook(const std::optional<model::Look>& look);
    const std::optional<model::Look>& look() const { return m_look; }

    /// The edit with its steps. The fields below change with it.
    EditDocument& document() { return m_document; }
    const EditDocument& document() const { return m_document; }

    // The phase changes only as AppPhase.h draws it; anything else is fatal.
    AppPhase phase() const { return m_phase; }
    const model::Rect& selectedRect() const {
        return m_selectedRect;
    } ///< capture rectangle, global points
    std::uint32_t selectedDisplayID() const { return m_selectedDisplayID; }
    std::optional<std::filesystem::path> recordingPath() const; ///< the recorded movie
    const std::optional<std::filesystem::path>& metadataPath() const {
        return m_links.metadataPath;
    } ///< written beside the movie
    /// Null without a recording.
    const model::RecordingMetadata* metadata() const;
    const std::optional<model::VantroError>& error() const { return m_error; }
    bool showError() const { return m_showError; } ///< the alert is presented
    model::CaptureMode captureMode() const { return m_captureMode; }
    const std::optional<capture::ShareableWindow>& selectedWindow() const {
        return m_selectedWindow;
    } ///< chosen in window mode
    bool systemAudioEnabled() const { return m_systemAudioEnabled; }
    bool microphoneAudioEnabled() const { return m_microphoneAudioEnabled; }
    bool webcamEnabled() const { return m_webcamEnabled; }
    // Names of devices that are attached; empty for the default ones.
    const std::string& microphoneDevice() const { return m_microphoneDevice; }
    const std::string& webcamDevice() const { return m_webcamDevice; }
    model::WebcamPosition webcamPosition() const { return edit().webcamPosition; }
    double webcamSize() const { return edit().webcamSize; } ///< fraction of the canvas width
    model::CanvasAspectRatio canvasAspectRatio() const { return edit().canvasAspectRatio; }
    const model::BackgroundSettings& backgroundSettings() const { return edit().background; }
    const model::SharedList<model::TimelineSegment>& segments() const { return edit().segments; }
    const std::optional<model::Uuid>& selectedSegmentID() const {
        return m_links.selectedSegmentID;
    } ///< in the editor
    double cursorScale() const { return edit().cursorScale; }
    const model::SharedList<model::ClickEvent>& editableClickEvents() const {
        return edit().clickEvents;
    } ///< the zooms as edited
    const std::optional<model::Uuid>& selectedClickID() const {
        return m_links.selectedClickID;
    } ///< in the editor
    const std::string& recordingName() const {
        return m_document.name();
    } ///< base name of exports and projects
    const std::optional<std::filesystem::path>& projectPath() const {
        return m_links.projectPath;
    } ///< last saved or opened
    QObject* mainWindow() const { return m_mainWindow; } ///< not owned
    const std::shared_ptr<flows::AreaOverlay>& overlayWindow() const {
        return m_overlayWindow;
    } ///< while an area is selected
    const std::shared_ptr<capture::Recorder>& recorder() const {
        return m_recorder;
    } ///< of the recording in progress, else the last one

    // Those of the edit make a step in the document each.
    void setPhase(AppPhase value);
    void setSelectedRect(model::Rect value);
    void setSelectedDisplayID(std::uint32_t value);
    void setError(std::optional<model::VantroError> value);
    void setShowError(bool value);
    void setCaptureMode(model::CaptureMode value);
    void setSelectedWindow(std::optional<capture::ShareableWindow> value);
    void setSystemAudioEnabled(bool value);
    void setMicrophoneAudioEnabled(bool value);
    void setWebcamEnabled(bool value);
    void setMicrophoneDevice(std::string value);
    void setWebcamDevice(std::string value);
    void setWebcamPosition(model::WebcamPosition value);
    void setWebcamSize(double value);
    void setCanvasAspectRatio(model::CanvasAspectRatio value);
    void setBackgroundSettings(model::BackgroundSettings value);
    void setSegments(model::SharedList<model::TimelineSegment> value);
    void setSelectedSegmentID(std::optional<model::Uuid> value);
    void setCursorScale(double value);
    void setEditableClickEvents(model::SharedList<model::ClickEvent> value);
    void setSelectedClickID(std::optional<model::Uuid> value);
    void setRecordingName(std::string value);
    void setMainWindow(QObject* value);
    void setOverlayWindow(std::shared_ptr<flows::AreaOverlay> value);
    void setRecorder(std::shared_ptr<capture::Recorder> value);

  Q_SIGNALS:
    void phaseChanged();
    void selectedRectChanged();
    void selectedDisplayIDChanged();
    void recordingPathChanged();
    void metadataPathChanged();
    void metadataChanged();
    void errorChanged();
    void showErrorChanged();
    void captureModeChanged();
    void selectedWindowChanged();
    void systemAudioEnabledChanged();
    void microphoneAudioEnabledChanged();
    void webcamEnabledChanged();
    void microphoneDeviceChanged();
    void webcamDeviceChanged();
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
    void projectPathChanged();
    void mainWindowChanged();
    void overlayWindowChanged();
    void recorderChanged();

  private:
    const model::Edit& edit() const { return m_document.edit(); }
    template <typename Value>
    void editStep(const char* name, Value model::Edit::* field, Value value);
    template <typename Write>
    void rewrite(std::span<const ShownField> order, const Write& write);
    void tellWhatDiffers(const ShownDocument& before, std::span<const ShownField> order);

    AppPhase m_phase;
    model::Rect m_selectedRect;
    std::uint32_t m_selectedDisplayID = 0;
    std::optional<model::VantroError> m_error;
    bool m_showError = false;
    model::CaptureMode m_captureMode = model::CaptureMode::area;
    std::optional<capture::ShareableWindow> m_selectedWindow;
    bool m_systemAudioEnabled = true;
    bool m_microphoneAudioEnabled = false;
    bool m_webcamEnabled = false;
    std::string m_microphoneDevice;
    std::string m_webcamDevice;
    EditDocument m_document;
    std::optional<model::Look> m_look; ///< of new recordings
    ShownDocument::Links m_links;
    bool m_rewriting = false; ///< signals wait until all is written
    QObject* m_mainWindow = nullptr;
    std::shared_ptr<flows::AreaOverlay> m_overlayWindow;
    std::shared_ptr<capture::Recorder> m_recorder;
};

} // namespace vantro::app
