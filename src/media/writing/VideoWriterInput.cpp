#include "media/writing/VideoWriterInput.h"

#include "base/Fatal.h"
#include "base/Log.h"
#include "base/SerialQueue.h"
#include "media/color/ColorConversion.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace vantro::media::writing {
namespace {

// A live source that stalls for longer than this many frames drops some; each holds a picture.
constexpr std::size_t queuedFrames = 8;
// Enough to keep an encoder busy while a frame is composed.
constexpr std::size_t queuedFramesOffline = 4;
// What is held back is lost when the program is killed; longer than frames of a busy screen are
// apart, so that it happens on calm ones only.
constexpr auto longestHeld = std::chrono::milliseconds(50);

} // namespace

VideoWriterInput::VideoWriterInput(const VideoSettings& settings, av::MovieMuxer& muxer,
                                   TrackPace& pace)
    : m_settings(settings)
    , m_muxer(muxer)
    , m_pace(pace)
    , m_encoder(settings)
    , m_track(muxer.addTrack(m_encoder.context()))
    , m_queue(settings.expectsRealTime ? queuedFrames : queuedFramesOffline)
    , m_pictures(PixelFormat::i420, settings.width, settings.height) {}

VideoWriterInput::~VideoWriterInput() {
    cancel();
}

void VideoWriterInput::start(MediaTime sessionStart) {
    m_sessionStart = sessionStart;
    m_thread = std::thread([this] { run(); });
}

bool VideoWriterInput::append(const VideoFrame& frame) {
    base::require(frame.pixels && frame.pixels->width() == m_settings.width &&
                      frame.pixels->height() == m_settings.height,
                  "picture of another size than the movie's");
    const bool ascends = frame.presentationTime >= m_sessionStart &&
                         (!m_lastAppended || frame.presentationTime > *m_lastAppended);
    if (m_failed || !ascends)
        return false;
    const bool taken =
        m_settings.expectsRealTime ? m_queue.tryPush(VideoFrame(frame)) : m_queue.push(frame);
    if (taken)
        m_lastAppended = frame.presentationTime;
    return taken;
}

double VideoWriterInput::secondsAppended() const {
    return m_lastAppended ? m_lastAppended->seconds() - m_sessionStart.seconds() : 0;
}

void VideoWriterInput::markAsFinished(std::optional<MediaTime> endTime) {
    if (m_isMarkedFinished)
        return;
    m_isMarkedFinished = true;
    m_endTime = endTime;
    m_queue.close();
}

void VideoWriterInput::finish() {
    markAsFinished({});
    if (m_thread.joinable())
        m_thread.join();
    if (const auto failure = m_failure.with([](auto& value) { return value; }))
        std::rethrow_exception(failure);
}

void VideoWriterInput::abandon() {
    m_cancelled = true;
    m_queue.abandon();
    m_pace.release();
}

void VideoWriterInput::cancel() {
    abandon();
    if (m_thread.joinable())
        m_thread.join();
}

void VideoWriterInput::run() {
    base::setThreadName("com.vantro.writer");
    try {
        for (;;) {
            writeHeldInTime();
            const auto frame = m_queue.pop();
            if (!frame)
                break;
            encode(*frame);
        }
        if (!m_cancelled)
            finishTrack();
    } catch (const std::exception& error) {
        if (!m_cancelled)
            base::logError("Writing the movie failed: {}", error.what());
        m_failure.with([](auto& value) { value = std::current_exception(); });
        m_failed = true;
        m_queue.abandon();
        m_pace.release();
    }
}

void VideoWriterInput::encode(const VideoFrame& frame) {
    // Two times within one tick would otherwise fall together.
    m_lastTicks = std::max(ticks(frame.presentationTime), m_lastTicks + 1);
    m_lastDuration = nominalDuration(frame);
    m_encoder.encode(encodable(frame.pixels), m_lastTicks,
                     [this](av::EncodedPacket& packet) { take(packet); });
    ++m_frameCount;
}

/// The pixels as BT.709 limited range i420; converted once for successive frames of one picture.
std::shared_ptr<const PixelBuffer>
VideoWriterInput::encodable(const std::shared_ptr<const PixelBuffer>& pixels) {
    if (pixels == m_lastPixels)
        return m_lastPicture;
    std::shared_ptr<const PixelBuffer> picture = pixels;
    if (pixels->format() == PixelFormat::bgra) {
        auto converted = m_pictures.take();
        color::convertBgraToI420(*pixels, *converted);
        picture = std::move(converted);
    } else if (pixels->color() != ColorDescription{}) {
        auto colors = PixelBuffer::allocate(PixelFormat::bgra, pixels->width(), pixels->height());
        color::convertI420ToBgra(*pixels, *colors);
        auto converted = m_pictures.take();
        color::convertBgraToI420(*colors, *converted);
        picture = std::move(converted);
    }
    m_lastPixels = pixels;
    m_lastPicture = picture;
    return picture;
}

std::int64_t VideoWriterInput::ticks(MediaTime presentationTime) const {
    return (presentationTime - m_sessionStart).rescaled(m_encoder.timescale()).value;
}

std::int64_t VideoWriterInput::nominalDuration(const VideoFrame& frame) const {
    if (frame.duration > MediaTime{})
        return std::max<std::int64_t>(frame.duration.rescaled(m_encoder.timescale()).value, 1);
    return std::max(std::lround(m_encoder.timescale() / m_settings.expectedFrameRate), 1L);
}

void VideoWriterInput::take(av::EncodedPacket& packet) {
    if (m_cancelled)
        throw MediaError("Cancelled"); // an encoder may hold back seconds of work
    if (!m_held.isEmpty())
        writeHeld(packet.decodedAt() - m_held.decodedAt());
    m_held.take(packet);
}

/// In decoding order the last picture is not always the last packet: where both differ, the file's
/// index takes the track's length from the one and the time line's end from the other.
void VideoWriterInput::writeHeld(std::int64_t duration) {
    const bool showsLast = m_finalDuration && m_held.shownAt() == m_lastTicks;
    m_held.setDuration(showsLast ? *m_finalDuration : duration);
    const MediaTime written{m_held.decodedAt(), m_encoder.timescale()};
    m_muxer.write(m_track, m_held);
    m_pace.reach(written);
}

/// Of a live source, no picture is held back for longer than a moment.
void VideoWriterInput::writeHeldInTime() {
    const bool isHeld = m_settings.expectsRealTime && !m_held.isEmpty();
    if (isHeld && !m_queue.waitForItem(longestHeld))
        writeHeld(m_lastDuration);
}

/// The last packet went out before its duration was known: the picture comes once more, for the
/// rest of it.
void VideoWriterInput::repeatLastPicture(std::int64_t wantedDuration) {
    const auto first = std::clamp<std::int64_t>(wantedDuration - 1, 1, m_lastDuration);
    m_lastTicks += first;
    m_finalDuration = std::max<std::int64_t>(wantedDuration - first, 1);
    m_encoder.encode(m_lastPicture, m_lastTicks,
                     [this](av::EncodedPacket& packet) { take(packet); });
}

void VideoWriterInput::finishTrack() {
    if (m_lastTicks < 0)
        throw MediaError("No frame was written");
    const auto wanted = m_endTime ? ticks(*m_endTime) - m_lastTicks : m_lastDuration;
    m_finalDuration = std::max<std::int64_t>(wanted, 1);
    if (m_settings.expectsRealTime && m_held.isEmpty())
        repeatLastPicture(*m_finalDuration);
    m_encoder.drain([this](av::EncodedPacket& packet) { take(packet); });
    writeHeld(*m_finalDuration);
    m_pace.end({m_lastTicks + *m_finalDuration, m_encoder.timescale()});
}

} // namespace vantro::media::writing
