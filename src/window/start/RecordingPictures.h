#pragma once

#include "app/flows/RecoveryFlow.h"

#include <QQuickImageProvider>

namespace vantro::window::start {

/// Pictures of the listed recordings: "image://recording/FOLDER". Main thread.
class RecordingPictures : public QQuickImageProvider {
  public:
    explicit RecordingPictures(const app::flows::RecoveryFlow& recovery)
        : QQuickImageProvider(Pixmap), m_recovery(recovery) {}

    QPixmap requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) override;

  private:
    const app::flows::RecoveryFlow& m_recovery;
};

} // namespace vantro::window::start
