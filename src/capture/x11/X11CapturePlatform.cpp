#include "capture/x11/X11CapturePlatform.h"

#include "base/Fatal.h"
#include "capture/x11/X11Content.h"
#include "capture/x11/X11PointerSource.h"
#include "capture/x11/X11ScreenSource.h"
#include "capture/x11/X11ScreenStream.h"
#include "capture/x11/X11WindowSource.h"

#include <cmath>

#include <unistd.h>
#include <xcb/composite.h>
#include <xcb/xinput.h>

namespace vantro::capture::x11 {
namespace {

constexpr const char* connectionLost = "the connection to the display was lost";

class X11CapturePlatform final : public CapturePlatform {
  public:
    X11CapturePlatform(X11Connection connection, std::string display, IsOwnProcess isOwnProcess)
        : m_connection(std::move(connection))
        , m_display(std::move(display))
        , m_isOwnProcess(std::move(isOwnProcess)) {}

    PlatformAbilities abilities() override;
    std::expected<std::vector<ShareableDisplay>, std::string> displays() override;
    std::expected<ShareableContent, std::string> shareableContent(WindowIcons icons) override;
    std::expected<std::unique_ptr<ScreenStream>, std::string>
    makeScreenStream(const RecordingTarget& target) override;
    std::expected<std::shared_ptr<PointerSource>, std::string> makePointerSource() override;

  private:
    std::expected<std::unique_ptr<X11PictureSource>, std::string>
    makeScreenSource(const X11Connection& connection, const RecordingTarget& target) const;

    X11Connection m_connection;
    std::string m_display;
    IsOwnProcess m_isOwnProcess;
};

/// The pixels of the X screen that a stream shows.
media::color::PixelRect capturedArea(const X11Monitor& monitor, int scale,
                                     const RecordingTarget& target) {
    // Thirds of points come back a hair below the pixels that they were made from.
    const auto toPixels = [scale](double points) {
        constexpr double hair = 1.0 / 1024;
        return static_cast<int>(base::truncatedToInteger(std::floor(points * scale + hair)));
    };
    return {monitor.rect.x + toPixels(target.captureRect.x - target.display.frame.x),
            monitor.rect.y + toPixels(target.captureRect.y - target.display.frame.y), target.width,
            target.height};
}

bool isInside(media::color::PixelRect area, const xcb_screen_t& screen) {
    return area.width > 0 && area.height > 0 && area.x >= 0 && area.y >= 0 &&
           area.width <= screen.width_in_pixels - area.x &&
           area.height <= screen.height_in_pixels - area.y;
}

PlatformAbilities X11CapturePlatform::abilities() {
    const auto needs = [this](xcb_extension_t& extension, const char* whyNot) {
        return Ability{m_connection.hasExtension(extension) ? "" : whyNot};
    };
    PlatformAbilities abilities;
    abilities.windows =
        needs(xcb_composite_id,
              "Single windows cannot be recorded: the display lacks the extension Composite.");
    abilities.ownWindowsLeftOut =
        needs(xcb_composite_id, "Vantro's own windows appear in recordings: the display lacks the "
                                "extension Composite.");
    abilities.clicks = needs(xcb_input_id, "Clicks are not recorded: the display lacks the "
                                           "extension XInputExtension 2.");
    abilities.systemSound.whyNot = "Vantro cannot record the sound of the system yet.";
    abilities.microphone.whyNot = "Vantro cannot record a microphone yet.";
    abilities.camera.whyNot = "Vantro cannot record a camera yet.";
    return abilities;
}

std::expected<std::vector<ShareableDisplay>, std::string> X11CapturePlatform::displays() {
    auto displays = shareableDisplays(queryGeometry(m_connection));
    if (m_connection.isLost())
        return std::unexpected(connectionLost);
    return displays;
}

std::expected<ShareableContent, std::string>
X11CapturePlatform::shareableContent(WindowIcons icons) {
    const X11Geometry geometry = queryGeometry(m_connection);
    X11OwnWindows own(m_connection, m_isOwnProcess);
    ShareableContent content{
        .displays = shareableDisplays(geometry),
        .windows = shareableWindows(m_connection, geometry, own, icons == WindowIcons::included)};
    if (m_connection.isLost())
        return std::unexpected(connectionLost);
    return content;
}

std::expected<std::unique_ptr<ScreenStream>, std::string>
X11CapturePlatform::makeScreenStream(const RecordingTarget& target) {
    auto opened = X11Connection::open(m_display);
    if (!opened)
        return std::unexpected(opened.error());
    auto connection = std::make_unique<X11Connection>(std::move(*opened));
    std::unique_ptr<X11PictureSource> source;
    if (target.mode == model::CaptureMode::window) {
        auto made = X11WindowSource::create(*connection, target.windowID);
        if (!made)
            return std::unexpected(made.error());
        source = std::move(*made);
    } else {
        auto made = makeScreenSource(*connection, target);
        if (!made)
            return std::unexpected(made.error());
        source = std::move(*made);
    }
    return std::make_unique<X11ScreenStream>(std::move(connection), std::move(source), target);
}

std::expected<std::unique_ptr<X11PictureSource>, std::string>
X11CapturePlatform::makeScreenSource(const X11Connection& connection,
                                     const RecordingTarget& target) const {
    const X11Geometry geometry = queryGeometry(connection);
    const auto* monitor = geometry.find(target.display.displayID);
    if (monitor == nullptr)
        return std::unexpected("Display not found");
    const media::color::PixelRect area = capturedArea(*monitor, geometry.scale, target);
    if (!isInside(area, connection.screen()))
        return std::unexpected("the area lies outside of the screen");
    const bool isWhole = target.mode == model::CaptureMode::screen;
    return std::make_unique<X11ScreenSource>(
        connection, X11ScreenSource::Place{.area = area, .monitor = isWhole ? monitor->id : 0},
        geometry, X11OwnWindows(connection, m_isOwnProcess, target.excludedWindows));
}

std::expected<std::shared_ptr<PointerSource>, std::string> X11CapturePlatform::makePointerSource() {
    auto connection = X11Connection::open(m_display);
    if (!connection)
        return std::unexpected(connection.error());
    const X11Geometry geometry = queryGeometry(*connection);
    return std::make_shared<X11PointerSource>(std::move(*connection), m_display, geometry,
                                              m_isOwnProcess);
}

} // namespace

bool isThisProcess(std::int64_t process) {
    return process == getpid();
}

std::expected<std::unique_ptr<CapturePlatform>, std::string> connectX11(const std::string& display,
                                                                        IsOwnProcess isOwnProcess) {
    auto connection = X11Connection::open(display);
    if (!connection)
        return std::unexpected(connection.error());
    if (const auto reason = unsupportedPixels(*connection))
        return std::unexpected(*reason);
    return std::make_unique<X11CapturePlatform>(std::move(*connection), display,
                                                std::move(isOwnProcess));
}

} // namespace vantro::capture::x11
