#include "app/state/AppState.h"

#include "app/files/ProjectPackage.h"
#include "app/files/RecordingFolder.h"
#include "base/Fatal.h"

#include <QScopedValueRollback>
#include <utility>

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

/// What tells of a field's changes.
auto signalOf(ShownField field) -> void (AppState::*)() {
    switch (field) {
        using enum ShownField;
    case recordingPath:
        return &AppState::recordingPathChanged;
    case metadataPath:
        return &AppState::metadataPathChanged;
    case metadata:
        return &AppState::metadataChanged;
    case clicks:
        return &AppState::editableClickEventsChanged;
    case segments:
        return &AppState::segmentsChanged;
    case selectedSegment:
        return &AppState::selectedSegmentIDChanged;
    case selectedClick:
        return &AppState::selectedClickIDChanged;
    case background:
        return &AppState::backgroundSettingsChanged;
    case canvas:
        return &AppState::canvasAspectRatioChanged;
    case cursorScale:
        return &AppState::cursorScaleChanged;
    case webcamPosition:
        return &AppState::webcamPositionChanged;
    case webcamSize:
        return &AppState::webcamSizeChanged;
    case name:
        return &AppState::recordingNameChanged;
    case projectPath:
        return &AppState::projectPathChanged;
    }
    base::fatal("no such field");
}

} // namespace

AppState::AppState(std::uint32_t mainDisplayID)
    : m_selectedDisplayID(mainDisplayID), m_document(files::defaultRecordingName()) {
    connect(&m_document, &EditDocument::changed, this, [this](const auto& before) {
        if (!m_rewriting)
            tellWhatDiffers({before, m_links}, orderOfShowing);
    });
}

AppState::~AppState() = default;

void AppState::setError(const std::string& message, model::VantroError::Kind kind) {
    setError(model::VantroError(kind, message));
    setShowError(true);
}

void AppState::tellWhatDiffers(const ShownDocument& before, std::span<const ShownField> order) {
    const ShownDocument now{m_document.content(), m_links};
    for (const auto field : order)
        if (differs(field, before, now))
            Q_EMIT(this->*signalOf(field))();
}

template <typename Write>
void AppState::rewrite(std::span<const ShownField> order, const Write& write) {
    const ShownDocument before{m_document.content(), m_links};
    {
        const QScopedValueRollback rewriting(m_rewriting, true);
        write();
    }
    tellWhatDiffers(before, order);
}

void AppState::show(model::Project project, std::optional<std::filesystem::path> package) {
    rewrite(orderOfShowing, [&] {
        if (!package)
            m_links.metadataPath =
                project.recording.movie().parent_path() / files::package::metadataFile;
        m_links.projectPath = std::move(package);
        m_links.selectedSegmentID.reset();
        m_links.selectedClickID.reset();
        m_document.open(std::move(project));
    });
    setPhase(AppPhase::previewing());
}

void AppState::saved(const model::Project& written, const std::filesystem::path& movie,
                     const std::filesystem::path& package) {
    if (recordingPath() != movie)
        return;
    rewrite(orderOfShowing, [&] {
        m_links.projectPath = package;
        m_document.saved(written);
    });
}

void AppState::reset() {
    setPhase(AppPhase::idle());
    setSelectedWindow({});
    rewrite(orderOfReset, [this] {
        constexpr double cursorScale = 2.0; // a fresh edit's is larger
        m_links = {};
        model::Edit choices;
        choices.background = edit().background;
        choices.cursorScale = cursorScale;
        m_document.close(std::move(choices));
    });
}

void AppState::setLook(const std::optional<model::Look>& look) {
    const bool isTakenBack = std::exchange(m_look, look) && !look;
    if (isTakenBack && !m_document.recording())
        rewrite(orderOfReset, [this] { m_document.close(model::withLook(edit(), {})); });
}

std::optional<std::filesystem::path> AppState::recordingPath() const {
    const auto& recording = m_document.recording();
    return recording ? std::optional(recording->movie()) : std::nullopt;
}

const model::RecordingMetadata* AppState::metadata() const {
    const auto& recording = m_document.recording();
    return recording ? &recording->metadata() : nullptr;
}

template <typename Value>
void AppState::editStep(const char* name, Value model::Edit::* field, Value value) {
    auto changed = edit();
    changed.*field = std::move(value);
    m_document.apply(std::move(changed), {name});
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

void AppState::setMicrophoneDevice(std::string value) {
    assign(*this, m_microphoneDevice, std::move(value), &AppState::microphoneDeviceChanged);
}

void AppState::setWebcamDevice(std::string value) {
    assign(*this, m_webcamDevice, std::move(value), &AppState::webcamDeviceChanged);
}

void AppState::setWebcamPosition(model::WebcamPosition value) {
    editStep(QT_TRANSLATE_NOOP("Edit", "Move Webcam"), &model::Edit::webcamPosition, value);
}

void AppState::setWebcamSize(double value) {
    editStep(QT_TRANSLATE_NOOP("Edit", "Resize Webcam"), &model::Edit::webcamSize, value);
}

void AppState::setCanvasAspectRatio(model::CanvasAspectRatio value) {
    editStep(QT_TRANSLATE_NOOP("Edit", "Change Canvas"), &model::Edit::canvasAspectRatio, value);
}

void AppState::setBackgroundSettings(model::BackgroundSettings value) {
    editStep(QT_TRANSLATE_NOOP("Edit", "Change Background"), &model::Edit::background,
             std::move(value));
}

void AppState::setSegments(model::SharedList<model::TimelineSegment> value) {
    editStep(QT_TRANSLATE_NOOP("Edit", "Change Timeline"), &model::Edit::segments,
             std::move(value));
}

void AppState::setSelectedSegmentID(std::optional<model::Uuid> value) {
    assign(*this, m_links.selectedSegmentID, value, &AppState::selectedSegmentIDChanged);
}

void AppState::setCursorScale(double value) {
    editStep(QT_TRANSLATE_NOOP("Edit", "Resize Pointer"), &model::Edit::cursorScale, value);
}

void AppState::setEditableClickEvents(model::SharedList<model::ClickEvent> value) {
    editStep(QT_TRANSLATE_NOOP("Edit", "Change Zooms"), &model::Edit::clickEvents,
             std::move(value));
}

void AppState::setSelectedClickID(std::optional<model::Uuid> value) {
    assign(*this, m_links.selectedClickID, value, &AppState::selectedClickIDChanged);
}

void AppState::setRecordingName(std::string value) {
    m_document.rename(std::move(value));
}

void AppState::setMainWindow(QObject* value) {
    assign(*this, m_mainWindow, value, &AppState::mainWindowChanged);
}

void AppState::setOverlayWindow(std::shared_ptr<flows::AreaOverlay> value) {
    assign(*this, m_overlayWindow, std::move(value), &AppState::overlayWindowChanged);
}

void AppState::setRecorder(std::shared_ptr<capture::Recorder> value) {
    assign(*this, m_recorder, std::move(value), &AppState::recorderChanged);
}

} // namespace vantro::app
