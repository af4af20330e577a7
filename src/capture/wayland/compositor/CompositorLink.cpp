#include "capture/wayland/compositor/CompositorLink.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include <ext-image-capture-source-v1-client.h>
#include <ext-image-copy-capture-v1-client.h>
#include <poll.h>
#include <wayland-client.h>
#include <wlr-layer-shell-unstable-v1-client.h>
#include <xdg-output-unstable-v1-client.h>

namespace vantro::capture::wayland {

struct CompositorLink::Output {
    std::uint32_t global = 0;
    Owned<wl_output> output;
    Owned<zxdg_output_v1> place;
    CompositorOutput told;
    bool isTurned = false;
};

struct CompositorLink::Listeners {
    static const wl_registry_listener registry;
    static const wl_output_listener output;
    static const zxdg_output_v1_listener place;
    static const wl_seat_listener seat;
    static const wl_callback_listener sync;
};

const wl_registry_listener CompositorLink::Listeners::registry{
    .global =
        [](void* self, wl_registry*, std::uint32_t name, const char* interface,
           std::uint32_t version) {
            static_cast<CompositorLink*>(self)->announced(name, interface, version);
        },
    .global_remove =
        [](void* self, wl_registry*, std::uint32_t name) {
            static_cast<CompositorLink*>(self)->withdrawn(name);
        }};

const wl_output_listener CompositorLink::Listeners::output{
    .geometry =
        [](void* self, wl_output*, std::int32_t x, std::int32_t y, std::int32_t, std::int32_t,
           std::int32_t, const char*, const char*, std::int32_t transform) {
            auto& output = *static_cast<Output*>(self);
            if (!output.place) // some tell nothing true here
                output.told.position = {static_cast<double>(x), static_cast<double>(y)};
            output.isTurned = transform % 2 != 0;
        },
    .mode =
        [](void* self, wl_output*, std::uint32_t flags, std::int32_t width, std::int32_t height,
           std::int32_t) {
            if ((flags & WL_OUTPUT_MODE_CURRENT) != 0)
                static_cast<Output*>(self)->told.pixels = {width, height};
        },
    .done = [](void*, wl_output*) {},
    .scale = [](void*, wl_output*, std::int32_t) {},
    .name = [](void*, wl_output*, const char*) {},
    .description = [](void*, wl_output*, const char*) {}};

const zxdg_output_v1_listener CompositorLink::Listeners::place{
    .logical_position =
        [](void* self, zxdg_output_v1*, std::int32_t x, std::int32_t y) {
            static_cast<Output*>(self)->told.position = {static_cast<double>(x),
                                                         static_cast<double>(y)};
        },
    .logical_size = [](void*, zxdg_output_v1*, std::int32_t, std::int32_t) {},
    .done = [](void*, zxdg_output_v1*) {},
    .name = [](void*, zxdg_output_v1*, const char*) {},
    .description = [](void*, zxdg_output_v1*, const char*) {}};

const wl_seat_listener CompositorLink::Listeners::seat{
    .capabilities =
        [](void* self, wl_seat*, std::uint32_t capabilities) {
            static_cast<CompositorLink*>(self)->setPointer(
                (capabilities & WL_SEAT_CAPABILITY_POINTER) != 0);
        },
    .name = [](void*, wl_seat*, const char*) {}};

const wl_callback_listener CompositorLink::Listeners::sync{
    .done = [](void* isDone, wl_callback*, std::uint32_t) { *static_cast<bool*>(isDone) = true; }};

std::unique_ptr<CompositorLink> CompositorLink::open(base::HostDuration longestWait) {
    // A connection that somebody has handed down is meant for the window.
    if (std::getenv("WAYLAND_SOCKET") != nullptr || // NOLINT(concurrency-mt-unsafe)
        std::filesystem::exists("/.flatpak-info"))
        return nullptr;
    auto* display = wl_display_connect(nullptr);
    if (display == nullptr)
        return nullptr;
    std::unique_ptr<CompositorLink> link(new CompositorLink(display));
    return link->learn(longestWait) ? std::move(link) : nullptr;
}

CompositorLink::CompositorLink(wl_display* display)
    : m_display(display), m_registry(wl_display_get_registry(display)) {
    wl_registry_add_listener(m_registry.get(), &Listeners::registry, this);
}

CompositorLink::~CompositorLink() = default;

bool CompositorLink::learn(base::HostDuration longestWait) {
    if (!roundTrip(longestWait)) // what there is
        return false;
    m_isLearnt = true;
    for (const auto& output : m_outputs)
        if (m_places) {
            output->place.reset(
                zxdg_output_manager_v1_get_xdg_output(m_places.get(), output->output.get()));
            zxdg_output_v1_add_listener(output->place.get(), &Listeners::place, output.get());
        }
    if (!roundTrip(longestWait)) // what that is like
        return false;
    for (const auto& output : m_outputs) {
        m_told.push_back(output ? output->told : CompositorOutput());
        if (output && output->isTurned)
            std::swap(m_told.back().pixels.width, m_told.back().pixels.height);
    }
    return true;
}

void CompositorLink::announced(std::uint32_t name, const std::string& interface,
                               std::uint32_t version) {
    const auto isNew = [&](const wl_interface& wanted, const auto& owned) {
        return interface == wanted.name && !owned;
    };
    const auto bind = [&](auto& owned, const wl_interface& wanted, std::uint32_t upTo) {
        owned.reset(static_cast<std::remove_reference_t<decltype(owned)>::pointer>(
            wl_registry_bind(m_registry.get(), name, &wanted, std::min(version, upTo))));
    };
    if (isNew(zxdg_output_manager_v1_interface, m_places)) {
        bind(m_places, zxdg_output_manager_v1_interface, 1);
    } else if (isNew(ext_output_image_capture_source_manager_v1_interface, m_sources)) {
        bind(m_sources, ext_output_image_capture_source_manager_v1_interface, 1);
    } else if (isNew(ext_image_copy_capture_manager_v1_interface, m_copies)) {
        bind(m_copies, ext_image_copy_capture_manager_v1_interface, 1);
    } else if (isNew(wl_compositor_interface, m_surfaces)) {
        bind(m_surfaces, wl_compositor_interface, 1);
    } else if (isNew(wl_shm_interface, m_memory)) {
        bind(m_memory, wl_shm_interface, 1);
    } else if (isNew(zwlr_layer_shell_v1_interface, m_layers)) {
        bind(m_layers, zwlr_layer_shell_v1_interface, 1);
    } else if (isNew(wl_seat_interface, m_seat)) {
        bind(m_seat, wl_seat_interface, 1);
        wl_seat_add_listener(m_seat.get(), &Listeners::seat, this);
    } else if (interface == wl_output_interface.name && !m_isLearnt) {
        auto& output = *m_outputs.emplace_back(std::make_unique<Output>());
        output.global = name;
        bind(output.output, wl_output_interface, 1);
        wl_output_add_listener(output.output.get(), &Listeners::output, &output);
    }
}

void CompositorLink::withdrawn(std::uint32_t name) {
    for (auto& output : m_outputs)
        if (output && output->global == name)
            output.reset();
}

void CompositorLink::setPointer(bool isThere) {
    if (isThere == (m_pointer != nullptr))
        return;
    m_pointer.reset(isThere ? wl_seat_get_pointer(m_seat.get()) : nullptr);
    ++m_pointersSoFar;
}

Owned<ext_image_capture_source_v1> CompositorLink::sourceOf(std::size_t number) const {
    return Owned<ext_image_capture_source_v1>(
        ext_output_image_capture_source_manager_v1_create_source(m_sources.get(),
                                                                 m_outputs[number]->output.get()));
}

bool CompositorLink::isThere(std::size_t number) const {
    return m_outputs[number] != nullptr;
}

wl_output* CompositorLink::output(std::size_t number) const {
    return m_outputs[number] ? m_outputs[number]->output.get() : nullptr;
}

Owned<ext_image_copy_capture_cursor_session_v1>
CompositorLink::cursorSession(ext_image_capture_source_v1& source) const {
    if (!m_pointer)
        return nullptr;
    return Owned<ext_image_copy_capture_cursor_session_v1>(
        ext_image_copy_capture_manager_v1_create_pointer_cursor_session(m_copies.get(), &source,
                                                                        m_pointer.get()));
}

bool CompositorLink::turn(int wakeUp, base::HostDuration longestWait) {
    auto* display = m_display.get();
    if (wl_display_prepare_read(display) != 0)
        return wl_display_dispatch_pending(display) >= 0;
    // A compositor that has gone may have left something to be read.
    if (wl_display_flush(display) < 0 && errno != EAGAIN && errno != EPIPE) {
        wl_display_cancel_read(display);
        return false;
    }
    std::array<pollfd, 2> waited{{{wl_display_get_fd(display), POLLIN, 0}, {wakeUp, POLLIN, 0}}};
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(longestWait).count();
    poll(waited.data(), waited.size(), static_cast<int>(wait));
    if (waited[0].revents == 0)
        wl_display_cancel_read(display);
    else if (wl_display_read_events(display) < 0)
        return false;
    return wl_display_dispatch_pending(display) >= 0;
}

bool CompositorLink::turnUntil(const std::function<bool()>& isSo, base::HostDuration longestWait) {
    const auto limit = base::hostNow() + longestWait;
    while (!isSo()) {
        const auto now = base::hostNow();
        if (now >= limit || !turn(-1, limit - now))
            return false;
    }
    return true;
}

bool CompositorLink::roundTrip(base::HostDuration longestWait) {
    bool isDone = false;
    const Owned<wl_callback> callback(wl_display_sync(m_display.get()));
    wl_callback_add_listener(callback.get(), &Listeners::sync, &isDone);
    return turnUntil([&] { return isDone; }, longestWait);
}

} // namespace vantro::capture::wayland
