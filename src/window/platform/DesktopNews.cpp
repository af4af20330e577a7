#include "window/platform/DesktopNews.h"

#include "app/flows/ExportFlow.h"
#include "app/flows/RecordingFlow.h"
#include "ui/Sentences.h"
#include "window/platform/Notifications.h"

#include <QFileInfo>
#include <utility>

namespace vantro::window {

using app::flows::ExportFlow;
using app::flows::RecordingFlow;

DesktopNews::DesktopNews(app::flows::Flows flows, Notifications& notifications,
                         Surroundings surroundings)
    : m_notifications(notifications), m_surroundings(std::move(surroundings)) {
    connect(&flows.recording, &RecordingFlow::endedByItself, this, [this](const QString& why) {
        tell(tr("The recording has ended"), ui::sentence(why.toStdString()));
    });
    connect(&flows.recording, &RecordingFlow::diskNearlyFull, this, [this] {
        tell(tr("The disk is nearly full"),
             tr("There is room for less than five minutes of the recording."));
    });
    connect(&flows.recording, &RecordingFlow::nothingMoves, this,
            [this] { tell(tr("Still recording"), tr("Nothing has moved for ten minutes.")); });
    connect(&flows.exports, &ExportFlow::exported, this, &DesktopNews::tellOfFilm);
    connect(&flows.exports, &ExportFlow::exportFailed, this, [this](const QString& why) {
        tell(tr("The export has failed"), ui::sentence(why.toStdString()));
    });
}

void DesktopNews::tell(const QString& title, const QString& text) {
    if (!m_surroundings.isLookedAt())
        m_notifications.show({.title = title, .text = text});
}

void DesktopNews::tellOfFilm(const QString& file) {
    if (m_surroundings.isLookedAt())
        return;
    m_notifications.show({.title = tr("The film is ready"),
                          .text = QFileInfo(file).fileName(),
                          .action = tr("Show in Folder"),
                          .acted = [show = m_surroundings.showInFolder, file] { show(file); }});
}

} // namespace vantro::window
