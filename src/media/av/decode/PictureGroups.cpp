#include "media/av/decode/PictureGroups.h"

#include "media/av/MovieFile.h"
#include "media/av/decode/DecoderSetup.h"

#include <algorithm>
#include <cmath>

namespace vantro::media::av {
namespace {

bool isKeyframe(const AVIndexEntry& entry) {
    return (entry.flags & AVINDEX_KEYFRAME) != 0;
}

/// From an index of all pictures.
PictureGroup longestListed(AVStream& stream, const StreamClock& clock, int count) {
    PictureGroup longest;
    PictureGroup group;
    std::int64_t start = 0;
    for (int i = 0; i < count; ++i) {
        const AVIndexEntry& entry = *avformat_index_get_entry(&stream, i);
        if (isKeyframe(entry)) {
            group = {};
            start = entry.timestamp;
        }
        ++group.pictures;
        group.span = clock.span(entry.timestamp - start);
        if (group.pictures > longest.pictures)
            longest = group;
    }
    return longest;
}

/// From an index of keyframes only.
PictureGroup longestBetween(AVStream& stream, const StreamClock& clock, int count, MediaTime end) {
    MediaTime longest;
    for (int i = 0; i < count; ++i) {
        const auto from = clock.time(avformat_index_get_entry(&stream, i)->timestamp);
        const AVIndexEntry* next = avformat_index_get_entry(&stream, i + 1);
        longest = std::max(longest, (next != nullptr ? clock.time(next->timestamp) : end) - from);
    }
    const double rate = stream.avg_frame_rate.den > 0 ? av_q2d(stream.avg_frame_rate) : 0;
    return {std::max<std::int64_t>(std::llround(longest.seconds() * rate), 1), longest};
}

} // namespace

std::optional<PictureGroup> longestGroup(const MovieReference& movie, int streamIndex) {
    const MovieFile file(movie);
    AVStream& stream = selectStream(file, streamIndex, AVMEDIA_TYPE_VIDEO);
    // Some formats read their index when somebody seeks for the first time.
    avformat_seek_file(&file.context(), stream.index, INT64_MIN, INT64_MIN, INT64_MAX, 0);
    const int count = avformat_index_get_entries_count(&stream);
    const auto clock = file.clock(stream);
    bool listsAll = false;
    for (int i = 0; i < count && !listsAll; ++i)
        listsAll = !isKeyframe(*avformat_index_get_entry(&stream, i));
    if (count == 0)
        return {};
    return listsAll ? longestListed(stream, clock, count)
                    : longestBetween(stream, clock, count, file.endTime(stream));
}

} // namespace vantro::media::av
