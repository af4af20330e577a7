#include "media/Asset.h"

#include "media/av/MovieFile.h"

#include <algorithm>
#include <iterator>

namespace vantro::media {
namespace {

model::Size displayedSize(const AVStream& stream) {
    const auto size = av::squarePixelSize(stream);
    const bool turned = av::orientation(stream).swapsSides();
    return {static_cast<double>(turned ? size.height : size.width),
            static_cast<double>(turned ? size.width : size.height)};
}

AssetTrack describe(const av::MovieFile& file, const AVStream& stream) {
    AssetTrack track;
    track.id = stream.index;
    track.codec = avcodec_get_name(stream.codecpar->codec_id);
    const MediaTime start = stream.start_time == AV_NOPTS_VALUE
                                ? MediaTime{}
                                : file.clock(stream).time(stream.start_time);
    track.timeRange = {start, std::max(file.endTime(stream) - start, MediaTime{})};
    if (stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO) {
        track.type = MediaType::audio;
        track.sampleRate = stream.codecpar->sample_rate;
        track.channelCount = stream.codecpar->ch_layout.nb_channels;
    } else {
        track.naturalSize = displayedSize(stream);
        if (stream.avg_frame_rate.num > 0 && stream.avg_frame_rate.den > 0)
            track.nominalFrameRate = av_q2d(stream.avg_frame_rate);
    }
    return track;
}

} // namespace

Asset Asset::open(const std::filesystem::path& path) {
    const av::MovieFile file(path);
    Asset asset;
    asset.m_path = path;
    for (const AVStream* stream : file.mediaStreams()) {
        asset.m_tracks.push_back(describe(file, *stream));
        asset.m_duration = std::max(asset.m_duration, asset.m_tracks.back().timeRange.end());
    }
    return asset;
}

std::vector<AssetTrack> Asset::tracks(MediaType type) const {
    std::vector<AssetTrack> matching;
    std::ranges::copy_if(m_tracks, std::back_inserter(matching),
                         [type](const AssetTrack& track) { return track.type == type; });
    return matching;
}

} // namespace vantro::media
