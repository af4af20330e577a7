#include "window/overlay/DesktopOverlays.h"

#include "app/flows/RecordingPlatform.h"
#include "window/overlay/SelectionOverlay.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

namespace vantro::window::overlay {
namespace {

/// What the screen shows; null where the desktop does not let windows look at each other, which are
/// the desktops that blend translucent windows.
QImage pictureOf(QScreen* screen) {
    if (QGuiApplication::platformName() != QStringLiteral("xcb"))
        return {};
    auto image = screen->grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
    image.setDevicePixelRatio(1);
    return image;
}

} // namespace

std::shared_ptr<app::flows::AreaOverlay>
DesktopOverlays::show(app::flows::AreaOverlayCallbacks callbacks) {
    auto* screen = QGuiApplication::primaryScreen();
    const auto displays = m_platform.displays();
    if (screen == nullptr || displays.empty())
        return nullptr;
    const auto& main = displays.front();
    const OverlayScale scale{.pixelsPerUnit = screen->devicePixelRatio(),
                             .pixelsPerPoint = main.backingScaleFactor,
                             .displayID = main.displayID};
    auto overlay =
        std::make_shared<SelectionOverlay>(screen, pictureOf(screen), scale, std::move(callbacks));
    overlay->showFullScreen();
    overlay->raise();
    overlay->requestActivate();
    return overlay;
}

} // namespace vantro::window::overlay
