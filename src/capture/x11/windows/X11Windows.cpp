#include "capture/RecordingTarget.h"
#include "capture/x11/server/X11Properties.h"
#include "capture/x11/windows/X11Content.h"
#include "capture/x11/windows/X11OwnWindows.h"
#include "capture/x11/windows/X11VisiblePart.h"
#include "capture/x11/windows/X11WindowIcon.h"

#include <algorithm>
#include <filesystem>
#include <ranges>

#include <fmt/format.h>

namespace vantro::capture::x11 {
namespace {

std::vector<xcb_window_t> childWindows(const X11Connection& connection, xcb_window_t parent) {
    const auto tree =
        connection.await(xcb_query_tree_reply, xcb_query_tree(connection.get(), parent));
    if (!tree)
        return {};
    const auto* first = xcb_query_tree_children(tree.get());
    return {first, first + xcb_query_tree_children_length(tree.get())};
}

/// The window of an application in a window manager's frame: window managers mark it. The frame
/// itself where none is marked.
xcb_window_t clientIn(const X11Connection& connection, xcb_window_t frame) {
    constexpr int deepest = 3; // a frame may hold containers of the client
    std::vector<xcb_window_t> level{frame};
    for (int depth = 0; depth < deepest && !level.empty(); ++depth) {
        std::vector<xcb_window_t> next;
        for (const xcb_window_t window : level) {
            if (!numbersProperty(connection, window, "WM_STATE").empty())
                return window;
            const auto children = childWindows(connection, window);
            next.insert(next.end(), children.begin(), children.end());
        }
        level = std::move(next);
    }
    return frame;
}

/// Lowest first, as X keeps them.
std::vector<xcb_window_t> stackedWindows(const X11Connection& connection) {
    auto windows = numbersProperty(connection, connection.root(), "_NET_CLIENT_LIST_STACKING");
    if (!windows.empty())
        return windows;
    windows = childWindows(connection, connection.root());
    if (findAtom(connection, "WM_STATE") != XCB_ATOM_NONE)
        for (xcb_window_t& window : windows)
            window = clientIn(connection, window);
    return windows;
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

/// Whether the window belongs to another workspace than the one that is shown.
bool isElsewhere(const X11Connection& connection, xcb_window_t window) {
    constexpr std::uint32_t onAll = 0xFFFFFFFF;
    const auto shown = numbersProperty(connection, connection.root(), "_NET_CURRENT_DESKTOP");
    const auto own = numbersProperty(connection, window, "_NET_WM_DESKTOP");
    return !shown.empty() && !own.empty() && own.front() != onAll && own.front() != shown.front();
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
    const auto rect = visibleRect(connection, window);
    if (!attributes || attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT || !rect)
        return {};
    const std::string className = windowClass(connection, window);
    const auto executable = executableOf(connection, window);
    return ShareableWindow{
        .windowID = window,
        .title = windowTitle(connection, window),
        .applicationName = className.empty() ? executable.filename().string() : className,
        .bundleIdentifier = own.isOwn(window)   ? ownBundleIdentifier
                            : className.empty() ? executable.string()
                                                : className,
        .frame = geometry.toPoints(*rect),
        .isOnScreen = attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
                      !isHidden(connection, window) && !isElsewhere(connection, window),
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
