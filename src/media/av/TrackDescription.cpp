#include "media/av/TrackDescription.h"

#include "media/av/MovieFile.h"
#include "media/av/Orientation.h"

#include <algorithm>

namespace vantro::media::av {
namespace {

model::Size displayedSize(const AVStream& stream) {
    const auto size = squarePixelSize(stream);
    const bool turned = orientation(stream).swapsSides();
    return {static_cast<double>(turned ? size.height : size.width),
            static_cast<double>(turned ? size.width : size.height)};
}

AssetTrack describe(const MovieFile& file, const AVStream& stream) {
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

std::vector<AssetTrack> describeTracks(const MovieReference& movie) {
    const MovieFile file(movie);
    std::vector<AssetTrack> tracks;
    for (const AVStream* stream : file.mediaStreams())
        tracks.push_back(describe(file, *stream));
    return tracks;
}

} // namespace vantro::media::av
