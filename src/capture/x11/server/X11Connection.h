#pragma once

#include "base/HostClock.h"
#include "capture/x11/server/XcbReply.h"

#include <expected>
#include <memory>
#include <optional>
#include <string>

#include <xcb/xcb.h>

namespace vantro::capture::x11 {

/// One connection to an X server and its default screen. Movable. Used by one thread at a time; a
/// part that waits on a thread of its own opens a connection of its own.
class X11Connection {
  public:
    /// `display` as in the environment variable DISPLAY; empty takes that variable. The error is
    /// for the user, for example "cannot open display :5".
    static std::expected<X11Connection, std::string> open(const std::string& display);

    xcb_connection_t* get() const { return m_connection.get(); }
    const xcb_screen_t& screen() const { return *m_screen; }
    xcb_window_t root() const { return m_screen->root; }
    /// The server has gone; nothing more will come.
    bool isLost() const { return xcb_connection_has_error(get()) != 0; }
    bool hasExtension(xcb_extension_t& extension) const;
    /// What the extension adds to its events' numbers.
    std::uint8_t firstEvent(xcb_extension_t& extension) const;
    std::uint8_t majorOpcode(xcb_extension_t& extension) const;

    template <typename Reply, typename Cookie>
    XcbOwned<Reply> await(Reply* (*fetch)(xcb_connection_t*, Cookie, xcb_generic_error_t**),
                          Cookie cookie) const {
        return awaitReply(get(), fetch, cookie);
    }
    XcbEvent pollEvent() const { return XcbEvent(xcb_poll_for_event(get())); }

    /// Sends what is buffered and waits until the server has sent something, `wakeUp` (a file
    /// descriptor) is readable, or `deadline`, when given, is there. Events that have been read
    /// already do not end the wait: poll them first.
    void wait(int wakeUp, std::optional<base::HostTime> deadline = {}) const;

  private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    X11Connection() = default;

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    const xcb_screen_t* m_screen = nullptr; // lives in the connection
};

} // namespace vantro::capture::x11
