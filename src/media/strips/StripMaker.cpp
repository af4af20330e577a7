#include "media/strips/StripMaker.h"

#include "base/Log.h"
#include "base/SerialQueue.h"
#include "base/ThreadPriority.h"
#include "media/strips/PeakReader.h"
#include "media/strips/ThumbnailReader.h"

#include <optional>
#include <utility>

namespace vantro::media::strips {
namespace {

StripFormat formatOf(const Asset& asset) {
    StripFormat format{.seconds = asset.duration().seconds(),
                       .hasSound = !asset.tracks(MediaType::audio).empty()};
    if (const auto video = asset.tracks(MediaType::video); !video.empty()) {
        const auto size = ThumbnailSize::of(video.front().naturalSize);
        format.thumbnailWidth = size.width;
        format.thumbnailHeight = size.height;
    }
    return format;
}

} // namespace

StripMaker::StripMaker(MovieReference movie, Tell tell, bool yields)
    : m_movie(std::move(movie))
    , m_tell(std::move(tell))
    , m_yields(yields)
    , m_thread([this](const std::stop_token& stop) { run(stop); }) {}

StripMaker::~StripMaker() {
    stop();
    m_thread.join();
    swapOrder(nullptr);
}

std::unique_ptr<StripMaker::Order> StripMaker::swapOrder(std::unique_ptr<Order> order) {
    return std::unique_ptr<Order>(m_order.exchange(order.release()));
}

void StripMaker::look(StripView view) {
    m_search.request_stop();
    m_search = {};
    swapOrder(std::make_unique<Order>(std::move(view), m_search.get_token()));
    m_wake.release();
}

void StripMaker::stop() {
    m_thread.request_stop();
    m_search.request_stop();
    m_wake.release();
}

void StripMaker::run(const std::stop_token& stop) {
    base::setThreadName("com.vantro.strips");
    try {
        make(stop);
    } catch (const std::exception& error) {
        base::logInfo("Nothing to show of {}: {}", m_movie.path.string(), error.what());
    }
    m_hasEnded = true;
}

/// A picture and a piece of the sound in turn. The index of a long movie is read before the thread
/// is idle: while the processors are busy that would take a minute, and so would stopping it.
void StripMaker::make(const std::stop_token& stop) {
    const auto asset = Asset::open(m_movie.path, m_movie.zero);
    m_tell(formatOf(asset));
    PeakReader sound(asset);
    if (!stop.stop_requested())
        sound.prepare();
    const auto becomeIdle = [this] {
        if (m_yields)
            base::makeThreadIdle();
    };
    std::optional<ThumbnailReader> pictures;
    if (const auto video = asset.tracks(MediaType::video); !video.empty() && !stop.stop_requested())
        pictures.emplace(asset, video.front(), becomeIdle);
    else
        becomeIdle();
    Order order;
    std::size_t next = 0;
    while (!stop.stop_requested()) {
        if (const auto newest = swapOrder(nullptr)) {
            order = *newest;
            next = 0;
        }
        const bool isWanted = pictures && next < order.view.ticks.size();
        if (isWanted) {
            const auto tick = order.view.ticks[next++];
            if (auto made = pictures->read(tick, order.view.tolerance, order.givenUp))
                m_tell(std::move(*made));
        }
        if (stop.stop_requested())
            return;
        if (auto piece = sound.next(order.view.from, stop))
            m_tell(std::move(*piece));
        if (!isWanted && sound.isDone())
            m_wake.acquire();
    }
}

} // namespace vantro::media::strips
