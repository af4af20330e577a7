#include "media/av/decode/AudioDecoder.h"

#include "media/av/Libraries.h"
#include "media/av/decode/DecoderSetup.h"
#include "media/values/AudioBuffer.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <cstdlib>

#include <fmt/format.h>

namespace vantro::media::av {
namespace {

// Timestamps of sound jitter by their own rounding, a millisecond in Matroska. Less than this goes
// on where the sound stands, without a click; more is a gap, and a few samples of it are inaudible.
constexpr std::int64_t largestJitter = mixing::sampleRate / 200;
// Codecs overlap their frames: the first ones after a jump are not right yet.
constexpr std::int64_t preroll = mixing::sampleRate / 5;

} // namespace

AudioDecoder::AudioDecoder(const MovieReference& movie, int streamIndex)
    : m_file(movie)
    , m_stream(&selectStream(m_file, streamIndex, AVMEDIA_TYPE_AUDIO))
    , m_clock(m_file.clock(*m_stream))
    , m_codec(openDecoder(m_file, *m_stream, 1))
    , m_packet(makePacket())
    , m_frame(makeFrame()) {}

std::optional<DecodedSound> AudioDecoder::next() {
    while (m_holdsFrame || receive()) {
        if (auto piece = place())
            return piece;
    }
    if (auto last = rest())
        return last;
    if (!m_fault.empty())
        breakOff(m_fault);
    return {};
}

/// Decodes into m_frame; false at the end.
bool AudioDecoder::receive() {
    for (;;) {
        const int result = avcodec_receive_frame(m_codec.get(), m_frame.get());
        if (result == 0 && m_frame->nb_samples > 0 && m_frame->sample_rate > 0)
            return m_holdsFrame = true;
        if (result < 0 && m_ended)
            return false;
        if (result < 0) // what is damaged leaves a gap
            feed();
    }
}

void AudioDecoder::feed() {
    av_packet_unref(m_packet.get());
    const int result = av_read_frame(&m_file.context(), m_packet.get());
    if (result < 0) {
        m_ended = true;
        if (result != AVERROR_EOF)
            m_fault = errorText(result);
        avcodec_send_packet(m_codec.get(), nullptr);
    } else if (m_packet->stream_index == m_stream->index) {
        avcodec_send_packet(m_codec.get(), m_packet.get()); // a damaged packet leaves a gap
    }
}

std::int64_t AudioDecoder::positionOf(const AVFrame& frame) const {
    if (frame.best_effort_timestamp == AV_NOPTS_VALUE)
        return m_position.value_or(0);
    return m_clock.time(frame.best_effort_timestamp).rescaled(mixing::sampleRate).value;
}

/// Converts the frame at hand; where it does not go on from the one before, first gives what is
/// left of that.
std::optional<DecodedSound> AudioDecoder::place() {
    const std::int64_t position = positionOf(*m_frame);
    const std::int64_t held = m_converter.heldBack();
    const bool goesOn = m_position && std::abs(position - (*m_position + held)) <= largestJitter;
    if (!goesOn || !m_converter.fits(*m_frame)) {
        if (auto before = rest())
            return before;
        // After a change of format the sound goes on where it stood.
        if (!goesOn)
            m_position = position;
    }
    DecodedSound piece{m_position.value_or(position), {}};
    m_converter.convert(*m_frame, piece.samples);
    m_holdsFrame = false;
    m_position =
        piece.position + static_cast<std::int64_t>(piece.samples.size() / mixing::channelCount);
    if (piece.samples.empty())
        return {};
    return piece;
}

/// What the converter still holds back.
std::optional<DecodedSound> AudioDecoder::rest() {
    DecodedSound piece{m_position.value_or(0), {}};
    m_converter.drain(piece.samples);
    if (piece.samples.empty())
        return {};
    m_position =
        piece.position + static_cast<std::int64_t>(piece.samples.size() / mixing::channelCount);
    return piece;
}

void AudioDecoder::seek(std::int64_t position) {
    const std::int64_t early = std::max<std::int64_t>(position - preroll, 0);
    const auto ticks = m_clock.ticksAtOrBefore({early, mixing::sampleRate});
    AVFormatContext* context = &m_file.context();
    int result = avformat_seek_file(context, m_stream->index, INT64_MIN, ticks, ticks, 0);
    if (result < 0) // before the first packet
        result = avformat_seek_file(context, m_stream->index, INT64_MIN, INT64_MIN, INT64_MAX, 0);
    if (result < 0)
        fail("Cannot search", m_file.path(), errorText(result));
    avcodec_flush_buffers(m_codec.get());
    m_converter.reset();
    m_position.reset();
    m_fault.clear();
    m_holdsFrame = false;
    m_ended = false;
}

void AudioDecoder::breakOff(const std::string& reason) const {
    throw MediaError(
        fmt::format("The sound of {} breaks off at {:.2f} s: {}", m_file.path().string(),
                    static_cast<double>(m_position.value_or(0)) / mixing::sampleRate, reason));
}

} // namespace vantro::media::av
