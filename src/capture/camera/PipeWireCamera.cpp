#include "capture/camera/PipeWireCamera.h"

#include "base/Fatal.h"
#include "base/Log.h"
#include "base/SerialQueue.h"
#include "capture/camera/PipeWireFormats.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace vantro::capture::camera {
namespace {

using namespace std::chrono_literals;

constexpr auto retryInterval = 1s;
// The thread looks at everything else so often.
constexpr auto longestTurn = 40ms;
// A server that is not hung answers in a few milliseconds; the end of a recording may wait for it.
constexpr auto longestAnswer = 1s;
// Over a portal's connection cameras are seen only when the session manager has looked up, too,
// what the user allows.
constexpr auto longestGrant = 2s;
// With a camera that has been chosen the recording need not wait to know more.
constexpr auto longestOpening = 1s;
// A camera that is silent for so long is opened anew.
constexpr auto longestSilence = 5s;

bool isCamera(const pipewire::Node& node) {
    return node.mediaClass == "Video/Source" && node.role == "Camera";
}

CameraRefusal refusalOf(const pipewire::Refusal& refusal) {
    return {.kind = refusal.kind == pipewire::Refusal::Kind::denied
                        ? CameraRefusal::Kind::denied
                        : CameraRefusal::Kind::unavailable,
            .reason = refusal.reason};
}

/// The one of that name or description; the one of the highest priority where none is given.
const pipewire::Node* choose(const std::map<std::uint32_t, pipewire::Node>& nodes,
                             const std::string& device) {
    const pipewire::Node* best = nullptr;
    for (const auto& [id, node] : nodes) {
        if (!isCamera(node) ||
            (!device.empty() && node.name != device && node.description != device))
            continue;
        if (!best || node.priority > best->priority)
            best = &node;
    }
    return best;
}

} // namespace

std::vector<CameraDevice> camerasOf(const std::map<std::uint32_t, pipewire::Node>& nodes) {
    std::vector<CameraDevice> cameras;
    const auto* usual = choose(nodes, {});
    for (const auto& [id, node] : nodes)
        if (isCamera(node))
            cameras.insert(
                &node == usual ? cameras.begin() : cameras.end(),
                {.name = node.name, .description = node.description, .isDefault = &node == usual});
    return cameras;
}

std::expected<std::unique_ptr<CameraSource>, CameraRefusal>
PipeWireCamera::open(const std::string& device, Remote remote, base::HostDuration longestAnswer) {
    std::unique_ptr<PipeWireCamera> camera(new PipeWireCamera(device, std::move(remote)));
    auto opening = camera->m_opening.emplace().get_future();
    camera->m_thread = std::jthread([self = camera.get()](const std::stop_token& stop) {
        base::setThreadName("com.vantro.webcam");
        self->run(stop);
    });
    if (opening.wait_for(longestAnswer) != std::future_status::ready)
        return std::unexpected(CameraRefusal{.reason = "PipeWire does not answer"});
    if (auto refusal = opening.get())
        return std::unexpected(*std::move(refusal));
    return camera;
}

PipeWireCamera::PipeWireCamera(std::string device, Remote remote)
    : m_device(std::move(device)), m_remote(std::move(remote)) {}

PipeWireCamera::~PipeWireCamera() {
    stop();
}

void PipeWireCamera::stop() {
    if (!m_thread.joinable())
        return;
    m_thread.request_stop();
    m_thread.join();
    m_feed.stop();
}

void PipeWireCamera::run(const std::stop_token& stop) {
    pipewire::Loop loop;
    m_retryAt = base::hostNow();
    while (!stop.stop_requested()) {
        update(loop, base::hostNow());
        m_feed.passTime(base::hostNow());
        loop.turn(longestTurn);
    }
    m_stream.reset();
    m_registry.reset();
    m_connection.reset();
}

void PipeWireCamera::move(State to) {
    base::require(to != State::delivering || m_state != State::absent,
                  "a camera in an impossible state");
    m_state = to;
    m_changed = base::hostNow();
}

void PipeWireCamera::update(pipewire::Loop& loop, base::HostTime now) {
    const auto error = std::exchange(m_streamError, {});
    if (const auto loss = m_connection ? m_connection->loss() : std::nullopt) {
        m_stream.reset();
        m_registry.reset();
        m_connection.reset();
        return lose(refusalOf(*loss));
    }
    if (m_state == State::absent) {
        if (now < m_retryAt)
            return;
        if (const auto done = attempt(loop); !done)
            lose(done.error());
        return;
    }
    if (!m_registry->nodes().contains(m_node))
        return lose({.reason = "the camera is gone"});
    if (error)
        return lose(
            {.kind = CameraRefusal::Kind::broken,
             .reason = error->empty() ? "the camera has ended" : "PipeWire says: " + *error});
    if (m_state == State::opening && now - m_changed > longestOpening)
        answer({});
    if (m_feed.overdue(now) > longestSilence) {
        m_stream.reset();
        m_retryAt = now;
        move(State::absent);
    }
}

std::expected<void, CameraRefusal> PipeWireCamera::connect(pipewire::Loop& loop) {
    if (m_connection)
        return {};
    auto remote = m_remote();
    if (!remote)
        return std::unexpected(remote.error());
    const bool isPortals = static_cast<bool>(*remote);
    auto connection = pipewire::Connection::open(loop, *std::move(remote));
    if (!connection)
        return std::unexpected(refusalOf(connection.error()));
    m_connection = *std::move(connection);
    m_registry = std::make_unique<pipewire::Registry>(*m_connection);
    if (m_connection->awaitAnswers(longestAnswer)) {
        if (isPortals)
            loop.turnUntil([&] { return choose(m_registry->nodes(), m_device) != nullptr; },
                           longestGrant);
        return {};
    }
    const auto loss = m_connection->loss();
    m_registry.reset();
    m_connection.reset();
    return std::unexpected(loss ? refusalOf(*loss)
                                : CameraRefusal{.reason = "PipeWire does not answer"});
}

std::expected<void, CameraRefusal> PipeWireCamera::attempt(pipewire::Loop& loop) {
    if (auto connected = connect(loop); !connected)
        return connected;
    const auto* node = choose(m_registry->nodes(), m_device);
    if (!node)
        return std::unexpected(CameraRefusal{
            .reason = m_device.empty() ? "there is no camera" : "there is no " + m_device});
    const auto chosen = *node; // the list changes while we ask
    m_device = chosen.name;
    m_node = chosen.id;
    const auto formats = m_registry->formatsOf(chosen.id, longestAnswer);
    move(State::opening);
    m_feed.opened(base::hostNow());
    pipewire::VideoStreamListener& listener = *this;
    m_stream = std::make_unique<pipewire::VideoStream>(
        *m_connection,
        pipewire::StreamRequest{.name = "Vantro",
                                .role = "Camera",
                                .node = std::nullopt,
                                .target = chosen.serial.empty() ? chosen.name : chosen.serial,
                                .offers = wantedFormats(formats)},
        listener);
    base::logInfo("Opening the camera {}", chosen.description);
    return {};
}

void PipeWireCamera::lose(const CameraRefusal& refusal) {
    m_stream.reset();
    move(State::absent);
    m_retryAt = base::hostNow() + retryInterval;
    answer(refusal);
    m_feed.missing(refusal.reason);
}

void PipeWireCamera::answer(std::optional<CameraRefusal> refusal) {
    if (auto opening = std::exchange(m_opening, {}))
        opening->set_value(std::move(refusal));
}

void PipeWireCamera::arrived(const pipewire::VideoBuffer& buffer) {
    if (!buffer.planes.empty())
        m_feed.arrived(rawPicture(buffer), plausibleTime(buffer.time, buffer.arrival),
                       buffer.arrival);
}

void PipeWireCamera::formatChanged(const pipewire::VideoFormat& format) {
    base::logInfo("Webcam resolution: {}x{}", format.size.width, format.size.height);
    if (m_state == State::opening)
        move(State::delivering);
    answer({});
}

void PipeWireCamera::stateChanged(pipewire::StreamState state, const std::string& error) {
    if (state == pipewire::StreamState::failed)
        m_streamError = error;
}

} // namespace vantro::capture::camera
