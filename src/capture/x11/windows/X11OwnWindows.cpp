#include "capture/x11/windows/X11OwnWindows.h"

#include "capture/x11/server/X11Properties.h"

#include <algorithm>

#include <xcb/res.h>

namespace vantro::capture::x11 {
namespace {

// A frame holds the window itself or a container of it; deeper lie the windows' own contents.
constexpr int deepestFrame = 3;

std::vector<xcb_window_t> childrenOfAll(const X11Connection& connection,
                                        const std::vector<xcb_window_t>& windows) {
    std::vector<xcb_query_tree_cookie_t> questions;
    questions.reserve(windows.size());
    for (const auto window : windows)
        questions.push_back(xcb_query_tree(connection.get(), window));
    std::vector<xcb_window_t> children;
    for (const auto question : questions)
        if (const auto tree = connection.await(xcb_query_tree_reply, question)) {
            const auto* first = xcb_query_tree_children(tree.get());
            children.insert(children.end(), first,
                            first + xcb_query_tree_children_length(tree.get()));
        }
    return children;
}

} // namespace

X11OwnWindows::X11OwnWindows(const X11Connection& connection, IsOwnProcess isOwnProcess,
                             std::vector<std::uint32_t> alsoOwn)
    : m_connection(connection)
    , m_isOwnProcess(std::move(isOwnProcess))
    , m_alsoOwn(std::move(alsoOwn)) {
    if (connection.hasExtension(xcb_res_id)) {
        const auto version = connection.await(xcb_res_query_version_reply,
                                              xcb_res_query_version(connection.get(), 1, 2));
        m_canAskServer = version && (version->server_major > 1 || version->server_minor >= 2);
    }
}

bool X11OwnWindows::isOwn(xcb_window_t window) {
    const auto known = m_windows.find(window);
    if (known != m_windows.end())
        return known->second;
    std::vector<xcb_window_t> level{window};
    bool isOwn = isAnyOwn(level);
    for (int depth = 0; depth < deepestFrame && !isOwn && !level.empty(); ++depth) {
        level = childrenOfAll(m_connection, level);
        isOwn = isAnyOwn(level);
    }
    m_windows.emplace(window, isOwn);
    return isOwn;
}

void X11OwnWindows::forget() {
    m_windows.clear();
    m_clients.clear();
}

bool X11OwnWindows::isAnyOwn(const std::vector<xcb_window_t>& windows) {
    const xcb_atom_t processName = findAtom(m_connection, "_NET_WM_PID");
    std::vector<xcb_get_property_cookie_t> questions;
    questions.reserve(windows.size());
    for (const auto window : windows)
        questions.push_back(
            xcb_get_property(m_connection.get(), 0, window, processName, XCB_ATOM_CARDINAL, 0, 1));
    bool isOwn = false;
    for (const auto question : questions) {
        const auto reply = m_connection.await(xcb_get_property_reply, question);
        if (reply && reply->format == 32 && reply->value_len == 1)
            isOwn |= m_isOwnProcess(
                *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get())));
    }
    return isOwn || std::ranges::any_of(windows, [this](xcb_window_t window) {
               return std::ranges::find(m_alsoOwn, window) != m_alsoOwn.end() ||
                      isOwnClient(window);
           });
}

bool X11OwnWindows::isOwnClient(xcb_window_t window) {
    if (!m_canAskServer)
        return false;
    const auto client = window & ~xcb_get_setup(m_connection.get())->resource_id_mask;
    if (const auto known = m_clients.find(client); known != m_clients.end())
        return known->second;
    const xcb_res_client_id_spec_t question{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto reply = m_connection.await(
        xcb_res_query_client_ids_reply, xcb_res_query_client_ids(m_connection.get(), 1, &question));
    bool isOwn = false;
    if (reply)
        for (auto ids = xcb_res_query_client_ids_ids_iterator(reply.get()); ids.rem > 0;
             xcb_res_client_id_value_next(&ids))
            if (xcb_res_client_id_value_value_length(ids.data) > 0)
                isOwn |= m_isOwnProcess(*xcb_res_client_id_value_value(ids.data));
    m_clients.emplace(client, isOwn);
    return isOwn;
}

} // namespace vantro::capture::x11
