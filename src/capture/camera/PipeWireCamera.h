#pragma once

#include "base/FileDescriptor.h"
#include "capture/CameraDevices.h"
#include "capture/camera/CameraFeed.h"
#include "pipewire/Registry.h"
#include "pipewire/VideoStream.h"

#include <expected>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>

namespace vantro::capture::camera {

/// The way to a server, asked for anew for each connection; an invalid one is the user's own.
using Remote = std::function<std::expected<base::FileDescriptor, CameraRefusal>()>;

/// The cameras among a server's nodes, the default one first.
std::vector<CameraDevice> camerasOf(const std::map<std::uint32_t, pipewire::Node>& nodes);

/// A camera behind a PipeWire server, on a thread of its own. The camera, its formats and the
/// server may go and come back; another camera never takes its place.
///
///            there is the camera        its first format
///   absent ---------------------> opening ------------> delivering
///     ^                             |                       |
///     +---- camera, stream or server goes, or is silent ----+
/// Where it is absent it tries again every second.
class PipeWireCamera final : public CameraSource, private pipewire::VideoStreamListener {
  public:
    /// As CameraDevices::open. `remote` is called on the camera's thread, and waited for at most
    /// `longestAnswer`.
    static std::expected<std::unique_ptr<CameraSource>, CameraRefusal>
    open(const std::string& device, Remote remote, base::HostDuration longestAnswer);
    ~PipeWireCamera() override;

    bool awaitPicture(base::HostTime until) override { return m_feed.awaitPicture(until); }
    void start(CameraOutput& output) override { m_feed.start(output); }
    void stop() override;

  private:
    enum class State { absent, opening, delivering };
    using Opening = std::promise<std::optional<CameraRefusal>>;

    PipeWireCamera(std::string device, Remote remote);
    void run(const std::stop_token& stop);
    void move(State to);
    void update(pipewire::Loop& loop, base::HostTime now);
    std::expected<void, CameraRefusal> attempt(pipewire::Loop& loop);
    std::expected<void, CameraRefusal> connect(pipewire::Loop& loop);
    void lose(const CameraRefusal& refusal);
    void answer(std::optional<CameraRefusal> refusal);
    void arrived(const pipewire::VideoBuffer& buffer) override;
    void formatChanged(const pipewire::VideoFormat& format) override;
    void stateChanged(pipewire::StreamState state, const std::string& error) override;

    CameraFeed m_feed;
    // The thread's, from here on:
    std::string m_device; ///< empty until it is known which is the default one
    const Remote m_remote;
    State m_state = State::absent;
    base::HostTime m_changed; ///< when it got into its state
    base::HostTime m_retryAt;
    std::optional<Opening> m_opening; ///< until it is known how it went
    std::optional<std::string> m_streamError;
    std::uint32_t m_node = 0;
    // Later ones hang on earlier ones.
    std::unique_ptr<pipewire::Connection> m_connection;
    std::unique_ptr<pipewire::Registry> m_registry;
    std::unique_ptr<pipewire::VideoStream> m_stream;
    std::jthread m_thread; // the last member: it uses the others
};

} // namespace vantro::capture::camera
