#include "capture/wayland/compositor/ScreenRedraw.h"

#include "base/FileDescriptor.h"
#include "capture/wayland/compositor/CompositorLink.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <optional>

#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <wlr-layer-shell-unstable-v1-client.h>

namespace vantro::capture::wayland {
namespace {

constexpr int bytesInPixel = 4;
constexpr base::HostDuration longestDrawing = std::chrono::milliseconds(100);

/// On one screen. The surface's role goes before the surface.
struct Speck {
    Owned<wl_surface> surface;
    Owned<zwlr_layer_surface_v1> layer;
    std::optional<std::uint32_t> mayShow; ///< the compositor's number for that
    Owned<wl_callback> drawing;           ///< until it has been drawn
};

constexpr zwlr_layer_surface_v1_listener layerListener{
    .configure = [](void* speck, zwlr_layer_surface_v1*, std::uint32_t serial, std::uint32_t,
                    std::uint32_t) { static_cast<Speck*>(speck)->mayShow = serial; },
    .closed = [](void* speck,
                 zwlr_layer_surface_v1*) { static_cast<Speck*>(speck)->mayShow.reset(); }};

constexpr wl_callback_listener drawnListener{.done = [](void* speck, wl_callback*, std::uint32_t) {
    static_cast<Speck*>(speck)->drawing.reset();
}};

/// New memory is zero, which is transparent.
Owned<wl_buffer> transparentPixel(wl_shm& memory) {
    const base::FileDescriptor file(memfd_create("vantro-pixel", MFD_CLOEXEC));
    if (!file || ftruncate(file.get(), bytesInPixel) != 0)
        return nullptr;
    const Owned<wl_shm_pool> pool(wl_shm_create_pool(&memory, file.get(), bytesInPixel));
    return Owned<wl_buffer>(
        wl_shm_pool_create_buffer(pool.get(), 0, 1, 1, bytesInPixel, WL_SHM_FORMAT_ARGB8888));
}

/// Above all, since what is covered need not be drawn.
void ask(Speck& speck, const CompositorLink& link, wl_output& output) {
    speck.surface.reset(wl_compositor_create_surface(link.surfaces()));
    const Owned<wl_region> nowhere(wl_compositor_create_region(link.surfaces()));
    wl_surface_set_input_region(speck.surface.get(), nowhere.get());
    speck.layer.reset(zwlr_layer_shell_v1_get_layer_surface(
        link.layers(), speck.surface.get(), &output, ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "vantro"));
    zwlr_layer_surface_v1_add_listener(speck.layer.get(), &layerListener, &speck);
    zwlr_layer_surface_v1_set_size(speck.layer.get(), 1, 1);
    zwlr_layer_surface_v1_set_anchor(speck.layer.get(), ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP |
                                                            ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT);
    constexpr int beyondPanels = -1;
    zwlr_layer_surface_v1_set_exclusive_zone(speck.layer.get(), beyondPanels);
    wl_surface_commit(speck.surface.get());
}

void show(Speck& speck, wl_buffer& pixel) {
    if (!speck.mayShow)
        return;
    speck.drawing.reset(wl_surface_frame(speck.surface.get()));
    wl_callback_add_listener(speck.drawing.get(), &drawnListener, &speck);
    zwlr_layer_surface_v1_ack_configure(speck.layer.get(), *speck.mayShow);
    wl_surface_attach(speck.surface.get(), &pixel, 0, 0);
    wl_surface_damage(speck.surface.get(), 0, 0, 1, 1);
    wl_surface_commit(speck.surface.get());
}

} // namespace

bool redrawScreens(base::HostDuration longestAnswer) {
    const auto link = CompositorLink::open(longestAnswer);
    if (!link || !link->hasLayers())
        return false;
    const auto pixel = transparentPixel(*link->memory());
    if (!pixel)
        return false;
    std::deque<Speck> specks; // which stay where they are
    for (std::size_t i = 0; i < link->outputs().size(); ++i)
        if (auto* output = link->output(i))
            ask(specks.emplace_back(), *link, *output);
    if (!link->roundTrip(longestAnswer))
        return false;
    for (Speck& speck : specks)
        show(speck, *pixel);
    // A screen that is off draws nothing.
    link->turnUntil(
        [&] {
            return std::ranges::none_of(specks, [](const auto& each) { return !!each.drawing; });
        },
        longestDrawing);
    specks.clear();
    return link->roundTrip(longestAnswer);
}

} // namespace vantro::capture::wayland
