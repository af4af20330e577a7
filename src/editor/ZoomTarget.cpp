#include "editor/ZoomTarget.h"

#include "app/state/AppState.h"
#include "timeline/ZoomRules.h"

#include <algorithm>
#include <cmath>

namespace vantro::editor {

ZoomTarget::ZoomTarget(app::AppState& state, EditorPreview& preview)
    : m_state(state), m_preview(preview), m_steps(state.document(), "zoom target ") {
    auto& transport = *preview.transport();
    connect(&state.document(), &app::EditDocument::changed, this, &ZoomTarget::follow);
    connect(&state, &app::AppState::selectedClickIDChanged, this, &ZoomTarget::follow);
    connect(&preview, &EditorPreview::statusChanged, this, &ZoomTarget::follow);
    // The canvas is the one before until the preview has taken over the edit.
    connect(&preview, &EditorPreview::pictureSizeChanged, this, &ZoomTarget::follow);
    connect(&transport, &PlayerTimeObserver::currentTimeChanged, this, &ZoomTarget::follow);
    connect(&transport, &PlayerTimeObserver::isPlayingChanged, this, &ZoomTarget::follow);
}

const model::ClickEvent* ZoomTarget::selected() const {
    const auto& id = m_state.selectedClickID();
    return id && m_state.document().recording()
               ? timeline::findZoom(m_state.editableClickEvents(), *id)
               : nullptr;
}

std::optional<render::RecordingLayout> ZoomTarget::layoutNow() {
    const auto sizes = m_preview.sizes();
    const auto& recording = m_state.document().recording();
    if (!sizes || !recording)
        return {};
    const auto& clicks = m_state.editableClickEvents();
    if (!m_motion || !m_recording || !m_recording->isSameAs(*recording) ||
        !m_clicks.isSameAs(clicks)) {
        m_recording = recording;
        m_clicks = clicks;
        m_motion.emplace(*recording, clicks,
                         model::Size{static_cast<double>(sizes->recording.width),
                                     static_cast<double>(sizes->recording.height)});
    }
    m_canvas = sizes->canvas;
    return render::layOut(m_canvas, sizes->recording, m_state.backgroundSettings(),
                          m_motion->camera(m_preview.transport()->currentTime()));
}

std::optional<QPointF> ZoomTarget::placeNow() {
    const auto* zoom = selected();
    if (zoom == nullptr || m_preview.transport()->isPlaying())
        return {};
    const auto layout = m_held ? m_held : layoutNow();
    if (!layout || layout->place.isEmpty())
        return {};
    const double pixelsPerPoint = m_state.metadata()->displayScaleFactor;
    const auto at = layout->onOutput({zoom->x * pixelsPerPoint, zoom->y * pixelsPerPoint});
    return QPointF(at.x / m_canvas.width, at.y / m_canvas.height);
}

void ZoomTarget::follow() {
    const auto* zoom = selected();
    const auto text =
        zoom != nullptr
            ? QStringLiteral("%1, %2").arg(std::lround(zoom->x)).arg(std::lround(zoom->y))
            : QString();
    const auto place = placeNow();
    if (place == m_place && text == m_text)
        return;
    m_place = place;
    m_text = text;
    Q_EMIT changed();
}

QString ZoomTarget::text() const {
    return m_text;
}

void ZoomTarget::begin() {
    if (!isShown())
        return;
    m_held = layoutNow();
    m_steps.begin();
}

void ZoomTarget::moveTo(QPointF place) {
    if (!m_held || selected() == nullptr)
        return;
    const auto at = m_held->inRecording({place.x() * m_canvas.width, place.y() * m_canvas.height});
    const double pixelsPerPoint = m_state.metadata()->displayScaleFactor;
    moveCenter({at.x / pixelsPerPoint, at.y / pixelsPerPoint});
}

void ZoomTarget::moveBy(double x, double y) {
    if (const auto* zoom = selected())
        moveCenter({zoom->x + x, zoom->y + y});
}

void ZoomTarget::moveCenter(model::Point center) {
    const auto& metadata = *m_state.metadata();
    center.x = std::clamp(center.x, 0.0, std::max(metadata.captureRect.width, 0.0));
    center.y = std::clamp(center.y, 0.0, std::max(metadata.captureRect.height, 0.0));
    auto edit = m_state.document().edit();
    edit.clickEvents =
        timeline::changed(edit.clickEvents, selected()->id, {.center = center}, metadata.endTime);
    m_steps.apply(std::move(edit), QT_TRANSLATE_NOOP("Edit", "Move Zoom Center"));
}

void ZoomTarget::end() {
    m_steps.end();
    m_held.reset();
    follow();
}

} // namespace vantro::editor
