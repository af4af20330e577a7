#pragma once

#include "base/SerialQueue.h"
#include "media/FrameSource.h"
#include "media/av/pictures/PictureScaler.h"
#include "media/proxy/ProxyMovie.h"

#include <functional>
#include <list>
#include <memory>
#include <stop_token>

namespace vantro::media::proxy {

/// Finds a proxy's pictures and makes them as large as the movie's, on a thread of its own, one
/// after the other. Any thread may ask.
///
/// Overflow: requests wait in a queue without a bound; whoever asks has few of them under way.
/// Destruction waits for those; stop them before.
class ProxyReader {
  public:
    /// The picture that the movie shows at the time asked for; its own time may be the start of a
    /// piece, where it is shown from earlier on. Nothing when the proxy has none or it was given
    /// up.
    using Done = std::function<void(std::optional<VideoFrame>)>;

    ProxyReader(std::shared_ptr<ProxyMovie> proxy, int width, int height);

    /// Whether there is a picture of that time by now; if not, it becomes the place wanted most.
    bool has(MediaTime t) const;
    /// `done` is called on the reader's thread.
    void request(MediaTime t, std::stop_token givenUp, Done done);

  private:
    struct OpenPiece {
        int piece;
        FrameSource source;
    };

    std::optional<VideoFrame> find(MediaTime t, const std::stop_token& givenUp);
    FrameSource& open(int piece);

    const std::shared_ptr<ProxyMovie> m_proxy;
    // The queue's thread only.
    av::PictureScaler m_scaler;
    std::list<OpenPiece> m_open; ///< a few, the last one used first
    base::SerialQueue m_queue;   // goes first
};

} // namespace vantro::media::proxy
