#include "media/av/decode/TrackDescription.h"

#include "media/av/MovieFile.h"
#include "media/av/Orientation.h"
#include "media/av/decode/DecoderSetup.h"

#include <algorithm>
#include <optional>

extern "C" {
#include <libavutil/mathematics.h>
}

namespace vantro::media::av {
namespace {

model::Size displayedSize(const AVStream& stream) {
    const auto size = squarePixelSize(stream);
    const bool turned = orientation(stream).swapsSides();
    return {static_cast<double>(turned ? size.height : size.width),
            static_cast<double>(turned ? size.width : size.height)};
}

/// More pictures than a codec reorders, so that the one shown last is among the last so many that
/// are stored.
constexpr int reorderedPictures = 40;

/// Where the file's own header says that it ends, in the stream's ticks.
std::int64_t headerEnd(const MovieFile& file, const AVStream& stream) {
    const auto duration = file.context().duration;
    // Headers count in milliseconds.
    return duration == AV_NOPTS_VALUE ? INT64_MAX
                                      : av_rescale_q_rnd(duration + 1000, {1, AV_TIME_BASE},
                                                         stream.time_base, AV_ROUND_UP);
}

/// Where the stream's last packets say that the last picture ends, in ticks; nothing where the file
/// has no index that leads there. Reads a few packets.
std::optional<std::int64_t> lastPictureEnd(const MovieFile& file, AVStream& stream) {
    const int count = avformat_index_get_entries_count(&stream);
    if (stream.nb_frames <= 0 || count == 0)
        return {};
    AVFormatContext* context = &file.context();
    selectStream(file, stream.index, AVMEDIA_TYPE_VIDEO);
    const auto from =
        avformat_index_get_entry(&stream, std::max(0, count - reorderedPictures))->timestamp;
    if (avformat_seek_file(context, stream.index, INT64_MIN, from, from, AVSEEK_FLAG_ANY) < 0)
        return {};
    const auto packet = makePacket();
    std::int64_t shown = INT64_MIN;
    std::int64_t duration = 0;
    for (; av_read_frame(context, packet.get()) >= 0; av_packet_unref(packet.get())) {
        const bool counts = packet->stream_index == stream.index &&
                            (packet->flags & AV_PKT_FLAG_DISCARD) == 0 &&
                            packet->pts != AV_NOPTS_VALUE && packet->pts > shown;
        shown = counts ? packet->pts : shown;
        duration = counts ? packet->duration : duration;
    }
    if (shown == INT64_MIN)
        return {};
    // Durations are those of decoding, which may be longer than what is shown.
    return std::max(shown, std::min(shown + duration, headerEnd(file, stream)));
}

/// What the stream's entry says, and never less than its packets do: the entries of some
/// variable-rate movies lose the last pictures.
MediaTime endOf(const MovieFile& file, AVStream& stream) {
    const MediaTime told = file.endTime(stream);
    if (stream.codecpar->codec_type != AVMEDIA_TYPE_VIDEO)
        return told;
    const auto read = lastPictureEnd(file, stream);
    return read ? std::max(told, file.clock(stream).time(*read)) : told;
}

AssetTrack describe(const MovieFile& file, AVStream& stream) {
    AssetTrack track;
    track.id = stream.index;
    track.codec = avcodec_get_name(stream.codecpar->codec_id);
    const MediaTime start = stream.start_time == AV_NOPTS_VALUE
                                ? MediaTime{}
                                : file.clock(stream).time(stream.start_time);
    track.timeRange = {start, std::max(endOf(file, stream) - start, MediaTime{})};
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
    for (AVStream* stream : file.mediaStreams())
        tracks.push_back(describe(file, *stream));
    return tracks;
}

} // namespace vantro::media::av
