#include "capture/x11/X11CapturePlatform.h"

#include "base/Fatal.h"
#include "base/Log.h"
#include "capture/x11/X11Content.h"
#include "capture/x11/X11PointerSource.h"
#include "capture/x11/X11ScreenStream.h"

namespace vantro {
namespace {

class X11CapturePlatform final : public CapturePlatform {
  public:
    X11CapturePlatform(X11Connection connection, std::string display)
        : m_connection(std::move(connection)), m_display(std::move(display)) {}

    std::expected<ShareableContent, std::string> shareableContent() override;
    std::expected<std::unique_ptr<ScreenStream>, std::string>
    makeScreenStream(const ContentFilter& filter,
                     const ScreenStreamConfiguration& configuration) override;
    std::expected<std::shared_ptr<PointerSource>, std::string> makePointerSource() override;

  private:
    X11Connection m_connection;
    std::string m_display;
};

/// The pixels of the X screen that a stream shows.
PixelRect capturedArea(const X11Monitor& monitor, int scale,
                       const ScreenStreamConfiguration& configuration) {
    PixelRect area{monitor.rect.x, monitor.rect.y, configuration.width, configuration.height};
    if (configuration.sourceRect) {
        area.x += static_cast<int>(truncatedToInteger(configuration.sourceRect->x * scale));
        area.y += static_cast<int>(truncatedToInteger(configuration.sourceRect->y * scale));
    }
    return area;
}

bool isInside(PixelRect area, const xcb_screen_t& screen) {
    return area.width > 0 && area.height > 0 && area.x >= 0 && area.y >= 0 &&
           area.width <= screen.width_in_pixels - area.x &&
           area.height <= screen.height_in_pixels - area.y;
}

std::expected<ShareableContent, std::string> X11CapturePlatform::shareableContent() {
    const X11Geometry geometry = queryGeometry(m_connection);
    ShareableContent content{.displays = shareableDisplays(geometry),
                             .windows = shareableWindows(m_connection, geometry)};
    if (m_connection.isLost())
        return std::unexpected("the connection to the display was lost");
    return content;
}

std::expected<std::unique_ptr<ScreenStream>, std::string>
X11CapturePlatform::makeScreenStream(const ContentFilter& filter,
                                     const ScreenStreamConfiguration& configuration) {
    if (filter.window)
        return std::unexpected("single windows cannot be captured on this desktop");
    if (!filter.excludedWindows.empty())
        logWarning("Windows cannot be left out on this desktop: they appear in the recording");
    auto connection = X11Connection::open(m_display);
    if (!connection)
        return std::unexpected(connection.error());
    const X11Geometry geometry = queryGeometry(*connection);
    const auto* monitor = geometry.find(filter.displayID);
    if (monitor == nullptr)
        return std::unexpected("Display not found");
    const PixelRect area = capturedArea(*monitor, geometry.scale, configuration);
    if (!isInside(area, connection->screen()))
        return std::unexpected("the area lies outside of the screen");
    return std::make_unique<X11ScreenStream>(std::move(*connection), area,
                                             configuration.minimumFrameInterval);
}

std::expected<std::shared_ptr<PointerSource>, std::string> X11CapturePlatform::makePointerSource() {
    auto connection = X11Connection::open(m_display);
    if (!connection)
        return std::unexpected(connection.error());
    const X11Geometry geometry = queryGeometry(*connection);
    return std::make_shared<X11PointerSource>(std::move(*connection), m_display, geometry);
}

} // namespace

std::expected<std::unique_ptr<CapturePlatform>, std::string>
connectX11(const std::string& display) {
    auto connection = X11Connection::open(display);
    if (!connection)
        return std::unexpected(connection.error());
    if (const auto reason = unsupportedPixels(*connection))
        return std::unexpected(*reason);
    return std::make_unique<X11CapturePlatform>(std::move(*connection), display);
}

} // namespace vantro
