#include "capture/camera/V4l2Camera.h"

#include "base/Log.h"
#include "base/SerialQueue.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <utility>

namespace vantro::capture::camera {
namespace {

using namespace std::chrono_literals;

constexpr auto retryInterval = 1s;
// The thread looks at everything else so often.
constexpr auto longestWait = 40ms;
// A camera that is silent for so long is opened anew.
constexpr auto longestSilence = 5s;

CameraRefusal refusalOf(int error) {
    if (error == EACCES || error == EPERM)
        return {.kind = CameraRefusal::Kind::denied, .reason = "the system denies access to it"};
    if (error == EBUSY)
        return {.kind = CameraRefusal::Kind::broken, .reason = "another program uses the camera"};
    return {.kind = CameraRefusal::Kind::broken,
            .reason = "the camera says: " + std::generic_category().message(error)};
}

std::expected<void, int> startBest(V4l2Device& device) {
    const auto best = chooseFormat(device.formats());
    if (!best)
        return std::unexpected(ENODEV);
    const auto started = device.start(*best);
    if (!started)
        return std::unexpected(started.error());
    base::logInfo("Webcam resolution: {}x{}", started->width, started->height);
    return {};
}

void waitFor(base::HostDuration time, const std::stop_token& stop) {
    std::mutex mutex;
    std::condition_variable_any over;
    std::unique_lock lock(mutex);
    over.wait_for(lock, stop, time, [] { return false; });
}

} // namespace

std::vector<CameraDevice> systemCameras() {
    std::vector<CameraDevice> cameras;
    for (const auto& path : V4l2Device::paths())
        if (const auto device = V4l2Device::open(path))
            cameras.push_back({.name = path,
                               .description = (*device)->description(),
                               .isDefault = cameras.empty()});
    return cameras;
}

std::expected<std::unique_ptr<CameraSource>, CameraRefusal>
V4l2Camera::open(const std::string& wanted) {
    CameraRefusal refusal{.reason =
                              wanted.empty() ? "there is no camera" : "there is no " + wanted};
    for (const auto& path : V4l2Device::paths()) {
        auto device = V4l2Device::open(path);
        if (!device) {
            // Whether one that we may not look at is a camera cannot be known.
            if (device.error() == EACCES && (wanted.empty() || wanted == path))
                refusal = refusalOf(device.error());
            continue;
        }
        const auto description = (*device)->description();
        if (!wanted.empty() && wanted != path && wanted != description)
            continue;
        if (const auto started = startBest(**device); !started) {
            refusal = refusalOf(started.error());
            continue;
        }
        return std::unique_ptr<CameraSource>(
            new V4l2Camera({path, description, false}, *std::move(device)));
    }
    return std::unexpected(refusal);
}

V4l2Camera::V4l2Camera(CameraDevice camera, std::unique_ptr<V4l2Device> device)
    : m_camera(std::move(camera))
    , m_device(std::move(device))
    , m_thread([this](const std::stop_token& stop) { run(stop); }) {}

V4l2Camera::~V4l2Camera() {
    stop();
}

void V4l2Camera::stop() {
    if (!m_thread.joinable())
        return;
    m_thread.request_stop();
    m_thread.join();
    m_feed.stop();
}

void V4l2Camera::run(const std::stop_token& stop) {
    base::setThreadName("com.vantro.webcam");
    m_feed.opened(base::hostNow());
    while (!stop.stop_requested()) {
        auto arrival = V4l2Device::Arrival::nothing;
        if (m_device)
            arrival = m_device->next(longestWait, [this](const V4l2Device::Picture& picture) {
                const auto now = base::hostNow();
                m_feed.arrived(picture.raw, plausibleTime(picture.time, now), now);
            });
        else
            waitFor(longestWait, stop);
        const auto now = base::hostNow();
        if (m_device &&
            (arrival == V4l2Device::Arrival::gone || m_feed.overdue(now) > longestSilence))
            lose(now);
        if (!m_device && now >= m_retryAt)
            reopen();
        m_feed.passTime(now);
    }
    m_device.reset();
}

void V4l2Camera::lose(base::HostTime now) {
    m_device.reset();
    m_feed.missing("the camera is gone");
    m_retryAt = now + retryInterval;
}

void V4l2Camera::reopen() {
    m_retryAt = base::hostNow() + retryInterval;
    auto device = V4l2Device::open(m_camera.name);
    if (!device || (*device)->description() != m_camera.description || !startBest(**device))
        return;
    m_device = *std::move(device);
    m_feed.opened(base::hostNow());
}

} // namespace vantro::capture::camera
