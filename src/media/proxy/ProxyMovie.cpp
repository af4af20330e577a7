#include "media/proxy/ProxyMovie.h"

#include <algorithm>
#include <utility>

namespace vantro::media::proxy {
namespace {

/// How many pieces lie before `t`, that of `t` not counted.
std::int64_t piecesBefore(MediaTime t) {
    const auto scale = std::int64_t{t.timescale} * ProxyMovie::pieceLength.value;
    return std::max<std::int64_t>(t.value, 0) / scale;
}

} // namespace

ProxyMovie::ProxyMovie(MediaTime duration, std::function<std::filesystem::path(int)> file)
    : m_duration(duration)
    , m_file(std::move(file))
    , m_pieces(static_cast<std::size_t>(piecesBefore(duration)) + 1) {}

int ProxyMovie::pieceAt(MediaTime t) const {
    return static_cast<int>(std::min<std::int64_t>(piecesBefore(t), pieceCount() - 1));
}

MediaTimeRange ProxyMovie::range(int piece) const {
    const MediaTime start{pieceLength.value * piece, pieceLength.timescale};
    return {start, pieceLength};
}

std::optional<int> ProxyMovie::nextToMake() const {
    const int from = m_wanted;
    for (int distance = 0; distance < pieceCount(); ++distance)
        for (const int piece : {from + distance, from - distance})
            if (piece >= 0 && piece < pieceCount() && at(piece) == State::missing)
                return piece;
    return {};
}

} // namespace vantro::media::proxy
