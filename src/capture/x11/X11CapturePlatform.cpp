#include "capture/x11/X11CapturePlatform.h"

#include "capture/FrameLoopStream.h"
#include "capture/x11/input/X11PointerSource.h"
#include "capture/x11/pictures/X11ScreenSource.h"
#include "capture/x11/pictures/X11WindowSource.h"
#include "capture/x11/windows/X11Content.h"

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
    bool isConnected() override { return displays().has_value(); }
    std::expected<std::vector<ShareableDisplay>, std::string> displays() override;
    std::expected<ShareableContent, std::string> shareableContent(WindowIcons icons) override;
    std::expected<std::unique_ptr<ScreenStream>, std::string>
    makeScreenStream(const RecordingTarget& target) override;
    std::expected<std::unique_ptr<PointerSource>, std::string>
    makePointerSource(const RecordingTarget& target) override;

  private:
    std::expected<std::unique_ptr<X11PictureSource>, std::string>
    makeScreenSource(std::unique_ptr<X11Connection> connection,
                     const RecordingTarget& target) const;

    X11Connection m_connection;
    std::string m_display;
    IsOwnProcess m_isOwnProcess;
};

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
    abilities.ownWindowsLeftOut = needs(
        xcb_composite_id, "Vantro's own windows are hidden while recording: the display lacks "
                          "the extension Composite.");
    abilities.clicks = needs(xcb_input_id, "Clicks are not recorded: the display lacks the "
                                           "extension XInputExtension 2.");
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
    auto source = target.mode == model::CaptureMode::window
                      ? X11WindowSource::create(std::move(connection), target.windowID)
                      : makeScreenSource(std::move(connection), target);
    if (!source)
        return std::unexpected(source.error());
    return std::make_unique<FrameLoopStream>(std::move(*source), target);
}

std::expected<std::unique_ptr<X11PictureSource>, std::string>
X11CapturePlatform::makeScreenSource(std::unique_ptr<X11Connection> connection,
                                     const RecordingTarget& target) const {
    const X11Geometry geometry = queryGeometry(*connection);
    const auto* monitor = geometry.find(target.display.displayID);
    if (monitor == nullptr)
        return std::unexpected("Display not found");
    const media::color::PixelRect area = capturedArea(geometry, target);
    if (!isInside(area, connection->screen()))
        return std::unexpected("the area lies outside of the screen");
    const bool isWhole = target.mode == model::CaptureMode::screen;
    X11OwnWindows own(*connection, m_isOwnProcess, target.excludedWindows);
    return std::make_unique<X11ScreenSource>(
        std::move(connection),
        X11ScreenSource::Place{.area = area, .monitor = isWhole ? monitor->id : 0}, geometry,
        std::move(own));
}

std::expected<std::unique_ptr<PointerSource>, std::string>
X11CapturePlatform::makePointerSource(const RecordingTarget& target) {
    auto connection = X11Connection::open(m_display);
    if (!connection)
        return std::unexpected(connection.error());
    return std::make_unique<X11PointerSource>(std::move(*connection), target, m_isOwnProcess);
}

} // namespace

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
