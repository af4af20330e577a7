#pragma once

#include "app/flows/Flows.h"

#include <QObject>
#include <functional>

namespace vantro::window {

class Notifications;

/// Tells the user, who looks elsewhere, what has become of recordings and exports: as notifications
/// of the desktop, and none while `isLookedAt` says that the window itself has their attention.
/// Main thread.
class DesktopNews : public QObject {
    Q_OBJECT

  public:
    struct Surroundings {
        std::function<bool()> isLookedAt;
        std::function<void(const QString& file)> showInFolder;
    };

    /// Everything outlives this.
    DesktopNews(app::flows::Flows flows, Notifications& notifications, Surroundings surroundings);

  private:
    void tell(const QString& title, const QString& text);
    void tellOfFilm(const QString& file);

    Notifications& m_notifications;
    const Surroundings m_surroundings;
};

} // namespace vantro::window
