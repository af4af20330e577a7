#include "support/ScriptedCompositor.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <future>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include <ext-image-capture-source-v1-server.h>
#include <ext-image-copy-capture-v1-server.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <wayland-server.h>
#include <xdg-output-unstable-v1-server.h>

namespace vantro::test {
namespace {

constexpr const char* socketName = "wayland-0";

void destroy(wl_client*, wl_resource* resource) {
    wl_resource_destroy(resource);
}

} // namespace

struct ScriptedCompositor::Implementation {
    struct Output {
        ScriptedOutput script;
        wl_global* global = nullptr;
    };
    struct Session {
        wl_resource* cursor = nullptr;
        wl_resource* images = nullptr;
        std::size_t output = 0;
        bool isInside = false;
    };

    CompositorScript script;
    std::string displayBefore;
    wl_display* display = nullptr;
    std::vector<std::unique_ptr<Output>> outputs;
    std::vector<std::unique_ptr<Session>> sessions;
    std::vector<wl_resource*> seats;
    std::mutex mutex;
    std::vector<std::packaged_task<void()>> tasks; // guarded by the mutex
    bool isOver = false;
    int wakeUp = -1;
    wl_event_source* commands = nullptr; // woken by that
    std::jthread thread;

    void start();
    void serve();
    /// On the thread, and not before it is done.
    void run(std::function<void()> task);
    template <typename Bind>
    wl_global* offer(const wl_interface& interface, int version, void* data, Bind bind) {
        return wl_global_create(display, &interface, version, data, bind);
    }
    void addSession(wl_client* client, std::uint32_t id, wl_resource* source);
    void stop(Session& session) const;

    static Implementation& of(wl_resource* resource) {
        return *static_cast<Implementation*>(wl_resource_get_user_data(resource));
    }
    template <typename Type>
    static wl_resource* make(wl_client* client, const wl_interface& interface,
                             std::uint32_t version, std::uint32_t id, const void* calls,
                             Type* data) {
        auto* resource = wl_resource_create(client, &interface, static_cast<int>(version), id);
        wl_resource_set_implementation(resource, calls, data, nullptr);
        return resource;
    }
    static void bindOutput(wl_client* client, void* data, std::uint32_t version, std::uint32_t id);
    static void bindPlaces(wl_client* client, void* data, std::uint32_t version, std::uint32_t id);
    static void bindSeat(wl_client* client, void* data, std::uint32_t version, std::uint32_t id);
    static void bindSources(wl_client* client, void* data, std::uint32_t version, std::uint32_t id);
    static void bindCopies(wl_client* client, void* data, std::uint32_t version, std::uint32_t id);
    void tellCapabilities(wl_resource* seat) const {
        wl_seat_send_capabilities(
            seat, script.hasPointer ? std::uint32_t{WL_SEAT_CAPABILITY_POINTER} : 0);
    }
};

void ScriptedCompositor::Implementation::bindOutput(wl_client* client, void* data,
                                                    std::uint32_t version, std::uint32_t id) {
    static const struct wl_output_interface calls{.release = destroy};
    const auto& output = static_cast<Output*>(data)->script;
    auto* resource =
        make(client, wl_output_interface, version, id, &calls, static_cast<Output*>(data));
    // Without a place, as of wlroots.
    wl_output_send_geometry(resource, 0, 0, 0, 0, WL_OUTPUT_SUBPIXEL_UNKNOWN, "", "",
                            output.transform);
    wl_output_send_mode(resource, WL_OUTPUT_MODE_CURRENT, output.width, output.height, 60'000);
}

void ScriptedCompositor::Implementation::bindPlaces(wl_client* client, void* data,
                                                    std::uint32_t version, std::uint32_t id) {
    static const struct zxdg_output_v1_interface outputCalls{.destroy = destroy};
    static const struct zxdg_output_manager_v1_interface calls{
        .destroy = destroy,
        .get_xdg_output = [](wl_client* asker, wl_resource* manager, std::uint32_t number,
                             wl_resource* of) {
            const auto& output = static_cast<Output*>(wl_resource_get_user_data(of))->script;
            auto* place =
                make<void>(asker, zxdg_output_v1_interface, wl_resource_get_version(manager),
                           number, &outputCalls, nullptr);
            zxdg_output_v1_send_logical_position(place, output.x, output.y);
            zxdg_output_v1_send_logical_size(place, output.width, output.height);
            zxdg_output_v1_send_done(place);
        }};
    make(client, zxdg_output_manager_v1_interface, version, id, &calls, data);
}

void ScriptedCompositor::Implementation::bindSeat(wl_client* client, void* data,
                                                  std::uint32_t version, std::uint32_t id) {
    static const struct wl_pointer_interface pointerCalls{
        .set_cursor = [](wl_client*, wl_resource*, std::uint32_t, wl_resource*, std::int32_t,
                         std::int32_t) {},
        .release = destroy};
    static const struct wl_seat_interface calls{
        .get_pointer =
            [](wl_client* asker, wl_resource* seat, std::uint32_t number) {
                make<void>(asker, wl_pointer_interface, wl_resource_get_version(seat), number,
                           &pointerCalls, nullptr);
            },
        .get_keyboard = [](wl_client*, wl_resource*, std::uint32_t) {},
        .get_touch = [](wl_client*, wl_resource*, std::uint32_t) {},
        .release = destroy};
    auto& self = *static_cast<Implementation*>(data);
    auto* seat = make(client, wl_seat_interface, version, id, &calls, &self);
    wl_resource_set_destructor(seat, [](wl_resource* gone) { std::erase(of(gone).seats, gone); });
    self.seats.push_back(seat);
    self.tellCapabilities(seat);
}

void ScriptedCompositor::Implementation::bindSources(wl_client* client, void* data,
                                                     std::uint32_t version, std::uint32_t id) {
    static const struct ext_image_capture_source_v1_interface sourceCalls{.destroy = destroy};
    static const struct ext_output_image_capture_source_manager_v1_interface calls{
        .create_source =
            [](wl_client* asker, wl_resource*, std::uint32_t number, wl_resource* output) {
                make(asker, ext_image_capture_source_v1_interface, 1, number, &sourceCalls,
                     wl_resource_get_user_data(output));
            },
        .destroy = destroy};
    make(client, ext_output_image_capture_source_manager_v1_interface, version, id, &calls, data);
}

void ScriptedCompositor::Implementation::bindCopies(wl_client* client, void* data,
                                                    std::uint32_t version, std::uint32_t id) {
    static const struct ext_image_copy_capture_manager_v1_interface calls{
        .create_session = [](wl_client*, wl_resource*, std::uint32_t, wl_resource*,
                             std::uint32_t) {},
        .create_pointer_cursor_session =
            [](wl_client* asker, wl_resource* manager, std::uint32_t number, wl_resource* source,
               wl_resource*) { of(manager).addSession(asker, number, source); },
        .destroy = destroy};
    make(client, ext_image_copy_capture_manager_v1_interface, version, id, &calls, data);
}

void ScriptedCompositor::Implementation::addSession(wl_client* client, std::uint32_t id,
                                                    wl_resource* source) {
    static const struct ext_image_copy_capture_session_v1_interface imageCalls{
        .create_frame = [](wl_client*, wl_resource*, std::uint32_t) {}, .destroy = destroy};
    static const struct ext_image_copy_capture_cursor_session_v1_interface calls{
        .destroy = destroy,
        .get_capture_session = [](wl_client* asker, wl_resource* cursor, std::uint32_t number) {
            auto& self = of(cursor);
            const auto found = std::ranges::find(self.sessions, cursor,
                                                 [](const auto& each) { return each->cursor; });
            auto& session = **found;
            session.images = make(asker, ext_image_copy_capture_session_v1_interface, 1, number,
                                  &imageCalls, &session);
            wl_resource_set_destructor(session.images, [](wl_resource* gone) {
                static_cast<Session*>(wl_resource_get_user_data(gone))->images = nullptr;
            });
            if (self.script.stopsSessions)
                self.stop(session);
        }};
    auto session = std::make_unique<Session>();
    const auto* output = static_cast<Output*>(wl_resource_get_user_data(source));
    session->output =
        std::ranges::find(outputs, output, &std::unique_ptr<Output>::get) - outputs.begin();
    session->cursor =
        make(client, ext_image_copy_capture_cursor_session_v1_interface, 1, id, &calls, this);
    wl_resource_set_destructor(session->cursor, [](wl_resource* gone) {
        for (auto& each : of(gone).sessions)
            if (each->cursor == gone)
                each->cursor = nullptr;
    });
    sessions.push_back(std::move(session));
}

void ScriptedCompositor::Implementation::stop(Session& session) const {
    if (session.images != nullptr)
        ext_image_copy_capture_session_v1_send_stopped(session.images);
}

void ScriptedCompositor::Implementation::start() {
    display = wl_display_create();
    wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (display == nullptr || wl_display_add_socket(display, socketName) != 0)
        throw std::runtime_error("no socket for a scripted compositor");
    for (const auto& each : script.outputs) {
        auto& output = *outputs.emplace_back(std::make_unique<Output>(Output{each}));
        output.global = offer(wl_output_interface, 1, &output, bindOutput);
    }
    offer(zxdg_output_manager_v1_interface, 3, this, bindPlaces);
    offer(wl_seat_interface, 7, this, bindSeat);
    if (script.hasCursorSessions) {
        offer(ext_output_image_capture_source_manager_v1_interface, 1, this, bindSources);
        offer(ext_image_copy_capture_manager_v1_interface, 1, this, bindCopies);
    }
    commands = wl_event_loop_add_fd(
        wl_display_get_event_loop(display), wakeUp, WL_EVENT_READABLE,
        [](int event, std::uint32_t, void*) {
            eventfd_t rung = 0;
            return eventfd_read(event, &rung);
        },
        nullptr);
    if (!script.isMute)
        thread = std::jthread([this] { serve(); });
}

void ScriptedCompositor::Implementation::serve() {
    for (;;) {
        std::vector<std::packaged_task<void()>> now;
        {
            const std::lock_guard lock(mutex);
            if (isOver)
                return;
            now.swap(tasks);
        }
        for (auto& task : now)
            task();
        wl_display_flush_clients(display);
        wl_event_loop_dispatch(wl_display_get_event_loop(display), -1);
    }
}

void ScriptedCompositor::Implementation::run(std::function<void()> task) {
    std::packaged_task<void()> wrapped(std::move(task));
    auto done = wrapped.get_future();
    {
        const std::lock_guard lock(mutex);
        tasks.push_back(std::move(wrapped));
    }
    eventfd_write(wakeUp, 1);
    done.get();
}

ScriptedCompositor::ScriptedCompositor(const CompositorScript& script)
    : m_implementation(std::make_unique<Implementation>()) {
    // NOLINTBEGIN(concurrency-mt-unsafe)
    m_implementation->script = script;
    m_implementation->start();
    const char* before = std::getenv("WAYLAND_DISPLAY");
    m_implementation->displayBefore = before != nullptr ? before : "";
    setenv("WAYLAND_DISPLAY", socketName, 1);
    // NOLINTEND(concurrency-mt-unsafe)
}

ScriptedCompositor::~ScriptedCompositor() {
    {
        const std::lock_guard lock(m_implementation->mutex);
        m_implementation->isOver = true;
    }
    eventfd_write(m_implementation->wakeUp, 1);
    if (m_implementation->thread.joinable())
        m_implementation->thread.join();
    wl_event_source_remove(m_implementation->commands);
    wl_display_destroy_clients(m_implementation->display);
    wl_display_destroy(m_implementation->display);
    close(m_implementation->wakeUp);
    // NOLINTNEXTLINE(concurrency-mt-unsafe)
    setenv("WAYLAND_DISPLAY", m_implementation->displayBefore.c_str(), 1);
}

int ScriptedCompositor::cursorSessions() {
    int open = 0;
    m_implementation->run([&] {
        for (const auto& session : m_implementation->sessions)
            open += session->cursor != nullptr ? 1 : 0;
    });
    return open;
}

void ScriptedCompositor::movePointer(std::size_t output, int x, int y) {
    m_implementation->run([&] {
        for (const auto& session : m_implementation->sessions) {
            if (session->cursor == nullptr)
                continue;
            const bool wasInside = std::exchange(session->isInside, session->output == output);
            if (wasInside && !session->isInside)
                ext_image_copy_capture_cursor_session_v1_send_leave(session->cursor);
            if (!session->isInside)
                continue;
            if (!wasInside)
                ext_image_copy_capture_cursor_session_v1_send_enter(session->cursor);
            ext_image_copy_capture_cursor_session_v1_send_position(session->cursor, x, y);
        }
    });
}

void ScriptedCompositor::stopSessions() {
    m_implementation->run([this] {
        for (const auto& session : m_implementation->sessions)
            m_implementation->stop(*session);
    });
}

void ScriptedCompositor::unplug(std::size_t output) {
    m_implementation->run([&] { wl_global_remove(m_implementation->outputs[output]->global); });
}

void ScriptedCompositor::plugPointer(bool isThere) {
    m_implementation->run([&] {
        m_implementation->script.hasPointer = isThere;
        for (auto* seat : m_implementation->seats)
            m_implementation->tellCapabilities(seat);
    });
}

} // namespace vantro::test
