#include "capture/RecordingTarget.h"
#include "capture/x11/X11Content.h"
#include "capture/x11/X11OwnWindows.h"
#include "capture/x11/X11Properties.h"
#include "capture/x11/X11WindowIcon.h"

#include <algorithm>
#include <filesystem>
#include <ranges>

#include <fmt/format.h>

namespace vantro::capture::x11 {
namespace {

/// Lowest first, as X keeps them.
std::vector<xcb_window_t> stackedWindows(const X11Connection& connection) {
    auto managed = numbersProperty(connection, connection.root(), "_NET_CLIENT_LIST_STACKING");
    if (!managed.empty())
        return managed;
    const auto tree =
        connection.await(xcb_query_tree_reply, xcb_query_tree(connection.get(), connection.root()));
    if (!tree)
        return {};
    const auto* first = xcb_query_tree_children(tree.get());
    return {first, first + xcb_query_tree_children_length(tree.get())};
}

std::filesystem::path executableOf(const X11Connection& connection, xcb_window_t window) {
    const auto pid = numbersProperty(connection, window, "_NET_WM_PID");
    if (pid.empty())
        return {};
    std::error_code error;
    return std::filesystem::read_symlink(fmt::format("/proc/{}/exe", pid.front()), error);
}

/// The second of the property's two strings, each of which ends with a zero byte.
std::string windowClass(const X11Connection& connection, xcb_window_t window) {
    std::string both = textProperty(connection, window, "WM_CLASS");
    const auto start = both.find('\0');
    if (start == std::string::npos)
        return both;
    return both.substr(start + 1, both.find('\0', start + 1) - start - 1);
}

std::string windowTitle(const X11Connection& connection, xcb_window_t window) {
    std::string title = textProperty(connection, window, "_NET_WM_NAME");
    return title.empty() ? textProperty(connection, window, "WM_NAME") : title;
}

/// With the title bar and borders that the window manager has put around it.
std::optional<media::color::PixelRect> outerRect(const X11Connection& connection,
                                                 xcb_window_t window) {
    const auto geometry =
        connection.await(xcb_get_geometry_reply, xcb_get_geometry(connection.get(), window));
    const auto origin = connection.await(
        xcb_translate_coordinates_reply,
        xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0));
    if (!geometry || !origin)
        return {};
    media::color::PixelRect rect{origin->dst_x, origin->dst_y, geometry->width, geometry->height};
    const auto extents = numbersProperty(connection, window, "_NET_FRAME_EXTENTS");
    if (extents.size() == 4) {
        const auto side = [&](std::size_t index) { return static_cast<int>(extents[index]); };
        rect.x -= side(0);
        rect.y -= side(2);
        rect.width += side(0) + side(1);
        rect.height += side(2) + side(3);
    }
    return rect;
}

bool isHidden(const X11Connection& connection, xcb_window_t window) {
    const auto states = numbersProperty(connection, window, "_NET_WM_STATE");
    const xcb_atom_t hidden = findAtom(connection, "_NET_WM_STATE_HIDDEN");
    return hidden != XCB_ATOM_NONE && std::ranges::find(states, hidden) != states.end();
}

/// Nothing for a window that has gone meanwhile or that shows no picture.
std::optional<ShareableWindow> describe(const X11Connection& connection,
                                        const X11Geometry& geometry, X11OwnWindows& own,
                                        bool withIcons, xcb_window_t window) {
    const auto attributes = connection.await(xcb_get_window_attributes_reply,
                                             xcb_get_window_attributes(connection.get(), window));
    const auto rect = outerRect(connection, window);
    if (!attributes || attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT || !rect)
        return {};
    const std::string className = windowClass(connection, window);
    const auto executable = executableOf(connection, window);
    return ShareableWindow{.windowID = window,
                           .title = windowTitle(connection, window),
                           .applicationName =
                               className.empty() ? executable.filename().string() : className,
                           .bundleIdentifier = own.isOwn(window)   ? ownBundleIdentifier
                                               : className.empty() ? executable.string()
                                                                   : className,
                           .frame = geometry.toPoints(*rect),
                           .isOnScreen = attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
                                         !isHidden(connection, window),
                           .icon = withIcons ? windowIcon(connection, window) : nullptr};
}

} // namespace

std::vector<ShareableWindow> shareableWindows(const X11Connection& connection,
                                              const X11Geometry& geometry, X11OwnWindows& own,
                                              bool withIcons) {
    std::vector<ShareableWindow> windows;
    for (const xcb_window_t window : stackedWindows(connection) | std::views::reverse)
        if (auto described = describe(connection, geometry, own, withIcons, window))
            windows.push_back(std::move(*described));
    return windows;
}

} // namespace vantro::capture::x11
