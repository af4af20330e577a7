#include "media/av/decode/VideoDecoder.h"

#include "media/av/Libraries.h"
#include "media/av/decode/DecoderSetup.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <thread>
#include <utility>

#include <fmt/format.h>

namespace vantro::media::av {
namespace {

// More threads decode no 60 Hz movie better, and each holds a frame.
constexpr unsigned mostThreads = 8;

/// Errors after which the picture shows garbage, in contrast to references that an open group of
/// pictures leaves out after a jump.
constexpr int visibleDamage = FF_DECODE_ERROR_INVALID_BITSTREAM |
                              FF_DECODE_ERROR_CONCEALMENT_ACTIVE | FF_DECODE_ERROR_DECODE_SLICES;

unsigned decodingThreads() {
    return std::clamp(std::thread::hardware_concurrency(), 1U, mostThreads);
}

CodecHandle openedDecoder(const MovieFile& file, const AVStream& stream,
                          const std::function<void()>& opened) {
    if (opened)
        opened();
    return openDecoder(file, stream, decodingThreads());
}

} // namespace

std::size_t bytesOf(const AVFrame& frame) {
    std::size_t bytes = 0;
    for (const AVBufferRef* buffer : frame.buf)
        bytes += buffer != nullptr ? buffer->size : 0;
    return bytes;
}

VideoDecoder::VideoDecoder(const MovieReference& movie, int streamIndex,
                           const std::function<void()>& opened)
    : m_file(movie)
    , m_stream(&selectStream(m_file, streamIndex, AVMEDIA_TYPE_VIDEO))
    , m_clock(m_file.clock(*m_stream))
    , m_codec(openedDecoder(m_file, *m_stream, opened))
    , m_packet(makePacket())
    , m_sought(m_clock.zero()) {}

MediaTime VideoDecoder::rounding() const {
    const bool countsMilliseconds = m_stream->time_base.num == 1 && m_stream->time_base.den == 1000;
    return countsMilliseconds ? MediaTime{1, 2000} : MediaTime{};
}

std::optional<DecodedFrame> VideoDecoder::next() {
    return m_peeked ? std::exchange(m_peeked, {}) : decodeNext();
}

std::optional<DecodedFrame> VideoDecoder::decodeNext() {
    auto frame = makeFrame();
    for (;;) {
        const int result = avcodec_receive_frame(m_codec.get(), frame.get());
        if (result == 0) {
            if (auto accepted = accept(std::move(frame)))
                return accepted;
            frame = makeFrame();
        } else if (result == AVERROR(EAGAIN)) {
            if (m_stopsAtKeyframe && m_start)
                endInput({});
            else
                feed();
        } else if (result == AVERROR_EOF) {
            if (!m_inputFault.empty())
                breakOff(m_inputEnd.value_or(m_sought), m_inputFault);
            if (!m_lastTicks && !m_decodeFault.empty())
                breakOff(m_sought, m_decodeFault);
            return {};
        } else if (m_lastTicks) {
            breakOff(*m_lastTicks, errorText(result));
        } else {
            m_decodeFault = errorText(result);
        }
    }
}

/// Nothing for pictures that are not to be shown.
std::optional<DecodedFrame> VideoDecoder::accept(FrameHandle frame) {
    std::int64_t ticks = frame->best_effort_timestamp;
    if (ticks == AV_NOPTS_VALUE)
        ticks = m_lastTicks ? *m_lastTicks + std::max<std::int64_t>(frame->pkt_duration, 1)
                            : m_clock.zero();
    const bool isIncomplete = m_hasJumped && m_start && ticks < m_start->shown;
    if (isIncomplete || (m_lastTicks && ticks <= *m_lastTicks))
        return {};
    if (m_lastTicks && (frame->decode_error_flags & visibleDamage) != 0)
        breakOff(*m_lastTicks, errorText(AVERROR_INVALIDDATA));
    m_lastTicks = ticks;
    return DecodedFrame{std::move(frame), m_clock.time(ticks)};
}

/// Gives the codec one more packet, or tells it that there are no more.
void VideoDecoder::feed() {
    av_packet_unref(m_packet.get());
    const int result = av_read_frame(&m_file.context(), m_packet.get());
    if (result == AVERROR_EOF)
        return endInput(endsEarly() ? errorText(AVERROR_INVALIDDATA) : std::string());
    if (result < 0)
        return endInput(errorText(result));
    const bool isKeyframe = (m_packet->flags & AV_PKT_FLAG_KEY) != 0;
    if (m_packet->stream_index != m_stream->index || (m_hasJumped && !m_start && !isKeyframe))
        return;
    if ((m_packet->flags & AV_PKT_FLAG_CORRUPT) != 0)
        return endInput(errorText(AVERROR_INVALIDDATA));
    noteProgress(*m_packet);
    m_codec->skip_frame =
        m_skipsUnreferenced || leavesOut(*m_packet) ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
    const int sent = avcodec_send_packet(m_codec.get(), m_packet.get());
    if (sent >= 0)
        return;
    // What cannot be decoded before the first picture is passed over, as players do: a stream cut
    // out of a broadcast starts in the middle.
    if (m_lastTicks)
        breakOff(*m_lastTicks, errorText(sent));
    m_decodeFault = errorText(sent);
}

void VideoDecoder::noteProgress(const AVPacket& packet) {
    const auto shown = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
    if (shown == AV_NOPTS_VALUE)
        return;
    const auto end = std::max(shown, packet.dts) + std::max<std::int64_t>(packet.duration, 0);
    m_inputEnd = std::max(m_inputEnd.value_or(end), end);
    if (!m_start)
        m_start = {shown, packet.dts != AV_NOPTS_VALUE ? packet.dts : shown};
}

/// Whether a picture shown later than the packet's has come before it, as those do that it is made
/// of, and is not after the place to hurry to.
bool VideoDecoder::leavesOut(const AVPacket& packet) {
    if (packet.pts == AV_NOPTS_VALUE)
        return false;
    const bool leaves =
        m_hurry && m_latestShown && packet.pts < *m_latestShown && *m_latestShown <= *m_hurry;
    if (leaves)
        m_completeFrom = m_latestShown;
    m_latestShown = std::max(m_latestShown.value_or(packet.pts), packet.pts);
    return leaves;
}

void VideoDecoder::endInput(std::string fault) {
    m_inputFault = std::move(fault);
    avcodec_send_packet(m_codec.get(), nullptr);
}

/// Whether the packets ran out before the file should end: its index tells of more, or its format
/// knows how long it ought to be (Matroska does, and only logs it).
bool VideoDecoder::endsEarly() const {
    if (takeLastErrorLine().find("ended prematurely") != std::string::npos)
        return true;
    const int count = avformat_index_get_entries_count(m_stream);
    const AVIndexEntry* last = count > 0 ? avformat_index_get_entry(m_stream, count - 1) : nullptr;
    return last != nullptr && m_inputEnd && last->timestamp > *m_inputEnd;
}

void VideoDecoder::seek(MediaTime t) {
    m_stopsAtKeyframe = false;
    searchBack(m_clock.ticksAtOrBefore(t));
}

/// Jumps to ever earlier keyframes until one gives a picture that is not after `wanted`.
void VideoDecoder::searchBack(std::int64_t wanted) {
    const auto second = m_clock.ticksAtOrBefore({1, 1}) - m_clock.zero();
    // Where even a file with decoding times before zero has nothing more.
    const auto farBack =
        (m_stream->start_time == AV_NOPTS_VALUE ? m_clock.zero() : m_stream->start_time) -
        10 * second;
    std::optional<std::int64_t> tried; // the keyframe of the attempt before, in decoding order
    auto target = wanted;
    auto step = second / 2 + 1;
    for (;;) {
        jumpTo(target);
        m_sought = wanted;
        m_peeked = decodeNext();
        if ((m_peeked && m_lastTicks && *m_lastTicks <= wanted) || target < farBack)
            return;
        // Indexes count in decoding order, so the keyframe may be shown after `t`: take the one
        // before. Files without an index need larger steps.
        const bool isNew = m_start && (!tried || m_start->decoded < *tried);
        tried = isNew ? m_start->decoded : tried;
        target = isNew ? std::min(target, m_start->decoded - 1) : target - step;
        step *= isNew ? 1 : 2;
    }
}

std::optional<DecodedFrame> VideoDecoder::keyframeAt(MediaTime t) {
    m_stopsAtKeyframe = true;
    searchBack(m_clock.ticksAtOrBefore(t));
    return std::exchange(m_peeked, {});
}

void VideoDecoder::setSkipsUnreferenced(bool skips) {
    m_skipsUnreferenced = skips;
}

std::optional<MediaTime> VideoDecoder::completeFrom() const {
    return m_completeFrom ? std::optional(m_clock.time(*m_completeFrom)) : std::nullopt;
}

void VideoDecoder::jumpTo(std::int64_t ticks) {
    m_peeked.reset();
    m_inputFault.clear();
    m_decodeFault.clear();
    m_start.reset();
    m_hurry.reset();
    m_latestShown.reset();
    m_completeFrom.reset();
    m_inputEnd.reset();
    m_lastTicks.reset();
    m_hasJumped = true;
    AVFormatContext* context = &m_file.context();
    int result = avformat_seek_file(context, m_stream->index, INT64_MIN, ticks, ticks, 0);
    if (result < 0) // before the first keyframe
        result = avformat_seek_file(context, m_stream->index, INT64_MIN, INT64_MIN, INT64_MAX, 0);
    if (result < 0)
        fail("Cannot search", m_file.path(), errorText(result));
    avcodec_flush_buffers(m_codec.get());
}

bool VideoDecoder::hasKeyframeBetween(MediaTime from, MediaTime to) const {
    const auto after = m_clock.ticksAtOrBefore(from);
    const AVIndexEntry* entry = avformat_index_get_entry_from_timestamp(
        m_stream, m_clock.ticksAtOrBefore(to), AVSEEK_FLAG_BACKWARD);
    if (entry != nullptr && entry->timestamp > after)
        return true;
    // Some indexes only know what was read already. A jump may then lead back to where decoding
    // stands, which costs most when the way is short.
    constexpr double farAhead = 4; // seconds
    const int count = avformat_index_get_entries_count(m_stream);
    const AVIndexEntry* last = count > 0 ? avformat_index_get_entry(m_stream, count - 1) : nullptr;
    const bool reachesFurther = last != nullptr && last->timestamp > after;
    return !reachesFurther && to.seconds() - from.seconds() > farAhead;
}

void VideoDecoder::breakOff(std::int64_t ticks, const std::string& reason) const {
    throw MediaError(fmt::format("{} breaks off at {:.2f} s of {:.2f} s: {}",
                                 m_file.path().string(), m_clock.time(ticks).seconds(),
                                 m_file.endTime(*m_stream).seconds(), reason));
}

} // namespace vantro::media::av
