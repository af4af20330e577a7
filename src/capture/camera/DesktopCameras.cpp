#include "capture/camera/DesktopCameras.h"

#include "capture/camera/PipeWireCamera.h"

#include <chrono>
#include <filesystem>

namespace vantro::capture::camera {
namespace {

using namespace std::chrono_literals;

// From the connection to the first format, of a server that is busy.
constexpr auto longestOpening = 5s;
constexpr auto longestAnswer = 2s;

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
    if (!(*connection)->awaitAnswers(longestAnswer))
        return std::unexpected((*connection)->loss() ? (*connection)->loss()->reason
                                                     : "PipeWire does not answer");
    return camerasOf(registry.nodes());
}

class DesktopCameras final : public CameraDevices {
  public:
    std::expected<std::vector<CameraDevice>, std::string> list() override {
        return listPipeWire(ownServer);
    }

    std::expected<std::unique_ptr<CameraSource>, CameraRefusal>
    open(const std::string& device) override {
        return PipeWireCamera::open(device, ownServer, longestOpening);
    }
};

} // namespace

bool isInSandbox() {
    return std::filesystem::exists("/.flatpak-info");
}

std::unique_ptr<CameraDevices> makeDesktopCameras() {
    return std::make_unique<DesktopCameras>();
}

} // namespace vantro::capture::camera
