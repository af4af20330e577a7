#include "capture/camera/DesktopCameras.h"

#include "capture/camera/CameraPortal.h"
#include "capture/camera/PipeWireCamera.h"
#include "capture/camera/V4l2Camera.h"

#include <chrono>
#include <filesystem>

namespace vantro::capture::camera {
namespace {

using namespace std::chrono_literals;

// From the connection to the first format, of a server that is busy.
constexpr auto longestOpening = 5s;
constexpr auto longestAnswer = 2s;
// A user who is asked may have to find the dialog first; one who is away must not keep the screen
// from being recorded.
constexpr auto longestPermission = 60s;

std::expected<base::FileDescriptor, CameraRefusal> ownServer() {
    return base::FileDescriptor();
}

std::expected<std::vector<CameraDevice>, std::string> listPipeWire(const Remote& remote) {
    auto way = remote();
    if (!way)
        return std::unexpected(way.error().reason);
    pipewire::Loop loop;
    const auto connection = pipewire::Connection::open(loop, *std::move(way));
    if (!connection)
        return std::unexpected(connection.error().reason);
    const pipewire::Registry registry(**connection);
    if (!(*connection)->awaitAnswers(longestAnswer)) {
        const auto& loss = (*connection)->loss();
        return std::unexpected(loss ? loss->reason : "PipeWire does not answer");
    }
    return camerasOf(registry.nodes());
}

bool hasServer() {
    pipewire::Loop loop;
    return pipewire::Connection::open(loop).has_value();
}

class DesktopCameras final : public CameraDevices {
  public:
    std::expected<std::vector<CameraDevice>, std::string> list() override {
        return hasServer() ? listPipeWire(ownServer) : systemCameras();
    }

    std::expected<std::unique_ptr<CameraSource>, CameraRefusal>
    open(const std::string& device) override {
        return hasServer() ? PipeWireCamera::open(device, ownServer, longestOpening)
                           : V4l2Camera::open(device);
    }
};

class PortalCameras final : public CameraDevices {
  public:
    explicit PortalCameras(base::HostDuration longest) : m_longest(longest) {}

    std::expected<std::vector<CameraDevice>, std::string> list() override {
        if (!portalHasCamera())
            return std::vector<CameraDevice>{};
        return std::vector<CameraDevice>{{.name = {}, .description = "Camera", .isDefault = true}};
    }

    std::expected<std::unique_ptr<CameraSource>, CameraRefusal>
    open(const std::string& device) override {
        return PipeWireCamera::open(
            device, [longest = m_longest] { return askForCameras(longest); },
            m_longest + longestOpening);
    }

  private:
    base::HostDuration m_longest;
};

} // namespace

std::unique_ptr<CameraDevices> makePortalCameras(base::HostDuration longest) {
    return std::make_unique<PortalCameras>(longest);
}

bool isInSandbox() {
    return std::filesystem::exists("/.flatpak-info");
}

std::unique_ptr<CameraDevices> makeDesktopCameras() {
    if (isInSandbox())
        return makePortalCameras(longestPermission);
    return std::make_unique<DesktopCameras>();
}

} // namespace vantro::capture::camera
