#include "media/av/encode/VideoEncoder.h"

#include "base/Log.h"
#include "media/av/CodecHeader.h"
#include "media/av/encode/EncoderSelection.h"
#include "media/av/encode/EncoderSetup.h"
#include "media/av/encode/SoftwareEncoder.h"
#include "media/values/MediaError.h"

#include <cmath>
#include <cstdlib>
#include <new>
#include <utility>

#include <fmt/format.h>

namespace vantro::media::av {
namespace {

/// A context that only describes what another makes.
CodecHandle formatOf(const AVCodecContext& codec) {
    CodecHandle format(avcodec_alloc_context3(nullptr));
    const Handle<AVCodecParameters, avcodec_parameters_free> parameters(avcodec_parameters_alloc());
    if (!format || !parameters || avcodec_parameters_from_context(parameters.get(), &codec) < 0 ||
        avcodec_parameters_to_context(format.get(), parameters.get()) < 0)
        throw std::bad_alloc();
    format->time_base = codec.time_base;
    format->framerate = codec.framerate;
    return format;
}

bool isHardware(const CodecSession& session) {
    return session.name() != "libx264";
}

} // namespace

VideoEncoder::VideoEncoder(const VideoSettings& settings)
    : m_settings(settings)
    , m_session(openSelectedEncoder(settings))
    , m_hasSuccessor(isHardware(m_session))
    , m_format(formatOf(m_session.context()))
    , m_name(m_session.name()) {
    if (settings.expectsRealTime)
        m_forcedInterval = std::llround(settings.keyframeInterval * timescale());
    if (m_hasSuccessor)
        announceSuccessor();
}

VideoEncoder::VideoEncoder(const VideoSettings& settings, CodecSession hardware)
    : m_settings(settings)
    , m_session(std::move(hardware))
    , m_hasSuccessor(true)
    , m_format(formatOf(m_session.context()))
    , m_name(m_session.name()) {
    announceSuccessor();
}

/// Its parameter sets must be known before the first picture: files have them in their header.
void VideoEncoder::announceSuccessor() {
    m_successorHeader = headerOf(openSucceedingEncoder(m_settings).context());
    auto both = headerOf(m_session.context());
    both.insert(both.end(), m_successorHeader.begin(), m_successorHeader.end());
    setHeader(*m_format, both);
}

bool VideoEncoder::needsKeyframe(std::int64_t ticks) {
    if (!m_forcedInterval)
        return false;
    if (!m_isFirst && ticks - m_lastKeyframe < *m_forcedInterval)
        return false;
    m_isFirst = false;
    m_lastKeyframe = ticks;
    return true;
}

void VideoEncoder::encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t ticks,
                          const PacketSink& sink) {
    if (m_hasSuccessor)
        m_unfinished.push_back({picture, ticks});
    const auto frame = encoderFrame(std::move(picture), ticks);
    frame->pict_type = needsKeyframe(ticks) ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;
    send(frame.get(), sink);
}

void VideoEncoder::drain(const PacketSink& sink) {
    send(nullptr, sink);
}

void VideoEncoder::send(const AVFrame* frame, const PacketSink& sink) {
    const auto sent = m_hasSuccessor ? sendToHardware(frame, sink) : m_session.encode(frame, sink);
    if (sent)
        return;
    if (!m_hasSuccessor)
        throw MediaError("Encoding failed: " + sent.error());
    succeed(sent.error(), sink);
    if (frame == nullptr)
        drain(sink);
}

/// Some encoders count in a coarser time of their own.
bool VideoEncoder::isSameInstant(std::int64_t a, std::int64_t b) const {
    constexpr int milliseconds = 1000; // less than the frames of any movie are apart
    return std::abs(a - b) * milliseconds < timescale();
}

/// Takes note of the pictures that are done. One that comes out of turn is a failure as well.
std::expected<void, std::string> VideoEncoder::sendToHardware(const AVFrame* frame,
                                                              const PacketSink& sink) {
    bool isInOrder = true;
    const auto sent = m_session.encode(frame, [&](EncodedPacket& encoded) {
        AVPacket& packet = encoded.raw();
        isInOrder = isInOrder && !m_unfinished.empty() && packet.size > 0 &&
                    isSameInstant(packet.pts, m_unfinished.front().ticks);
        if (!isInOrder)
            return;
        packet.pts = m_unfinished.front().ticks;
        packet.dts = packet.pts;
        sink(encoded);
        m_unfinished.pop_front();
    });
    if (sent && !isInOrder)
        return std::unexpected("a picture came out of turn");
    if (sent && frame == nullptr && !m_unfinished.empty())
        return std::unexpected("it did not give back every picture");
    return sent;
}

/// Goes on with libx264 from the first picture that is not done.
void VideoEncoder::succeed(const std::string& reason, const PacketSink& sink) {
    base::logWarning("The encoder {} failed: {}; going on with libx264", m_session.name(), reason);
    m_session = openSucceedingEncoder(m_settings);
    if (headerOf(m_session.context()) != m_successorHeader)
        throw MediaError("Encoding failed: " + reason);
    m_hasSuccessor = false;
    m_name += ", " + m_session.name();
    for (auto& picture : std::exchange(m_unfinished, {}))
        send(encoderFrame(std::move(picture.pixels), picture.ticks).get(), sink);
}

} // namespace vantro::media::av
