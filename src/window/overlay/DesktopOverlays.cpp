#include "window/overlay/DesktopOverlays.h"

#include "app/flows/RecordingPlatform.h"
#include "ui/Preferences.h"
#include "window/overlay/FrozenPicture.h"
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

QString nameOf(const std::string& told, const QScreen* screen) {
    return told.empty() && screen != nullptr ? screen->name() : QString::fromStdString(told);
}

/// Overlays of which the first answer ends all.
class OverlayGroup : public app::flows::AreaOverlay {
  public:
    OverlayGroup(ui::Preferences& preferences, app::flows::AreaOverlayCallbacks callbacks)
        : m_preferences(preferences), m_callbacks(std::move(callbacks)) {}

    /// `display` is the name that its area is remembered by.
    SelectionOverlay& add(QScreen& screen, const QImage& picture, const OverlayScale& scale,
                          const QString& display) {
        auto& overlay = *m_overlays.emplace_back(std::make_unique<SelectionOverlay>(
            &screen, picture, scale,
            app::flows::AreaOverlayCallbacks{
                .onSelection =
                    [this, scale, display](std::uint32_t displayID, model::Rect rect) {
                        if (!end())
                            return;
                        m_preferences.setLastArea(display,
                                                  {rect.x - scale.origin.x, rect.y - scale.origin.y,
                                                   rect.width, rect.height});
                        m_callbacks.onSelection(displayID, rect);
                    },
                .onCancel =
                    [this] {
                        if (end())
                            m_callbacks.onCancel();
                    }}));
        if (const auto last = m_preferences.lastArea(display))
            overlay.offer({last->x(), last->y(), last->width(), last->height()});
        return overlay;
    }
    void showAll() {
        for (const auto& overlay : m_overlays)
            overlay->showFullScreen();
        m_overlays.front()->raise();
        m_overlays.front()->requestActivate();
    }

  private:
    /// False when an answer has been given already.
    bool end() {
        for (const auto& overlay : m_overlays)
            overlay->hide();
        return !std::exchange(m_ended, true);
    }

    ui::Preferences& m_preferences;
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
    auto overlays = std::make_shared<OverlayGroup>(m_preferences, std::move(callbacks));
    for (const auto& display : displays) {
        auto& screen = screenOf(display);
        overlays->add(screen, pictureOf(screen, [&] { return m_withoutUs(display.displayID); }),
                      {.pixelsPerUnit = screen.devicePixelRatio(),
                       .pixelsPerPoint = display.backingScaleFactor,
                       .displayID = display.displayID,
                       .origin = {.x = display.frame.x, .y = display.frame.y}},
                      nameOf(display.name, &screen));
    }
    overlays->showAll(); // once all pictures are taken
    return overlays;
}

bool DesktopOverlays::isScreen(const capture::ChosenContent& content) {
    return isWholeScreen(content);
}

std::shared_ptr<app::flows::AreaOverlay>
DesktopOverlays::showOn(const capture::ChosenContent& screen,
                        app::flows::AreaOverlayCallbacks callbacks) {
    QScreen* shown = screenOf(screen);
    QScreen* placed = shown != nullptr ? shown : QGuiApplication::primaryScreen();
    if (placed == nullptr)
        return nullptr;
    auto overlays = std::make_shared<OverlayGroup>(m_preferences, std::move(callbacks));
    auto& overlay = overlays->add(*placed, imageOf(screen.picture),
                                  {.pixelsPerUnit = 0, .pixelsPerPoint = screen.pixelsPerPoint},
                                  nameOf(screen.name, shown));
    if (shown != nullptr)
        overlays->showAll();
    else
        overlay.showFitted();
    return overlays;
}

} // namespace vantro::window::overlay
