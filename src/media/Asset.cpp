#include "media/Asset.h"

#include "media/av/decode/TrackDescription.h"

#include <algorithm>
#include <iterator>

namespace vantro::media {

Asset Asset::open(const std::filesystem::path& path, TimeZero zero) {
    Asset asset;
    asset.m_movie = {path, zero};
    asset.m_tracks = av::describeTracks(asset.m_movie);
    for (const auto& track : asset.m_tracks)
        asset.m_duration = std::max(asset.m_duration, track.timeRange.end());
    return asset;
}

std::vector<AssetTrack> Asset::tracks(MediaType type) const {
    std::vector<AssetTrack> matching;
    std::ranges::copy_if(m_tracks, std::back_inserter(matching),
                         [type](const AssetTrack& track) { return track.type == type; });
    return matching;
}

} // namespace vantro::media
