#pragma once

#include "app/flows/AreaOverlay.h"

#include <QImage>
#include <functional>

namespace vantro::app::flows {
class RecordingPlatform;
} // namespace vantro::app::flows

namespace vantro::ui {
class Preferences;
} // namespace vantro::ui

namespace vantro::window::overlay {

/// Covers every display with a selection overlay; a drag belongs to one of them, and the first
/// answer ends them all. Main thread.
class DesktopOverlays : public app::flows::AreaOverlays {
  public:
    /// What a display shows beneath our own windows, in its pixels; null where that cannot be told.
    using PictureWithoutUs = std::function<QImage(std::uint32_t displayID)>;

    /// `preferences` remember the last area of each display.
    DesktopOverlays(app::flows::RecordingPlatform& platform, PictureWithoutUs withoutUs,
                    ui::Preferences& preferences)
        : m_platform(platform), m_withoutUs(std::move(withoutUs)), m_preferences(preferences) {}

    std::shared_ptr<app::flows::AreaOverlay>
    show(app::flows::AreaOverlayCallbacks callbacks) override;
    bool isScreen(const capture::ChosenContent& content) override;
    std::shared_ptr<app::flows::AreaOverlay>
    showOn(const capture::ChosenContent& screen,
           app::flows::AreaOverlayCallbacks callbacks) override;

  private:
    app::flows::RecordingPlatform& m_platform;
    PictureWithoutUs m_withoutUs;
    ui::Preferences& m_preferences;
};

} // namespace vantro::window::overlay
