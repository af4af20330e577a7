#pragma once

#include "app/flows/TaskRunner.h"
#include "ui/PictureStream.h"
#include "window/devices/CameraFeed.h"

#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <string>

#include <QtQml/qqmlregistration.h>

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::ui {
class ActionGuard;
} // namespace vantro::ui

namespace vantro::window::devices {

/// What the camera sees, before a recording, while its switch is on and the
/// window can be seen; otherwise the camera is closed. It is opened and closed
/// by the tasks that run the recorder, so a recorder that opens it finds it
/// closed. Main thread.
class CameraView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(vantro::ui::PictureStream* pictures READ pictures CONSTANT)
    Q_PROPERTY(bool mirrored READ isMirrored CONSTANT) ///< as in the film, unless edited
    Q_PROPERTY(bool shown READ isShown NOTIFY changed)
    /// Why there is no picture; empty where there is one, or will be.
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    /// Whether the window can be seen.
    Q_PROPERTY(bool watched MEMBER m_isWatched WRITE setWatched NOTIFY changed)

  public:
    /// Called on the tasks' thread.
    using OpenCamera = std::function<CameraFeed::Camera(const std::string& device)>;

    /// What it is given outlives it.
    CameraView(ui::ActionGuard& guard, app::AppState& state, app::flows::TaskRunner& recorderTasks,
               OpenCamera open);
    ~CameraView() override;

    ui::PictureStream* pictures() { return &m_pictures; }
    static bool isMirrored();
    bool isShown() const { return m_feed != nullptr; }
    QString problem() const { return m_problem; }
    void setWatched(bool watched);

  Q_SIGNALS:
    void changed();

  private:
    void update();
    void open();
    void close();
    void told(const std::weak_ptr<CameraFeed>& feed, const std::string& problem);

    ui::ActionGuard& m_guard;
    app::AppState& m_state;
    app::flows::TaskRunner& m_tasks;
    const OpenCamera m_open;
    bool m_isWatched = false;
    ui::PictureStream m_pictures;
    std::shared_ptr<CameraFeed> m_feed; ///< none: closed
    std::string m_device;               ///< of the feed
    QString m_problem;
};

} // namespace vantro::window::devices
