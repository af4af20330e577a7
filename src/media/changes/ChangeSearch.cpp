#include "media/changes/ChangeSearch.h"

#include "base/Log.h"
#include "base/SerialQueue.h"
#include "media/values/MediaError.h"

#include <utility>

namespace vantro::media::changes {

ChangeSearch::ChangeSearch(MovieReference movie, std::vector<Watch> watches, Tell tell)
    : m_movie(std::move(movie))
    , m_watches(std::move(watches))
    , m_tell(std::move(tell))
    , m_thread([this](const std::stop_token& stop) { run(stop); }) {}

void ChangeSearch::run(const std::stop_token& stop) {
    base::setThreadName("com.vantro.changes");
    try {
        search(stop);
    } catch (const std::exception& error) {
        base::logInfo("No changes known of {}: {}", m_movie.path.string(), error.what());
        m_tell(SearchFailed{});
    }
    m_hasEnded = true;
}

void ChangeSearch::search(const std::stop_token& stop) {
    const auto asset = Asset::open(m_movie.path, m_movie.zero);
    const auto video = asset.tracks(MediaType::video);
    if (video.empty())
        throw MediaError("it has no pictures");
    if (stop.stop_requested())
        return;
    ChangeReader reader(asset, video.front());
    FoundChanges changes;
    int told = 0;
    for (const auto& watch : m_watches) {
        std::optional<double> change;
        try {
            const auto found = reader.firstChange(watch, stop);
            if (stop.stop_requested())
                return;
            change = found.value_or(std::nullopt);
        } catch (const MediaError& error) {
            base::logInfo("No change known at {:.1f} s: {}", watch.from, error.what());
        }
        changes.push_back(change);
        const auto percent = static_cast<int>(changes.size() * 100 / m_watches.size());
        if (std::exchange(told, percent) != percent)
            m_tell(SearchProgress{percent});
    }
    m_tell(std::move(changes));
}

} // namespace vantro::media::changes
