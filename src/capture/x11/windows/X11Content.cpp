#include "capture/x11/windows/X11Content.h"

#include "base/Fatal.h"
#include "capture/x11/server/X11Properties.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ranges>
#include <string_view>

#include <xcb/randr.h>

namespace vantro::capture::x11 {
namespace {

constexpr double dotsPerInchAtScaleOne = 96.0;

/// FNV-1a: short, and the same in every run and on every machine.
std::uint32_t hashOf(std::string_view name) {
    std::uint32_t hash = 2166136261U;
    for (const char character : name)
        hash = (hash ^ static_cast<unsigned char>(character)) * 16777619U;
    return hash;
}

/// The integer part of the device pixel ratio that the desktop's text resolution stands for.
int desktopScale(const X11Connection& connection) {
    const std::string resources = textProperty(connection, connection.root(), "RESOURCE_MANAGER");
    for (const auto part : std::views::split(std::string_view(resources), '\n')) {
        const std::string_view line(part.begin(), part.end());
        constexpr std::string_view key = "Xft.dpi:";
        if (!line.starts_with(key))
            continue;
        const auto start = line.find_first_not_of(" \t", key.size());
        double dotsPerInch = 0;
        if (start != std::string_view::npos)
            std::from_chars(line.data() + start, line.data() + line.size(), dotsPerInch);
        // The bounds keep a nonsensical resource from making a nonsensical picture.
        return static_cast<int>(std::clamp(dotsPerInch / dotsPerInchAtScaleOne, 1.0, 8.0));
    }
    return 1;
}

std::string atomName(const X11Connection& connection, xcb_atom_t atom) {
    const auto reply =
        connection.await(xcb_get_atom_name_reply, xcb_get_atom_name(connection.get(), atom));
    if (!reply)
        return {};
    return {xcb_get_atom_name_name(reply.get()),
            static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

/// Primary first, otherwise in RandR's order.
std::vector<X11Monitor> randrMonitors(const X11Connection& connection) {
    std::vector<X11Monitor> monitors;
    if (!connection.hasExtension(xcb_randr_id))
        return monitors;
    connection.await(xcb_randr_query_version_reply,
                     xcb_randr_query_version(connection.get(), 1, 5));
    const auto reply =
        connection.await(xcb_randr_get_monitors_reply,
                         xcb_randr_get_monitors(connection.get(), connection.root(), 1));
    if (!reply)
        return monitors;
    auto each = xcb_randr_get_monitors_monitors_iterator(reply.get());
    for (; each.rem > 0; xcb_randr_monitor_info_next(&each)) {
        const auto& info = *each.data;
        if (info.width == 0 || info.height == 0)
            continue;
        const std::string name = atomName(connection, info.name);
        const X11Monitor monitor{
            .id = hashOf(name), .name = name, .rect = {info.x, info.y, info.width, info.height}};
        monitors.insert(info.primary != 0 ? monitors.begin() : monitors.end(), monitor);
    }
    return monitors;
}

} // namespace

const X11Monitor* X11Geometry::find(std::uint32_t id) const {
    const auto found = std::ranges::find(monitors, id, &X11Monitor::id);
    return found == monitors.end() ? nullptr : &*found;
}

model::Rect X11Geometry::toPoints(media::color::PixelRect rect) const {
    const double pixels = scale;
    return {.x = (rect.x - main().rect.x) / pixels,
            .y = (rect.y - main().rect.y) / pixels,
            .width = rect.width / pixels,
            .height = rect.height / pixels};
}

X11Geometry queryGeometry(const X11Connection& connection) {
    X11Geometry geometry{.monitors = randrMonitors(connection), .scale = desktopScale(connection)};
    if (geometry.monitors.empty()) {
        const std::string name = "screen";
        const auto& screen = connection.screen();
        geometry.monitors.push_back(
            {.id = hashOf(name),
             .name = name,
             .rect = {0, 0, screen.width_in_pixels, screen.height_in_pixels}});
    }
    return geometry;
}

media::color::PixelRect capturedArea(const X11Geometry& geometry, const RecordingTarget& target) {
    const X11Monitor* found = geometry.find(target.display.displayID);
    const X11Monitor& monitor = found != nullptr ? *found : geometry.main();
    // Thirds of points come back a hair below the pixels that they were made from.
    const auto toPixels = [&](double points) {
        constexpr double hair = 1.0 / 1024;
        return static_cast<int>(
            base::truncatedToInteger(std::floor(points * geometry.scale + hair)));
    };
    return {monitor.rect.x + toPixels(target.captureRect.x - target.display.frame.x),
            monitor.rect.y + toPixels(target.captureRect.y - target.display.frame.y), target.width,
            target.height};
}

std::vector<ShareableDisplay> shareableDisplays(const X11Geometry& geometry) {
    std::vector<ShareableDisplay> displays;
    displays.reserve(geometry.monitors.size());
    for (const auto& monitor : geometry.monitors)
        displays.push_back({.displayID = monitor.id,
                            .name = monitor.name,
                            .frame = geometry.toPoints(monitor.rect),
                            .backingScaleFactor = static_cast<double>(geometry.scale),
                            .isMain = displays.empty()});
    return displays;
}

} // namespace vantro::capture::x11
