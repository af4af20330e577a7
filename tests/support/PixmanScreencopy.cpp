// Preloaded into xdg-desktop-portal-wlr. Version 0.7 casts nothing where the compositor has no
// memory of a graphics card to offer, though it would take the other kind then; so where there is
// no card, it is told of some beside each offer.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include <dlfcn.h>
#include <wayland-client-core.h>

namespace {

// As the protocol numbers them.
constexpr int bufferEvent = 0;
constexpr int cardBufferEvent = 5;
constexpr int eventCount = 7;
using Handler = void (*)();
Handler ours[eventCount]; // NOLINT: the listener lives as long as its proxies
Handler theirs[eventCount];

/// Of the two formats whose numbers are not those of the card's.
std::uint32_t cardFormat(std::uint32_t format) {
    constexpr std::uint32_t argb = 0x34325241;
    constexpr std::uint32_t xrgb = 0x34325258;
    return format == 0 ? argb : format == 1 ? xrgb : format;
}

void onBuffer(void* data, void* frame, std::uint32_t format, std::uint32_t width,
              std::uint32_t height, std::uint32_t stride) {
    using Buffer =
        void (*)(void*, void*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t);
    using CardBuffer = void (*)(void*, void*, std::uint32_t, std::uint32_t, std::uint32_t);
    reinterpret_cast<Buffer>(theirs[bufferEvent])(data, frame, format, width, height, stride);
    reinterpret_cast<CardBuffer>(theirs[cardBufferEvent])(data, frame, cardFormat(format), width,
                                                          height);
}

} // namespace

extern "C" int wl_proxy_add_listener(wl_proxy* proxy, Handler* handlers, void* data) {
    static const auto next = reinterpret_cast<decltype(&wl_proxy_add_listener)>(
        dlsym(RTLD_NEXT, "wl_proxy_add_listener"));
    if (std::strcmp(wl_proxy_get_class(proxy), "zwlr_screencopy_frame_v1") == 0) {
        std::copy_n(handlers, eventCount, theirs);
        std::copy_n(handlers, eventCount, ours);
        ours[bufferEvent] = reinterpret_cast<Handler>(onBuffer);
        handlers = ours;
    }
    return next(proxy, handlers, data);
}
