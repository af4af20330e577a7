#pragma once

#include "pipewire/Connection.h"
#include "pipewire/VideoBuffer.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantro::pipewire {

/// connecting → paused ⇄ streaming; from each of them → failed
enum class StreamState { connecting, paused, streaming, failed };

/// Hears from a VideoStream, within the loop's turns. It must not destroy the stream.
class VideoStreamListener {
  public:
    virtual ~VideoStreamListener() = default;

    virtual void arrived(const VideoBuffer& buffer) = 0;
    /// Before the first buffer of that format.
    virtual void formatChanged(const VideoFormat&) {}
    /// `error` is the server's when it has failed.
    virtual void stateChanged(StreamState, const std::string& /*error*/) {}
};

/// What is wanted of a stream. A plain record.
struct StreamRequest {
    std::string name; ///< which other programs show
    std::string role; ///< media.role: "Camera", "Screen"
    /// The node to take from by its id, or else by its serial or name.
    std::optional<std::uint32_t> node;
    std::string target;
    std::vector<FormatOffer> offers; ///< the best first
    // Metadata: the time is always asked for.
    bool wantsCursor = false;
    bool wantsCrop = false;
    bool wantsDamage = false;
    bool wantsTransform = false;
};

/// Pictures from one node; never from another in its place. On the connection's thread.
class VideoStream {
  public:
    /// The listener outlives this. Whether it works out is told by its states.
    VideoStream(Connection& connection, StreamRequest request, VideoStreamListener& listener);
    ~VideoStream();
    VideoStream(const VideoStream&) = delete;
    VideoStream& operator=(const VideoStream&) = delete;

    /// While inactive nothing arrives, and the node may rest.
    void setActive(bool isActive);
    /// Offers anew, in the middle of the stream.
    void offer(const std::vector<FormatOffer>& offers);

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::pipewire
