#include "window/devices/CameraView.h"

#include "app/state/AppState.h"
#include "model/Edit.h"
#include "ui/ActionGuard.h"
#include "ui/Sentences.h"

#include <QPointer>
#include <utility>

namespace vantro::window::devices {

CameraView::CameraView(ui::ActionGuard& guard, app::AppState& state,
                       app::flows::TaskRunner& recorderTasks, OpenCamera open)
    : m_guard(guard), m_state(state), m_tasks(recorderTasks), m_open(std::move(open)) {
    const auto follow = [this](auto& object, auto signal) {
        connect(&object, signal, this, &CameraView::update);
    };
    follow(guard, &ui::ActionGuard::changed);
    follow(state, &app::AppState::webcamEnabledChanged);
    follow(state, &app::AppState::webcamDeviceChanged);
    connect(&m_pictures, &ui::PictureStream::areaChanged, this, [this] {
        if (m_feed)
            m_feed->setArea(m_pictures.area());
    });
}

CameraView::~CameraView() {
    close();
}

bool CameraView::isMirrored() {
    return model::Edit().webcamMirrored;
}

void CameraView::setWatched(bool watched) {
    if (m_isWatched == watched)
        return;
    m_isWatched = watched;
    update();
    Q_EMIT changed();
}

void CameraView::update() {
    const bool isWanted = m_isWatched && m_state.webcamEnabled() &&
                          m_guard.webcamMissing().isEmpty() &&
                          m_guard.screen() == ui::Screen::controls;
    if (isWanted == isShown() && m_device == m_state.webcamDevice())
        return;
    close();
    m_device = m_state.webcamDevice();
    if (isWanted)
        open();
    Q_EMIT changed();
}

void CameraView::open() {
    // Its problems are told on other threads, maybe when there is no view any more.
    const auto holder = std::make_shared<std::weak_ptr<CameraFeed>>();
    m_feed = std::make_shared<CameraFeed>(
        m_pictures, m_pictures.area(),
        [&tasks = m_tasks, self = QPointer(this), holder](const std::string& problem) {
            tasks.onMain([self, holder, problem] {
                if (self)
                    self->told(*holder, problem);
            });
        });
    *holder = m_feed;
    m_tasks.run([feed = m_feed, openCamera = m_open,
                 device = m_device]() -> app::flows::TaskRunner::Continuation {
        feed->open([&] { return openCamera(device); });
        return {};
    });
}

void CameraView::close() {
    m_problem.clear();
    if (!m_feed)
        return;
    m_feed->detach();
    m_pictures.clear();
    m_tasks.run([feed = std::exchange(m_feed, nullptr)]() -> app::flows::TaskRunner::Continuation {
        feed->close();
        return {};
    });
}

void CameraView::told(const std::weak_ptr<CameraFeed>& feed, const std::string& problem) {
    if (!m_feed || feed.lock() != m_feed)
        return;
    m_problem = ui::sentence(problem);
    if (!problem.empty())
        m_pictures.clear();
    Q_EMIT changed();
}

} // namespace vantro::window::devices
