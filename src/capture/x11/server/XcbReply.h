#pragma once

#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace vantro::capture::x11 {

struct FreeXcbMemory {
    void operator()(void* memory) const { std::free(memory); }
};

/// What xcb hands out to be freed: replies, events and errors.
template <typename Type>
using XcbOwned = std::unique_ptr<Type, FreeXcbMemory>;
using XcbEvent = XcbOwned<xcb_generic_event_t>;
using XcbError = XcbOwned<xcb_generic_error_t>;

/// Waits for the answer to a request; null when the server refused it or the connection is lost.
template <typename Reply, typename Cookie>
XcbOwned<Reply> awaitReply(xcb_connection_t* connection,
                           Reply* (*fetch)(xcb_connection_t*, Cookie, xcb_generic_error_t**),
                           Cookie cookie) {
    xcb_generic_error_t* error = nullptr;
    XcbOwned<Reply> reply(fetch(connection, cookie, &error));
    const XcbError owned(error);
    return reply;
}

} // namespace vantro::capture::x11
