#include "capture/camera/CameraPortal.h"

#include "base/Log.h"
#include "bus/EventLoop.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <map>
#include <memory>
#include <string>

#include <fcntl.h>
#include <fmt/format.h>
#include <sdbus-c++/sdbus-c++.h>

namespace vantro::capture::camera {
namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* cameraInterface = "org.freedesktop.portal.Camera";
constexpr const char* requestInterface = "org.freedesktop.portal.Request";
constexpr const char* requestToken = "vantro_camera";

// For the portal itself, which may have to be started first.
constexpr std::chrono::seconds longestReply{15};

using Properties = std::map<std::string, sdbus::Variant>;

CameraRefusal unavailable(const sdbus::Error& error) {
    return {.reason = "the desktop's camera portal fails: " +
                      (error.getMessage().empty() ? error.getName() : error.getMessage())};
}

/// The answer to one question; its members go in reverse, so nothing is called when they have gone.
class Question {
  public:
    Question()
        : m_connection(sdbus::createSessionBusConnection())
        , m_portal(sdbus::createProxy(*m_connection, portalName, portalPath))
        , m_request(sdbus::createProxy(*m_connection, portalName, requestPath())) {
        m_request->uponSignal("Response")
            .onInterface(requestInterface)
            .call([this](std::uint32_t code, const Properties&) {
                if (!m_isAnswered.exchange(true))
                    m_answer.set_value(code);
            });
        m_request->finishRegistration();
        m_loop.emplace(*m_connection, "com.vantro.cameraportal");
    }

    std::expected<base::FileDescriptor, CameraRefusal> ask(base::HostDuration longestAnswer) {
        sdbus::ObjectPath request;
        m_portal->callMethod("AccessCamera")
            .onInterface(cameraInterface)
            .withTimeout(longestReply)
            .withArguments(Properties{{"handle_token", sdbus::Variant(std::string(requestToken))}})
            .storeResultsTo(request);
        auto answer = m_answer.get_future();
        if (answer.wait_for(longestAnswer) != std::future_status::ready) {
            m_request->callMethod("Close").onInterface(requestInterface).dontExpectReply();
            return std::unexpected(CameraRefusal{.kind = CameraRefusal::Kind::denied,
                                                 .reason = "nobody has allowed it in time"});
        }
        if (answer.get() != 0)
            return std::unexpected(CameraRefusal{.kind = CameraRefusal::Kind::denied,
                                                 .reason = "access to it was denied"});
        sdbus::UnixFd remote;
        m_portal->callMethod("OpenPipeWireRemote")
            .onInterface(cameraInterface)
            .withTimeout(longestReply)
            .withArguments(Properties())
            .storeResultsTo(remote);
        // A program that we start must not keep the cameras.
        return base::FileDescriptor(::fcntl(remote.get(), F_DUPFD_CLOEXEC, 0));
    }

  private:
    std::string requestPath() const {
        auto sender = m_connection->getUniqueName().substr(1);
        std::ranges::replace(sender, '.', '_');
        return fmt::format("{}/request/{}/{}", portalPath, sender, requestToken);
    }

    std::promise<std::uint32_t> m_answer;
    std::atomic<bool> m_isAnswered = false;
    std::unique_ptr<sdbus::IConnection> m_connection;
    std::unique_ptr<sdbus::IProxy> m_portal;
    std::unique_ptr<sdbus::IProxy> m_request;
    std::optional<bus::EventLoop> m_loop; // goes first
};

} // namespace

std::expected<base::FileDescriptor, CameraRefusal> askForCameras(base::HostDuration longestAnswer) {
    try {
        return Question().ask(longestAnswer);
    } catch (const sdbus::Error& error) {
        return std::unexpected(unavailable(error));
    }
}

bool portalHasCamera() {
    try {
        const auto connection = sdbus::createSessionBusConnection();
        const auto portal = sdbus::createProxy(*connection, portalName, portalPath);
        return portal->getProperty("IsCameraPresent").onInterface(cameraInterface).get<bool>();
    } catch (const sdbus::Error& error) {
        base::logInfo("No camera portal: {}", error.getMessage());
        return false;
    }
}

} // namespace vantro::capture::camera
