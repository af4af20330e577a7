#pragma once

#include "app/flows/RecordingFlow.h"

#include <QQuickImageProvider>

namespace vantro::window {

/// What the user has chosen to record: "image://chosen/NUMBER", with another number each time. Main
/// thread.
class ChosenPictures : public QQuickImageProvider {
  public:
    explicit ChosenPictures(const app::flows::RecordingFlow& flow)
        : QQuickImageProvider(Image), m_flow(flow) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

  private:
    const app::flows::RecordingFlow& m_flow;
};

} // namespace vantro::window
