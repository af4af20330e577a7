#include "capture/x11/windows/X11WindowIcon.h"

#include "capture/x11/server/X11Properties.h"

#include <algorithm>
#include <optional>

namespace vantro::capture::x11 {
namespace {

// Lists show icons at 32 points, and screens have up to two pixels a point. A smaller picture would
// be blurred, a larger one is read for nothing.
constexpr int wantedSide = 64;
// What no sane window has: more is not looked at.
constexpr std::uint32_t largestSide = 1024;
constexpr int mostIcons = 32;

/// One of the pictures in the property, which come one after the other: width, height, pixels.
struct Entry {
    std::uint32_t offset = 0; // of the pixels, in 4-byte units
    int width = 0;
    int height = 0;
};

XcbOwned<xcb_get_property_reply_t> readPart(const X11Connection& connection, xcb_window_t window,
                                            xcb_atom_t icons, std::uint32_t offset,
                                            std::uint32_t length) {
    auto reply = connection.await(
        xcb_get_property_reply,
        xcb_get_property(connection.get(), 0, window, icons, XCB_ATOM_CARDINAL, offset, length));
    return reply && reply->format == 32 && reply->value_len == length ? std::move(reply) : nullptr;
}

bool isBetter(const Entry& candidate, const std::optional<Entry>& best) {
    const int side = std::min(candidate.width, candidate.height);
    const int bestSide = best ? std::min(best->width, best->height) : 0;
    return bestSide < wantedSide ? side > bestSide : side >= wantedSide && side < bestSide;
}

std::optional<Entry> bestEntry(const X11Connection& connection, xcb_window_t window,
                               xcb_atom_t icons) {
    std::optional<Entry> best;
    std::uint32_t offset = 0;
    for (int index = 0; index < mostIcons; ++index) {
        const auto head = readPart(connection, window, icons, offset, 2);
        if (!head)
            break;
        const auto* size = static_cast<const std::uint32_t*>(xcb_get_property_value(head.get()));
        const bool isSane =
            size[0] - 1 < largestSide && size[1] - 1 < largestSide; // nor zero, which wraps
        if (!isSane || size[0] * size[1] > head->bytes_after / 4)
            break;
        const Entry entry{offset + 2, static_cast<int>(size[0]), static_cast<int>(size[1])};
        if (isBetter(entry, best))
            best = entry;
        offset = entry.offset + size[0] * size[1];
    }
    return best;
}

std::uint32_t premultiplied(std::uint32_t color) {
    const std::uint32_t alpha = color >> 24;
    const auto channel = [&](int shift) {
        const std::uint32_t product = ((color >> shift) & 255) * alpha + 127;
        return product / 255 << shift;
    };
    return alpha << 24 | channel(16) | channel(8) | channel(0);
}

} // namespace

std::shared_ptr<const WindowIcon> windowIcon(const X11Connection& connection, xcb_window_t window) {
    const xcb_atom_t icons = findAtom(connection, "_NET_WM_ICON");
    if (icons == XCB_ATOM_NONE)
        return nullptr;
    const auto entry = bestEntry(connection, window, icons);
    if (!entry)
        return nullptr;
    const auto count = static_cast<std::uint32_t>(entry->width * entry->height);
    const auto reply = readPart(connection, window, icons, entry->offset, count);
    if (!reply)
        return nullptr;
    auto icon = std::make_shared<WindowIcon>();
    icon->width = entry->width;
    icon->height = entry->height;
    icon->pixels.resize(count);
    std::transform(static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get())),
                   static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get())) + count,
                   icon->pixels.begin(), premultiplied);
    return icon;
}

} // namespace vantro::capture::x11
