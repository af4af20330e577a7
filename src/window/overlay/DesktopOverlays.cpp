#include "window/overlay/DesktopOverlays.h"

#include "app/flows/RecordingPlatform.h"
#include "window/overlay/SelectionOverlay.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QWindow>
#include <algorithm>

namespace vantro::window::overlay {
namespace {

constexpr int shadowReach = 64; // pixels, which desktops draw around windows

/// Where our windows can be seen, in pixels of the screen.
QRegion ownPlaces(const QScreen& screen) {
    QRegion places;
    const double pixels = screen.devicePixelRatio();
    for (const auto* window : QGuiApplication::topLevelWindows()) {
        const auto frame = window->frameGeometry().translated(-screen.geometry().topLeft());
        if (window->isVisible())
            places += QRectF(QPointF(frame.topLeft()) * pixels, QSizeF(frame.size()) * pixels)
                          .toAlignedRect()
                          .adjusted(-shadowReach, -shadowReach, shadowReach, shadowReach);
    }
    return places;
}

/// What the screen shows, without our own windows where that can be had; null where the desktop
/// does not let windows look at each other, which are the desktops that blend translucent windows.
QImage pictureOf(QScreen& screen, const std::function<QImage()>& withoutUs) {
    if (QGuiApplication::platformName() != QStringLiteral("xcb"))
        return {};
    auto picture = screen.grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
    picture.setDevicePixelRatio(1);
    const auto own = ownPlaces(screen) & picture.rect();
    if (own.isEmpty())
        return picture;
    const auto beneath = withoutUs();
    QPainter painter(&picture);
    for (const auto& place : own& beneath.rect())
        painter.drawImage(place, beneath, place);
    return picture;
}

double overlap(const QRectF& a, const QRectF& b) {
    const auto both = a & b;
    return both.width() * both.height();
}

/// The screen that shows a display, which is told in points from the main one's corner.
QScreen& screenOf(const capture::ShareableDisplay& display) {
    const double scale = display.backingScaleFactor;
    const QRectF shown(display.frame.x * scale, display.frame.y * scale,
                       display.frame.width * scale, display.frame.height * scale);
    const auto corner = QGuiApplication::primaryScreen()->geometry().topLeft();
    const auto screens = QGuiApplication::screens();
    return **std::ranges::max_element(screens, {}, [&](const QScreen* screen) {
        const QRectF pixels(screen->geometry().topLeft() - corner, // corners are told in pixels
                            QSizeF(screen->size()) * screen->devicePixelRatio());
        return overlap(pixels, shown);
    });
}

/// An overlay on each display.
class OverlayGroup : public app::flows::AreaOverlay {
  public:
    OverlayGroup(const std::vector<capture::ShareableDisplay>& displays,
                 const DesktopOverlays::PictureWithoutUs& withoutUs,
                 app::flows::AreaOverlayCallbacks callbacks)
        : m_callbacks(std::move(callbacks)) {
        for (const auto& display : displays)
            add(screenOf(display), display, withoutUs);
        // All pictures are taken before the first overlay covers a screen.
        for (const auto& overlay : m_overlays)
            overlay->showFullScreen();
        m_overlays.front()->raise();
        m_overlays.front()->requestActivate();
    }

  private:
    void add(QScreen& screen, const capture::ShareableDisplay& display,
             const DesktopOverlays::PictureWithoutUs& withoutUs) {
        m_overlays.push_back(std::make_unique<SelectionOverlay>(
            &screen, pictureOf(screen, [&] { return withoutUs(display.displayID); }),
            OverlayScale{.pixelsPerUnit = screen.devicePixelRatio(),
                         .pixelsPerPoint = display.backingScaleFactor,
                         .displayID = display.displayID,
                         .origin = {.x = display.frame.x, .y = display.frame.y}},
            app::flows::AreaOverlayCallbacks{.onSelection =
                                                 [this](std::uint32_t displayID, model::Rect rect) {
                                                     if (end())
                                                         m_callbacks.onSelection(displayID, rect);
                                                 },
                                             .onCancel =
                                                 [this] {
                                                     if (end())
                                                         m_callbacks.onCancel();
                                                 }}));
    }

    /// False when an answer has been given already.
    bool end() {
        for (const auto& overlay : m_overlays)
            overlay->hide();
        return !std::exchange(m_ended, true);
    }

    app::flows::AreaOverlayCallbacks m_callbacks;
    std::vector<std::unique_ptr<SelectionOverlay>> m_overlays;
    bool m_ended = false;
};

} // namespace

std::shared_ptr<app::flows::AreaOverlay>
DesktopOverlays::show(app::flows::AreaOverlayCallbacks callbacks) {
    const auto displays = m_platform.displays();
    if (displays.empty() || QGuiApplication::screens().isEmpty())
        return nullptr;
    return std::make_shared<OverlayGroup>(displays, m_withoutUs, std::move(callbacks));
}

} // namespace vantro::window::overlay
