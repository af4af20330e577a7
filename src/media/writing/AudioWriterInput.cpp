#include "media/writing/AudioWriterInput.h"

#include "base/Log.h"
#include "base/SerialQueue.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <cstdlib>

namespace vantro::media::writing {
namespace {

constexpr int channels = mixing::channelCount;
// Buffers come every 10 to 100 ms: a live source that stalls for longer drops some.
constexpr std::size_t queuedBuffers = 64;
// Times of live sources jitter by less than this: filling every such hole would crackle. Sound that
// is more out of step with the picture would be seen.
constexpr std::int64_t largestJitter = mixing::sampleRate / 100;
// Silence is encoded in pieces, so that an hour of it needs no memory.
constexpr std::int64_t silencePiece = mixing::sampleRate;

std::int64_t inSamples(MediaTime time) {
    return time.rescaled(mixing::sampleRate).value;
}

} // namespace

AudioWriterInput::AudioWriterInput(const AudioSettings& settings, av::MovieMuxer& muxer,
                                   TrackPace& pictures)
    : m_settings(settings), m_muxer(muxer), m_pictures(pictures), m_queue(queuedBuffers) {
    try {
        m_encoder.emplace(settings);
        m_track = muxer.addTrack(m_encoder->context());
    } catch (const MediaError&) {
        if (!settings.expectsRealTime)
            throw;
        fail();
    }
}

AudioWriterInput::~AudioWriterInput() {
    cancel();
}

void AudioWriterInput::start(MediaTime sessionStart) {
    m_sessionStart = sessionStart;
    if (!m_failed)
        m_thread = std::thread([this] { run(); });
}

bool AudioWriterInput::append(AudioBuffer buffer) {
    if (m_failed)
        return false;
    return m_settings.expectsRealTime ? m_queue.tryPush(std::move(buffer))
                                      : m_queue.push(std::move(buffer));
}

void AudioWriterInput::finish() {
    m_queue.close();
    if (m_thread.joinable())
        m_thread.join();
    if (!failsTheMovie())
        return;
    if (const auto failure = m_failure.with([](auto& value) { return value; }))
        std::rethrow_exception(failure);
}

void AudioWriterInput::abandon() {
    m_cancelled = true;
    m_queue.abandon();
}

void AudioWriterInput::cancel() {
    abandon();
    if (m_thread.joinable())
        m_thread.join();
}

void AudioWriterInput::run() {
    base::setThreadName("com.vantro.writer.sound");
    try {
        while (const auto buffer = m_queue.pop())
            write(*buffer);
        if (!m_cancelled)
            finishTrack();
    } catch (const std::exception&) {
        fail();
    }
}

/// With the exception that is being handled.
void AudioWriterInput::fail() {
    m_failure.with([](auto& value) { value = std::current_exception(); });
    m_failed = true;
    m_queue.abandon();
    base::logError("Writing the movie's sound failed: {}", failure().value_or(""));
}

std::optional<std::string> AudioWriterInput::failure() const {
    const auto failure = m_failure.with([](const auto& value) { return value; });
    if (!failure)
        return {};
    try {
        std::rethrow_exception(failure);
    } catch (const std::exception& error) {
        return error.what();
    }
}

void AudioWriterInput::write(const AudioBuffer& buffer) {
    const auto wanted = inSamples(buffer.presentationTime - m_sessionStart);
    auto end = wanted + buffer.frameCount();
    if (!m_settings.expectsRealTime) {
        const auto picturesEnd = m_pictures.waitFor({end, mixing::sampleRate});
        if (picturesEnd)
            end = std::min(end, inSamples(*picturesEnd));
    }
    if (end <= wanted)
        return;
    const auto gap = wanted - m_position;
    const bool isFitting = m_position > 0 && std::abs(gap) <= largestJitter;
    if (!isFitting && gap > 0)
        writeSilence(gap);
    const auto overlap = isFitting ? 0 : std::max<std::int64_t>(-gap, 0);
    const auto count = end - wanted - overlap;
    if (count > 0)
        encode(std::span(buffer.samples)
                   .subspan(static_cast<std::size_t>(overlap) * channels,
                            static_cast<std::size_t>(count) * channels));
}

void AudioWriterInput::writeSilence(std::int64_t length) {
    const std::vector<float> silence(
        static_cast<std::size_t>(std::min(length, silencePiece) * channels));
    for (; length > 0 && !m_cancelled; length -= silencePiece)
        encode(std::span(silence).first(
            static_cast<std::size_t>(std::min(length, silencePiece) * channels)));
}

void AudioWriterInput::encode(std::span<const float> samples) {
    m_position += static_cast<std::int64_t>(samples.size() / channels);
    m_encoder->encode(samples,
                      [this](av::EncodedPacket& packet) { m_muxer.write(m_track, packet); });
}

/// A track that no sound ever reached stays empty.
void AudioWriterInput::finishTrack() {
    if (m_position > 0)
        m_encoder->drain([this](av::EncodedPacket& packet) { m_muxer.write(m_track, packet); });
}

} // namespace vantro::media::writing
