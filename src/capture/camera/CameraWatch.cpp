#include "capture/camera/CameraWatch.h"

#include "base/SerialQueue.h"
#include "capture/camera/DesktopCameras.h"
#include "capture/camera/PipeWireCamera.h"
#include "pipewire/Registry.h"

#include <chrono>
#include <utility>

namespace vantro::capture::camera {
namespace {

using namespace std::chrono_literals;

// A server that is started later is found so soon, and so are cameras where there is none.
constexpr auto retryInterval = 2s;
constexpr auto longestAnswer = 2s;
constexpr auto forEver = 1h;

} // namespace

CameraWatch::CameraWatch(std::function<void()> changed)
    : m_changed(std::move(changed))
    , m_loop(nullptr)
    , m_thread([this](const std::stop_token& stop) { run(stop); }) {}

CameraWatch::~CameraWatch() {
    m_thread.request_stop();
    m_loop.with([](pipewire::Loop* loop) {
        if (loop)
            loop->wakeUp();
    });
    m_thread.join();
}

void CameraWatch::run(const std::stop_token& stop) {
    base::setThreadName("camera-watch");
    pipewire::Loop loop;
    m_loop.with([&](pipewire::Loop*& known) { known = &loop; });
    while (!stop.stop_requested()) {
        follow(loop, stop);
        loop.turnUntil([&] { return stop.stop_requested(); }, retryInterval);
    }
    m_loop.with([](pipewire::Loop*& known) { known = nullptr; });
}

/// Until the server goes; at once where there is none, or none that is ours to follow.
void CameraWatch::follow(pipewire::Loop& loop, const std::stop_token& stop) {
    auto connection =
        isInSandbox() ? std::unexpected(pipewire::Refusal{}) : pipewire::Connection::open(loop);
    if (!connection)
        return know(makeDesktopCameras()->list());
    bool isChanged = true;
    const pipewire::Registry registry(**connection, [&] { isChanged = true; });
    const auto& loss = (*connection)->loss();
    if (!(*connection)->awaitAnswers(longestAnswer))
        return know(std::unexpected(loss ? loss->reason : "PipeWire does not answer"));
    while (!stop.stop_requested() && !loss) {
        if (std::exchange(isChanged, false))
            know(camerasOf(registry.nodes()));
        loop.turn(forEver);
    }
    if (loss)
        know(std::unexpected(loss->reason));
}

void CameraWatch::know(Cameras cameras) {
    const bool isNews = m_cameras.with([&](std::optional<Cameras>& known) {
        const bool differs = known != cameras;
        known = std::move(cameras);
        return differs;
    });
    if (isNews)
        m_changed();
}

} // namespace vantro::capture::camera
