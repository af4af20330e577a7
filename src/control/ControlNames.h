#pragma once

/// How a running Vantro is found on the session bus, and what it is told there.
namespace vantro::control::names {

constexpr auto program = "com.vantro.app";            ///< has the window
constexpr auto recorder = "com.vantro.app.Recording"; ///< records; the first of several
constexpr auto path = "/com/vantro/app";
constexpr auto interface = "com.vantro.Control1";
constexpr auto stop = "Stop";
constexpr auto mark = "Mark";
constexpr auto pause = "Pause";
constexpr auto toggle = "Toggle";
constexpr auto refused = "com.vantro.Error.Refused";

// What desktops call programs by: the interface that desktop entries with DBusActivatable promise.
constexpr auto application = "org.freedesktop.Application";
constexpr auto activate = "Activate";
constexpr auto open = "Open";
constexpr auto activateAction = "ActivateAction";
constexpr auto activationToken = "activation-token";

constexpr auto bus = "org.freedesktop.DBus";
constexpr auto busPath = "/org/freedesktop/DBus";

} // namespace vantro::control::names
