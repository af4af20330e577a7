#pragma once

#include "capture/CameraDevices.h"
#include "capture/camera/CameraFeed.h"
#include "capture/camera/V4l2Device.h"

#include <expected>
#include <memory>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace vantro::capture::camera {

/// The system's cameras, named by their files, the default one first.
std::vector<CameraDevice> systemCameras();

/// One of the system's cameras, for desktops without PipeWire, on a thread of its own. A camera
/// that goes is taken up again when there is one by its file and description.
class V4l2Camera final : public CameraSource {
  public:
    /// As CameraDevices::open.
    static std::expected<std::unique_ptr<CameraSource>, CameraRefusal>
    open(const std::string& device);
    ~V4l2Camera() override;

    bool awaitPicture(base::HostTime until) override { return m_feed.awaitPicture(until); }
    void start(CameraOutput& output) override { m_feed.start(output); }
    void stop() override;

  private:
    V4l2Camera(CameraDevice camera, std::unique_ptr<V4l2Device> device);
    void run(const std::stop_token& stop);
    void reopen();
    void lose(base::HostTime now);

    const CameraDevice m_camera;
    CameraFeed m_feed;
    // The thread's:
    std::unique_ptr<V4l2Device> m_device; ///< while it streams
    base::HostTime m_retryAt;
    std::jthread m_thread; // the last member: it uses the others
};

} // namespace vantro::capture::camera
