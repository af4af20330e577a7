#include "capture/wayland/compositor/CursorSession.h"

#include "base/Log.h"
#include "base/SerialQueue.h"

#include <algorithm>
#include <utility>

#include <ext-image-copy-capture-v1-client.h>

namespace vantro::capture::wayland {
namespace {

// A compositor answers within a frame, unless it is busy starting something.
constexpr base::HostDuration longestAnswer = std::chrono::milliseconds(500);
constexpr base::HostDuration untilWoken = std::chrono::hours(1);

} // namespace

/// A place of (0, 0) says nothing: some portals tell it of each screen.
std::optional<std::size_t> outputOf(const PortalStream& stream, pipewire::Size picture,
                                    const std::vector<CompositorOutput>& outputs) {
    const auto found = std::ranges::find(outputs, picture, &CompositorOutput::pixels);
    if (found == outputs.end() ||
        std::ranges::count(outputs, picture, &CompositorOutput::pixels) > 1)
        return {};
    const auto place = stream.position.value_or(model::Point());
    if (place != model::Point() && place != found->position)
        return {};
    return found - outputs.begin();
}

struct CursorSession::Listeners {
    static const ext_image_copy_capture_cursor_session_v1_listener cursor;
    static const ext_image_copy_capture_session_v1_listener images;
};

const ext_image_copy_capture_cursor_session_v1_listener CursorSession::Listeners::cursor{
    .enter = [](void*, ext_image_copy_capture_cursor_session_v1*) {},
    .leave = [](void*, ext_image_copy_capture_cursor_session_v1*) {},
    .position =
        [](void* self, ext_image_copy_capture_cursor_session_v1*, std::int32_t x, std::int32_t y) {
            static_cast<CursorSession*>(self)->m_listener.cursorAt(
                {static_cast<double>(x), static_cast<double>(y)}, base::hostNow());
        },
    .hotspot = [](void*, ext_image_copy_capture_cursor_session_v1*, std::int32_t, std::int32_t) {}};

const ext_image_copy_capture_session_v1_listener CursorSession::Listeners::images{
    .buffer_size = [](void*, ext_image_copy_capture_session_v1*, std::uint32_t, std::uint32_t) {},
    .shm_format = [](void*, ext_image_copy_capture_session_v1*, std::uint32_t) {},
    .dmabuf_device = [](void*, ext_image_copy_capture_session_v1*, wl_array*) {},
    .dmabuf_format = [](void*, ext_image_copy_capture_session_v1*, std::uint32_t, wl_array*) {},
    .done = [](void*, ext_image_copy_capture_session_v1*) {},
    .stopped =
        [](void* self, ext_image_copy_capture_session_v1*) {
            static_cast<CursorSession*>(self)->m_isStopped = true;
        }};

bool CursorSession::isOffered() {
    const auto link = CompositorLink::open(longestAnswer);
    return link && link->tellsPointer() &&
           std::ranges::all_of(link->outputs(), [&](const CompositorOutput& output) {
               return outputOf({}, output.pixels, link->outputs()).has_value();
           });
}

std::unique_ptr<CursorSession> CursorSession::of(const PortalStream& stream, pipewire::Size picture,
                                                 CursorListener& listener) {
    auto link = CompositorLink::open(longestAnswer);
    if (!link || !link->tellsPointer())
        return nullptr;
    const auto output = outputOf(stream, picture, link->outputs());
    if (!output || !link->isThere(*output))
        return nullptr;
    std::unique_ptr<CursorSession> session(new CursorSession(std::move(link), *output, listener));
    if (!session->m_link->roundTrip(longestAnswer) || session->m_isStopped)
        return nullptr;
    session->m_thread =
        std::jthread([self = session.get()](const std::stop_token& stop) { self->run(stop); });
    return session;
}

CursorSession::CursorSession(std::unique_ptr<CompositorLink> link, std::size_t output,
                             CursorListener& listener)
    : m_link(std::move(link))
    , m_output(output)
    , m_listener(listener)
    , m_source(m_link->sourceOf(output)) {
    followPointer();
}

CursorSession::~CursorSession() {
    m_thread.request_stop();
    m_wakeUp.ring();
}

void CursorSession::followPointer() {
    if (m_pointer == m_link->pointersSoFar())
        return;
    m_pointer = m_link->pointersSoFar();
    m_images.reset();
    m_isStopped = false; // that was the one before
    m_session = m_link->cursorSession(*m_source);
    if (!m_session)
        return;
    ext_image_copy_capture_cursor_session_v1_add_listener(m_session.get(), &Listeners::cursor,
                                                          this);
    m_images.reset(ext_image_copy_capture_cursor_session_v1_get_capture_session(m_session.get()));
    ext_image_copy_capture_session_v1_add_listener(m_images.get(), &Listeners::images, this);
}

void CursorSession::run(const std::stop_token& stop) {
    base::setThreadName("com.vantro.pointer");
    while (!stop.stop_requested()) {
        const bool isAnswering = m_link->turn(m_wakeUp.fd(), untilWoken);
        followPointer();
        if (!isAnswering || m_isStopped || !m_link->isThere(m_output)) {
            base::logWarning("The compositor does not tell any more where the pointer is");
            return m_listener.cursorLost();
        }
    }
}

} // namespace vantro::capture::wayland
