#pragma once

#include "media/proxy/ProxyCache.h"
#include "media/proxy/ProxyMovie.h"
#include "media/values/AssetTrack.h"
#include "media/values/MovieReference.h"

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace vantro::media::proxy {

/// Where proxies lie and which movies get one.
struct ProxySettings {
    std::filesystem::path folder; ///< empty: no movie gets one
    std::uintmax_t mostBytes = ProxyCache::usualBytes;
    /// Seconds that searching a movie for a picture may take, as its index lets expect of two
    /// cores, before it gets a proxy. What is left of a tenth of a second goes into drawing.
    double longestSearch = 0.09;
    bool yields = true; ///< work only while a processor is idle
};

/// Whether a video track is longer than some seconds, and its groups of pictures so long that one
/// of them takes more than `longestSearch` seconds to search. Throws MediaError.
bool needsProxy(const MovieReference& movie, const AssetTrack& track, double longestSearch);

/// Makes a movie's proxy, where searching the movie takes long, on a thread of its own. Pieces that
/// were made before are used again.
///
/// A movie that cannot be copied has no proxy, or not all of one; the log tells why.
class ProxyMaker {
  public:
    /// Is given the proxy on the maker's thread, while its pieces are still to come; not called
    /// where the movie gets none.
    using Ready = std::function<void(std::shared_ptr<ProxyMovie>)>;

    ProxyMaker(MovieReference movie, int trackID, ProxySettings settings, Ready ready);
    /// Stops and waits for the step under way, of a few milliseconds of work.
    ~ProxyMaker() = default;

    /// Gives up what is under way, within one picture or once the file has been opened. The pieces
    /// made so far stay. Any thread, and at once.
    void stop() { m_thread.request_stop(); }
    /// Nothing is under way any more.
    bool hasEnded() const { return m_hasEnded; }

  private:
    void run(const std::stop_token& stop);
    void make(const std::stop_token& stop) const;

    const MovieReference m_movie;
    const int m_trackID;
    const ProxySettings m_settings;
    const Ready m_ready;
    std::atomic<bool> m_hasEnded = false;
    std::jthread m_thread; // goes first
};

} // namespace vantro::media::proxy
