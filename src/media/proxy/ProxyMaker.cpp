#include "media/proxy/ProxyMaker.h"

#include "base/Log.h"
#include "base/SerialQueue.h"
#include "base/ThreadPriority.h"
#include "media/Asset.h"
#include "media/av/decode/PictureGroups.h"
#include "media/proxy/ProxyPiece.h"
#include "media/values/MediaError.h"

#include <algorithm>

namespace vantro::media::proxy {
namespace {

/// What two cores decode in a second of one search, pixels: 120 pictures of 1080p took 0.43 s, 30
/// took 0.06 s with all that comes after.
constexpr double searchedPixels = 700e6;
/// Seconds. Groups that are no longer are searched soon enough; recordings' are half a second.
constexpr double shortGroup = 0.75;
/// Seconds. Shorter movies are searched through before a proxy is made.
constexpr double shortMovie = 10;

AssetTrack trackOf(const Asset& asset, int trackID) {
    const auto track = std::ranges::find(asset.tracks(), trackID, &AssetTrack::id);
    if (track == asset.tracks().end())
        throw MediaError("No video track found");
    return *track;
}

void makePieces(ProxyMovie& proxy, const ProxyCache& cache, const std::string& key,
                FrameSource& source, const std::stop_token& stop) {
    for (auto piece = proxy.nextToMake(); piece && !stop.stop_requested();
         piece = proxy.nextToMake()) {
        if (!cache.makeRoom(key))
            return base::logInfo("No room for more of a movie's small copy");
        try {
            if (writePiece(source, proxy.range(*piece), proxy.file(*piece), stop))
                proxy.add(*piece);
        } catch (const MediaError& error) {
            base::logInfo("A movie has no small copy of a place: {}", error.what());
            proxy.giveUp(*piece);
        }
    }
}

} // namespace

bool needsProxy(const MovieReference& movie, const AssetTrack& track, double longestSearch) {
    if (track.timeRange.end().seconds() < shortMovie)
        return false;
    const auto group = av::longestGroup(movie, track.id);
    const double pixels = track.naturalSize.width * track.naturalSize.height;
    return group && group->span.seconds() > shortGroup &&
           static_cast<double>(group->pictures) * pixels / searchedPixels > longestSearch;
}

ProxyMaker::ProxyMaker(MovieReference movie, int trackID, ProxySettings settings, Ready ready)
    : m_movie(std::move(movie))
    , m_trackID(trackID)
    , m_settings(std::move(settings))
    , m_ready(std::move(ready))
    , m_thread([this](const std::stop_token& stop) { run(stop); }) {}

void ProxyMaker::run(const std::stop_token& stop) {
    base::setThreadName("com.vantro.proxy");
    try {
        if (!m_settings.folder.empty())
            make(stop);
    } catch (const std::exception& error) {
        base::logInfo("No small copy of {}: {}", m_movie.path.string(), error.what());
    }
    m_hasEnded = true;
}

void ProxyMaker::make(const std::stop_token& stop) const {
    const auto asset = Asset::open(m_movie.path, m_movie.zero);
    const auto track = trackOf(asset, m_trackID);
    if (stop.stop_requested() || !needsProxy(m_movie, track, m_settings.longestSearch))
        return;
    const ProxyCache cache(m_settings.folder, m_settings.mostBytes);
    const auto key = proxyKey(m_movie.path);
    const auto proxy = std::make_shared<ProxyMovie>(
        track.timeRange.end(), [cache, key](int piece) { return cache.file(key, piece); });
    for (int piece = 0; piece < proxy->pieceCount(); ++piece)
        if (cache.use(key, piece))
            proxy->add(piece);
    m_ready(proxy);
    if (stop.stop_requested())
        return;
    // Not before the movie's index has been read: while the processors are busy that would take a
    // minute, and so would stopping it.
    FrameSource source(asset, m_trackID, [this] {
        if (m_settings.yields)
            base::makeThreadIdle();
    });
    source.setKeptBytes(0);
    makePieces(*proxy, cache, key, source, stop);
}

} // namespace vantro::media::proxy
