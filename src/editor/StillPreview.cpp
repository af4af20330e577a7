#include "editor/StillPreview.h"

#include "media/values/PixelBuffer.h"

#include <algorithm>

namespace vantro::editor {
namespace {

/// The pixels as an image, without a copy.
QImage imageOf(const std::shared_ptr<const media::PixelBuffer>& pixels) {
    auto owner = std::make_unique<std::shared_ptr<const media::PixelBuffer>>(pixels);
    return {
        pixels->plane(0),
        pixels->width(),
        pixels->height(),
        pixels->stride(0),
        QImage::Format_RGB32,
        [](void* held) { delete static_cast<std::shared_ptr<const media::PixelBuffer>*>(held); },
        owner.release()};
}

} // namespace

StillPreview::StillPreview(app::flows::TaskRunner& tasks, OpenStills open)
    : m_tasks(tasks), m_open(std::move(open)) {}

void StillPreview::show(std::optional<model::Recording> recording, model::Edit edit) {
    // Saving moves the movie into a package: what tells recordings apart is what was recorded.
    const bool sameMovie = recording && m_recording && recording->isSameAs(*m_recording);
    m_recording = std::move(recording);
    m_edit = std::move(edit);
    ++m_version;
    if (!sameMovie) {
        m_stills = m_recording ? m_open(*m_recording) : StillSource();
        m_picture = {};
        m_problem.clear();
        m_duration = 0;
        m_position = 0;
        Q_EMIT durationChanged();
        Q_EMIT positionChanged();
        Q_EMIT pictureChanged();
    }
    draw();
}

void StillPreview::setPosition(double seconds) {
    const double clamped = std::clamp(seconds, 0.0, m_duration);
    if (clamped == m_position || !m_recording)
        return;
    m_position = clamped;
    Q_EMIT positionChanged();
    draw();
}

void StillPreview::draw() {
    if (!m_recording)
        return;
    if (m_drawing) {
        m_drawAgain = true;
        return;
    }
    m_drawing = true;
    m_drawAgain = false;
    m_tasks.run([this, version = m_version, stills = m_stills, edit = m_edit,
                 position = m_position]() -> app::flows::TaskRunner::Continuation {
        return [this, version, result = work(stills, edit, position)] { drawn(version, result); };
    });
}

StillPreview::Drawn StillPreview::work(const StillSource& stills, const model::Edit& edit,
                                       double position) {
    Drawn result;
    try {
        result.still = stills(edit, position);
    } catch (const std::exception& failure) {
        result.problem = failure.what();
    }
    return result;
}

void StillPreview::drawn(int version, const Drawn& result) {
    m_drawing = false;
    if (version == m_version) {
        if (m_duration != result.still.duration) {
            m_duration = result.still.duration;
            Q_EMIT durationChanged();
        }
        const auto& picture = result.still.picture;
        m_picture = picture != nullptr ? imageOf(picture) : QImage();
        m_problem = QString::fromStdString(result.problem);
        Q_EMIT pictureChanged();
    }
    if (m_drawAgain)
        draw();
}

} // namespace vantro::editor
