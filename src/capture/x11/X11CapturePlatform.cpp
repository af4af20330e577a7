#include "capture/x11/X11CapturePlatform.h"

#include "base/Fatal.h"
#include "capture/x11/X11Content.h"
#include "capture/x11/X11PointerSource.h"
#include "capture/x11/X11ScreenSource.h"
#include "capture/x11/X11ScreenStream.h"
#include "capture/x11/X11WindowSource.h"

#include <unistd.h>

namespace vantro::capture::x11 {
namespace {

class X11CapturePlatform final : public CapturePlatform {
  public:
    X11CapturePlatform(X11Connection connection, std::string display, IsOwnProcess isOwnProcess)
        : m_connection(std::move(connection))
        , m_display(std::move(display))
        , m_isOwnProcess(std::move(isOwnProcess)) {}

    std::expected<ShareableContent, std::string> shareableContent() override;
    std::expected<std::unique_ptr<ScreenStream>, std::string>
    makeScreenStream(const ContentFilter& filter,
                     const ScreenStreamConfiguration& configuration) override;
    std::expected<std::shared_ptr<PointerSource>, std::string> makePointerSource() override;

  private:
    std::expected<std::unique_ptr<X11PictureSource>, std::string>
    makeScreenSource(const X11Connection& connection, const ContentFilter& filter,
                     const ScreenStreamConfiguration& configuration) const;

    X11Connection m_connection;
    std::string m_display;
    IsOwnProcess m_isOwnProcess;
};

/// The pixels of the X screen that a stream shows.
media::color::PixelRect capturedArea(const X11Monitor& monitor, int scale,
                                     const ScreenStreamConfiguration& configuration) {
    media::color::PixelRect area{monitor.rect.x, monitor.rect.y, configuration.width,
                                 configuration.height};
    if (configuration.sourceRect) {
        area.x += static_cast<int>(base::truncatedToInteger(configuration.sourceRect->x * scale));
        area.y += static_cast<int>(base::truncatedToInteger(configuration.sourceRect->y * scale));
    }
    return area;
}

bool isInside(media::color::PixelRect area, const xcb_screen_t& screen) {
    return area.width > 0 && area.height > 0 && area.x >= 0 && area.y >= 0 &&
           area.width <= screen.width_in_pixels - area.x &&
           area.height <= screen.height_in_pixels - area.y;
}

std::expected<ShareableContent, std::string> X11CapturePlatform::shareableContent() {
    const X11Geometry geometry = queryGeometry(m_connection);
    X11OwnWindows own(m_connection, m_isOwnProcess);
    ShareableContent content{.displays = shareableDisplays(geometry),
                             .windows = shareableWindows(m_connection, geometry, own)};
    if (m_connection.isLost())
        return std::unexpected("the connection to the display was lost");
    return content;
}

std::expected<std::unique_ptr<ScreenStream>, std::string>
X11CapturePlatform::makeScreenStream(const ContentFilter& filter,
                                     const ScreenStreamConfiguration& configuration) {
    auto opened = X11Connection::open(m_display);
    if (!opened)
        return std::unexpected(opened.error());
    auto connection = std::make_unique<X11Connection>(std::move(*opened));
    std::unique_ptr<X11PictureSource> source;
    if (filter.window) {
        auto made = X11WindowSource::create(*connection, *filter.window);
        if (!made)
            return std::unexpected(made.error());
        source = std::move(*made);
    } else {
        auto made = makeScreenSource(*connection, filter, configuration);
        if (!made)
            return std::unexpected(made.error());
        source = std::move(*made);
    }
    return std::make_unique<X11ScreenStream>(std::move(connection), std::move(source),
                                             configuration);
}

std::expected<std::unique_ptr<X11PictureSource>, std::string>
X11CapturePlatform::makeScreenSource(const X11Connection& connection, const ContentFilter& filter,
                                     const ScreenStreamConfiguration& configuration) const {
    const X11Geometry geometry = queryGeometry(connection);
    const auto* monitor = geometry.find(filter.displayID);
    if (monitor == nullptr)
        return std::unexpected("Display not found");
    const media::color::PixelRect area = capturedArea(*monitor, geometry.scale, configuration);
    if (!isInside(area, connection.screen()))
        return std::unexpected("the area lies outside of the screen");
    return std::make_unique<X11ScreenSource>(
        connection,
        X11ScreenSource::Place{.area = area,
                               .monitor = configuration.sourceRect ? 0 : filter.displayID},
        geometry, X11OwnWindows(connection, m_isOwnProcess, filter.excludedWindows));
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
