#include "capture/x11/windows/X11WindowTree.h"

#include <algorithm>
#include <span>

namespace vantro::capture::x11 {
namespace {

/// Asks about all windows before it waits for the first answer.
std::vector<X11Placement> placementsOf(const X11Connection& connection,
                                       std::span<const xcb_window_t> windows) {
    struct Question {
        xcb_get_geometry_cookie_t geometry;
        xcb_get_window_attributes_cookie_t attributes;
    };
    std::vector<Question> questions;
    questions.reserve(windows.size());
    for (const auto window : windows)
        questions.push_back({xcb_get_geometry(connection.get(), window),
                             xcb_get_window_attributes(connection.get(), window)});
    std::vector<X11Placement> placements;
    for (std::size_t index = 0; index < windows.size(); ++index) {
        const auto geometry = connection.await(xcb_get_geometry_reply, questions[index].geometry);
        const auto attributes =
            connection.await(xcb_get_window_attributes_reply, questions[index].attributes);
        if (!geometry || !attributes)
            continue;
        const int border = geometry->border_width;
        placements.push_back({.window = windows[index],
                              .rect = {geometry->x, geometry->y, geometry->width + 2 * border,
                                       geometry->height + 2 * border},
                              .border = border,
                              .depth = geometry->depth,
                              .isShown = attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
                                         attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT});
    }
    return placements;
}

} // namespace

std::optional<X11Placement> placementOf(const X11Connection& connection, xcb_window_t window) {
    const auto placements = placementsOf(connection, {&window, 1});
    return placements.empty() ? std::nullopt : std::optional(placements.front());
}

std::vector<X11Placement> childrenOf(const X11Connection& connection, xcb_window_t parent) {
    const auto tree =
        connection.await(xcb_query_tree_reply, xcb_query_tree(connection.get(), parent));
    if (!tree)
        return {};
    return placementsOf(connection,
                        {xcb_query_tree_children(tree.get()),
                         static_cast<std::size_t>(xcb_query_tree_children_length(tree.get()))});
}

xcb_window_t topLevelOf(const X11Connection& connection, xcb_window_t window) {
    for (;;) {
        const auto tree =
            connection.await(xcb_query_tree_reply, xcb_query_tree(connection.get(), window));
        if (!tree)
            return 0;
        if (tree->parent == tree->root || tree->parent == 0)
            return window;
        window = tree->parent;
    }
}

media::color::PixelRect intersection(media::color::PixelRect a, media::color::PixelRect b) {
    const int left = std::max(a.x, b.x);
    const int top = std::max(a.y, b.y);
    const int right = std::min(a.x + a.width, b.x + b.width);
    const int bottom = std::min(a.y + a.height, b.y + b.height);
    if (left >= right || top >= bottom)
        return {};
    return {left, top, right - left, bottom - top};
}

} // namespace vantro::capture::x11
