#pragma once

#include "base/Guarded.h"
#include "capture/CameraSource.h"
#include "ui/PictureStream.h"

#include <QSize>
#include <expected>
#include <functional>
#include <memory>
#include <string>

namespace vantro::window::devices {

/// Puts a camera's pictures into a stream, made as small as they are shown there, and no more of
/// them than anybody needs who only wants to see whether it looks right.
class CameraFeed final : private capture::CameraOutput {
  public:
    using Camera = std::expected<std::unique_ptr<capture::CameraSource>, capture::CameraRefusal>;

    /// `problem` is called, on any thread, with what the user should know of the camera; empty:
    /// nothing any more.
    CameraFeed(ui::PictureStream& stream, QSize area,
               std::function<void(const std::string&)> problem);
    ~CameraFeed() override;

    // One thread after the other.
    void open(const std::function<Camera()>& openCamera);
    void close();

    /// The pixels that a picture may cover. Any thread.
    void setArea(QSize area);
    /// Nothing is delivered after this has returned; a problem may be on its way. Any thread.
    void detach();

  private:
    struct Target {
        ui::PictureStream* stream = nullptr; ///< null: detached
        std::function<void(const std::string&)> problem;
        QSize area;
    };

    void picture(const capture::CameraPicture& picture) override;
    void cameraMissing(const std::string& reason) override;
    void cameraReturned() override;
    void tell(const std::string& problem);

    base::Guarded<Target> m_target;
    base::HostTime m_shownAt;                        ///< the camera's thread
    std::unique_ptr<capture::CameraSource> m_camera; // the last member: its thread calls the rest
};

} // namespace vantro::window::devices
