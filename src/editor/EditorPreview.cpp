#include "editor/EditorPreview.h"

#include "ui/Sentences.h"

#include <QPointer>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace vantro::editor {
namespace {

using media::player::Player;

/// Few, so that a window that is being resized seldom changes what caches hold.
constexpr std::array scales{1.0 / 4, 1.0 / 3, 1.0 / 2, 3.0 / 4};

QSize atScale(render::PixelSize canvas, double scale) {
    const auto scaled = [scale](int length) {
        return std::max(static_cast<int>(std::lround(length * scale)), 1);
    };
    return {scaled(canvas.width), scaled(canvas.height)};
}

/// The smallest scale at which a picture of the canvas covers `output`.
double scaleCovering(QSize output, render::PixelSize canvas) {
    const auto* found = std::ranges::find_if(scales, [&](double scale) {
        const auto composed = atScale(canvas, scale);
        return composed.width() >= output.width() && composed.height() >= output.height();
    });
    return found == scales.end() ? 1 : *found;
}

bool looksTheSame(const media::VideoComposition& a, const media::VideoComposition& b) {
    return a.renderWidth == b.renderWidth && a.renderHeight == b.renderHeight &&
           a.renderScale == b.renderScale;
}

} // namespace

EditorPreview::EditorPreview(app::flows::TaskRunner& tasks, OpenMovie open, MakeSound makeSound,
                             media::proxy::ProxySettings proxies)
    : m_tasks(tasks)
    , m_open(std::move(open))
    , m_makeSound(std::move(makeSound))
    , m_proxies(std::move(proxies)) {
    connect(&m_pictures, &ui::PictureStream::areaChanged, this, &EditorPreview::followArea);
}

EditorPreview::~EditorPreview() {
    m_status = {};
    m_transport.detach();
    for (const auto& maker : m_proxyMakers)
        maker->stop(); // all at once, before they are waited for
}

void EditorPreview::show(std::optional<model::Recording> recording, model::Edit edit) {
    const bool sameMovie = recording && m_recording && recording->isSameAs(*m_recording);
    m_recording = std::move(recording);
    const auto before = std::exchange(m_edit, std::move(edit));
    if (sameMovie) {
        if (m_player && !(before == m_edit))
            followEdit();
        return;
    }
    discard();
    if (m_recording)
        open(*m_recording);
}

void EditorPreview::discard() {
    ++m_request;
    m_problem.clear();
    m_status = {};
    m_transport.detach();
    std::erase_if(m_proxyMakers, [](const auto& maker) { return maker->hasEnded(); });
    for (const auto& maker : m_proxyMakers)
        maker->stop();
    m_player.reset();
    m_movie.reset();
    m_pictures.clear();
    Q_EMIT statusChanged();
}

void EditorPreview::open(const model::Recording& recording) {
    m_tasks.run([this, request = m_request, openMovie = m_open, recording,
                 edit = m_edit]() -> app::flows::TaskRunner::Continuation {
        Opened result;
        try {
            result.movie = openMovie(recording, edit);
        } catch (const std::exception& failure) {
            result.problem = failure.what();
        }
        return [this, request, result] {
            if (request == m_request)
                opened(result);
        };
    });
}

void EditorPreview::opened(const Opened& result) {
    m_problem = result.problem;
    m_movie = result.movie;
    if (m_movie)
        try {
            m_movie->setEdit(m_edit); // it may be another one by now
            startPlayer();
        } catch (const std::exception& failure) {
            fail(failure);
        }
    Q_EMIT statusChanged();
}

void EditorPreview::startPlayer() {
    m_video = video();
    const auto& composition = m_movie->composition();
    m_player = std::make_shared<Player>(
        media::player::PlayerItem{composition, m_video},
        Player::Services{.onMain = [&tasks = m_tasks](auto task) { tasks.onMain(std::move(task)); },
                         .time = media::player::hostPlayerTime(),
                         .sound = m_makeSound(composition),
                         .show = [this](auto picture) { m_pictures.deliver(std::move(picture)); }});
    m_status = m_player->observeStatus([this] { Q_EMIT statusChanged(); });
    m_player->setMix(m_movie->soundMix());
    m_player->setMuted(m_muted);
    followArea();
    m_transport.attach(m_player);
    m_transport.setSegments(m_edit.segments);
    makeProxy();
}

void EditorPreview::makeProxy() {
    if (m_proxies.folder.empty())
        return;
    const auto& composition = m_movie->composition();
    m_proxyMakers.push_back(std::make_unique<media::proxy::ProxyMaker>(
        composition.asset().movie(), composition.track(m_video.trackID)->source().id, m_proxies,
        [&tasks = m_tasks, self = QPointer(this), request = m_request](auto proxy) {
            tasks.onMain([self, request, proxy = std::move(proxy)] {
                if (self && request == self->m_request && self->m_player)
                    self->m_player->setProxy(proxy);
            });
        }));
}

void EditorPreview::followEdit() try {
    m_movie->setEdit(m_edit);
    if (const auto next = video(); looksTheSame(next, m_video)) {
        m_player->refresh();
    } else {
        m_video = next;
        tellOutputSize();
        m_player->setVideo(m_video);
    }
    m_player->setMix(m_movie->soundMix());
    if (!m_transport.segments().isSameAs(m_edit.segments))
        m_transport.setSegments(m_edit.segments);
} catch (const std::exception& failure) {
    fail(failure);
    Q_EMIT statusChanged();
}

void EditorPreview::followArea() {
    if (!m_player || m_pictures.area().isEmpty())
        return;
    tellOutputSize();
    if (const auto next = video(); !looksTheSame(next, m_video)) {
        m_video = next;
        m_player->setVideo(m_video);
    }
}

void EditorPreview::tellOutputSize() {
    const auto output = outputSize();
    m_player->setOutputSize(output.width(), output.height());
    if (std::exchange(m_pictureSize, output) != output)
        Q_EMIT pictureSizeChanged();
}

std::optional<EditorPreview::Sizes> EditorPreview::sizes() const {
    if (!isReady())
        return {};
    const auto video = m_movie->videoSize();
    return Sizes{{static_cast<int>(video.width), static_cast<int>(video.height)},
                 m_movie->canvas(video)};
}

/// What the canvas takes of the area: never more than its own pixels.
QSize EditorPreview::outputSize() const {
    const auto canvas = m_movie->canvas(m_movie->videoSize());
    const QSize whole(canvas.width, canvas.height);
    const auto area = m_pictures.area();
    if (area.isEmpty() || (whole.width() <= area.width() && whole.height() <= area.height()))
        return whole;
    return whole.scaled(area, Qt::KeepAspectRatio).expandedTo({1, 1});
}

media::VideoComposition EditorPreview::video() const {
    const auto canvas = m_movie->canvas(m_movie->videoSize());
    const auto frameRate = static_cast<int>(m_movie->recording().metadata().frameRate);
    auto result = m_movie->video(canvas, frameRate);
    result.renderScale = scaleCovering(outputSize(), canvas);
    const auto composed = atScale(canvas, result.renderScale);
    result.renderWidth = composed.width();
    result.renderHeight = composed.height();
    return result;
}

bool EditorPreview::isReady() const {
    return m_problem.empty() && m_player && m_player->status() == Player::Status::ready;
}

QString EditorPreview::problem() const {
    if (m_problem.empty() && m_player && m_player->status() == Player::Status::failed)
        return ui::sentence(m_player->problem());
    return ui::sentence(m_problem);
}

bool EditorPreview::hasSound() const {
    return m_movie && m_movie->composition().tracks().size() > 1;
}

void EditorPreview::setMuted(bool muted) {
    if (m_muted == muted)
        return;
    m_muted = muted;
    if (m_player)
        m_player->setMuted(muted);
    Q_EMIT mutedChanged();
}

void EditorPreview::fail(const std::exception& reason) {
    m_problem = reason.what();
}

} // namespace vantro::editor
