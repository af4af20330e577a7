#include "app/state/AppState.h"

#include "app/files/RecordingFolder.h"
#include "base/Fatal.h"

#include <fmt/format.h>

namespace vantro::app {
namespace {

bool equal(const auto& a, const auto& b) {
    return a == b;
}

bool equal(const std::optional<capture::ShareableWindow>& a,
           const std::optional<capture::ShareableWindow>& b) {
    if (!a || !b)
        return a.has_value() == b.has_value();
    return a->windowID == b->windowID && a->title == b->title && a->frame == b->frame &&
           a->applicationName == b->applicationName && a->bundleIdentifier == b->bundleIdentifier &&
           a->isOnScreen == b->isOnScreen;
}

bool equal(const std::optional<model::VantroError>& a, const std::optional<model::VantroError>& b) {
    if (!a || !b)
        return a.has_value() == b.has_value();
    return a->kind() == b->kind() && a->message() == b->message();
}

template <typename Value>
void assign(AppState& state, Value& field, Value value, void (AppState::*changed)()) {
    if (equal(field, value))
        return;
    field = std::move(value);
    Q_EMIT(state.*changed)();
}

} // namespace

AppState::AppState(std::uint32_t mainDisplayID)
    : m_selectedDisplayID(mainDisplayID), m_recordingName(files::defaultRecordingName()) {}

AppState::~AppState() = default;

void AppState::setError(const std::string& message, model::VantroError::Kind kind) {
    setError(model::VantroError(kind, message));
    setShowError(true);
}

void AppState::reset() {
    setPhase(AppPhase::idle());
    setSelectedWindow({});
    setRecordingURL({});
    setMetadataURL({});
    setMetadata({});
    setSegments(model::fullLengthTimeline());
    setSelectedSegmentID({});
    setEditableClickEvents({});
    setSelectedClickID({});
    setCursorScale(2.0);
    setCanvasAspectRatio(model::CanvasAspectRatio::automatic);
    setWebcamPosition(model::WebcamPosition::bottomRight);
    setWebcamSize(0.2);
    setProjectURL({});
}

std::optional<model::ProjectData> AppState::projectData() const {
    if (!m_metadata)
        return {};
    return model::ProjectData{.recordingName = m_recordingName,
                              .metadata = *m_metadata,
                              .editableClickEvents = m_editableClickEvents,
                              .segments = m_segments,
                              .backgroundSettings = m_backgroundSettings,
                              .canvasAspectRatio = m_canvasAspectRatio,
                              .cursorScale = m_cursorScale,
                              .webcamPosition = m_webcamPosition,
                              .webcamSize = m_webcamSize};
}

void AppState::setPhase(AppPhase value) {
    if (m_phase == value)
        return;
    base::require(
        isAllowedTransition(m_phase.kind, value.kind),
        fmt::format("no phase leads from {} to {}", name(m_phase.kind), name(value.kind)));
    m_phase = value;
    Q_EMIT phaseChanged();
}

void AppState::setSelectedRect(model::Rect value) {
    assign(*this, m_selectedRect, value, &AppState::selectedRectChanged);
}

void AppState::setSelectedDisplayID(std::uint32_t value) {
    assign(*this, m_selectedDisplayID, value, &AppState::selectedDisplayIDChanged);
}

void AppState::setRecordingURL(std::optional<std::filesystem::path> value) {
    assign(*this, m_recordingURL, std::move(value), &AppState::recordingURLChanged);
}

void AppState::setMetadataURL(std::optional<std::filesystem::path> value) {
    assign(*this, m_metadataURL, std::move(value), &AppState::metadataURLChanged);
}

void AppState::setMetadata(std::optional<model::RecordingMetadata> value) {
    assign(*this, m_metadata, std::move(value), &AppState::metadataChanged);
}

void AppState::setError(std::optional<model::VantroError> value) {
    assign(*this, m_error, std::move(value), &AppState::errorChanged);
}

void AppState::setShowError(bool value) {
    assign(*this, m_showError, value, &AppState::showErrorChanged);
}

void AppState::setCaptureMode(model::CaptureMode value) {
    assign(*this, m_captureMode, value, &AppState::captureModeChanged);
}

void AppState::setSelectedWindow(std::optional<capture::ShareableWindow> value) {
    assign(*this, m_selectedWindow, std::move(value), &AppState::selectedWindowChanged);
}

void AppState::setSystemAudioEnabled(bool value) {
    assign(*this, m_systemAudioEnabled, value, &AppState::systemAudioEnabledChanged);
}

void AppState::setMicrophoneAudioEnabled(bool value) {
    assign(*this, m_microphoneAudioEnabled, value, &AppState::microphoneAudioEnabledChanged);
}

void AppState::setWebcamEnabled(bool value) {
    assign(*this, m_webcamEnabled, value, &AppState::webcamEnabledChanged);
}

void AppState::setWebcamPosition(model::WebcamPosition value) {
    assign(*this, m_webcamPosition, value, &AppState::webcamPositionChanged);
}

void AppState::setWebcamSize(double value) {
    assign(*this, m_webcamSize, value, &AppState::webcamSizeChanged);
}

void AppState::setCanvasAspectRatio(model::CanvasAspectRatio value) {
    assign(*this, m_canvasAspectRatio, value, &AppState::canvasAspectRatioChanged);
}

void AppState::setBackgroundSettings(model::BackgroundSettings value) {
    assign(*this, m_backgroundSettings, std::move(value), &AppState::backgroundSettingsChanged);
}

void AppState::setSegments(std::vector<model::TimelineSegment> value) {
    assign(*this, m_segments, std::move(value), &AppState::segmentsChanged);
}

void AppState::setSelectedSegmentID(std::optional<model::Uuid> value) {
    assign(*this, m_selectedSegmentID, value, &AppState::selectedSegmentIDChanged);
}

void AppState::setCursorScale(double value) {
    assign(*this, m_cursorScale, value, &AppState::cursorScaleChanged);
}

void AppState::setEditableClickEvents(std::vector<model::ClickEvent> value) {
    assign(*this, m_editableClickEvents, std::move(value), &AppState::editableClickEventsChanged);
}

void AppState::setSelectedClickID(std::optional<model::Uuid> value) {
    assign(*this, m_selectedClickID, value, &AppState::selectedClickIDChanged);
}

void AppState::setRecordingName(std::string value) {
    assign(*this, m_recordingName, std::move(value), &AppState::recordingNameChanged);
}

void AppState::setProjectURL(std::optional<std::filesystem::path> value) {
    assign(*this, m_projectURL, std::move(value), &AppState::projectURLChanged);
}

void AppState::setMainWindow(QObject* value) {
    assign(*this, m_mainWindow, value, &AppState::mainWindowChanged);
}

void AppState::setOverlayWindow(std::shared_ptr<flows::AreaOverlay> value) {
    assign(*this, m_overlayWindow, std::move(value), &AppState::overlayWindowChanged);
}

void AppState::setRecorder(std::shared_ptr<flows::Recorder> value) {
    assign(*this, m_recorder, std::move(value), &AppState::recorderChanged);
}

} // namespace vantro::app
