#include "media/pulse/PulseDevice.h"

#include "base/Fatal.h"
#include "base/Log.h"
#include "base/SerialQueue.h"
#include "media/values/AudioBuffer.h"

#include <algorithm>
#include <chrono>
#include <span>
#include <utility>

namespace vantro::media::pulse {
namespace {

using namespace std::chrono_literals;
using vantro::pulse::failureOf;
using vantro::pulse::forget;

constexpr pa_sample_spec format{PA_SAMPLE_FLOAT32NE, mixing::sampleRate, mixing::channelCount};
constexpr std::size_t frameSize = sizeof(float) * mixing::channelCount;
// What is written cannot be taken back, so this is how late a seek or another rate is heard. It
// outlasts the waits of a thread that sleeps most of the time while all processors are busy; where
// they are so busy that it does run dry, it grows.
constexpr std::uint32_t firstLatency = mixing::sampleRate * 50 / 1000 * frameSize;
constexpr std::uint32_t longestLatency = mixing::sampleRate * 150 / 1000 * frameSize;
constexpr std::uint32_t leastRequest = mixing::sampleRate * 10 / 1000 * frameSize;
constexpr auto retryInterval = 1s;
// In quick succession at first, so that the clock is right soon.
constexpr int hastyQuestions = 20;

/// Until the server is asked again. PipeWire's answers stand still within a cycle of its graph, so
/// they are wanted at changing places of it.
std::chrono::milliseconds questionInterval(int asked) {
    return std::chrono::milliseconds(asked < hastyQuestions ? 5 : 17 + asked * 7 % 31);
}

/// Without prebuffering the stream's time goes on whatever we write, or fail to.
pa_buffer_attr bufferOf(std::uint32_t latency) {
    constexpr auto automatic = static_cast<std::uint32_t>(-1);
    return {automatic, latency, 0, leastRequest, automatic};
}

} // namespace

PulseDevice::PulseDevice(SoundQueue& queue)
    : m_queue(queue)
    , m_loop(pa_mainloop_new())
    , m_latency(firstLatency)
    , m_thread([this](const std::stop_token& stop) { run(stop); }) {}

PulseDevice::~PulseDevice() {
    m_thread.request_stop();
    wakeUp();
    m_thread.join();
}

void PulseDevice::wakeUp() {
    pa_mainloop_wakeup(m_loop.get());
}

void PulseDevice::run(const std::stop_token& stop) {
    base::setThreadName("sound-device");
    m_retryAt = base::hostNow();
    while (!stop.stop_requested()) {
        update();
        if (!vantro::pulse::turn(*m_loop, waitingTime()))
            break;
    }
    m_stream.reset();
    m_context.reset();
}

/// Microseconds until something is to be done that nothing wakes us for; −1 for ever.
int PulseDevice::waitingTime() const {
    const auto inMicroseconds = [](auto time) {
        return static_cast<int>(
            std::chrono::duration_cast<std::chrono::microseconds>(time).count());
    };
    if (!m_lost.empty())
        return 0;
    if (m_retryAt)
        return std::max(inMicroseconds(*m_retryAt - base::hostNow()), 0);
    return m_state == State::running ? std::max(inMicroseconds(m_askAt - base::hostNow()), 0) : -1;
}

void PulseDevice::update() {
    const auto now = base::hostNow();
    if (!m_lost.empty())
        lose(std::exchange(m_lost, {}));
    const bool isWanted = m_queue.wantsDevice(now);
    const bool isSilenced = isWanted && vantro::pulse::OwnSilence::isKept();
    if (m_retryAt && now >= *m_retryAt) {
        m_retryAt.reset();
        if (isSilenced)
            m_retryAt = now + retryInterval;
        else if (!m_context)
            connect();
        else if (!m_stream)
            openStream();
    }
    if (m_state != State::absent && isSilenced) {
        lose("the system's sound is being recorded");
    } else if (m_state == State::ready && isWanted) {
        move(State::running);
        m_asked = 0;
        forget(pa_stream_cork(m_stream.get(), 0, nullptr, nullptr));
    } else if (m_state == State::running && !isWanted) {
        move(State::ready);
        forget(pa_stream_cork(m_stream.get(), 1, nullptr, nullptr));
        m_queue.deviceStops();
    }
    if (m_state == State::running && now >= m_askAt)
        askForTiming();
}

void PulseDevice::move(State to) {
    base::require(to == State::absent || (m_state == State::absent && to == State::ready) ||
                      (m_state == State::ready && to == State::running) ||
                      (m_state == State::running && to == State::ready),
                  "a sound device in an impossible state");
    m_state = to;
    m_isThere = to != State::absent;
}

void PulseDevice::connect() {
    m_context = vantro::pulse::connect(
        *m_loop, "video",
        [](pa_context* context, void* self) {
            static_cast<PulseDevice*>(self)->contextChanged(*context);
        },
        this);
}

void PulseDevice::contextChanged(const pa_context& context) {
    const auto state = pa_context_get_state(&context);
    if (state == PA_CONTEXT_READY)
        openStream();
    else if (!PA_CONTEXT_IS_GOOD(state))
        m_lost = failureOf(context);
}

void PulseDevice::openStream() {
    m_stream.reset(pa_stream_new(m_context.get(), "Preview", &format, nullptr));
    if (!m_stream) {
        m_lost = failureOf(*m_context);
        return;
    }
    m_written = 0;
    pa_stream_set_state_callback(
        m_stream.get(),
        [](pa_stream*, void* self) { static_cast<PulseDevice*>(self)->streamChanged(); }, this);
    pa_stream_set_write_callback(
        m_stream.get(),
        [](pa_stream*, std::size_t bytes, void* self) {
            static_cast<PulseDevice*>(self)->write(bytes);
        },
        this);
    pa_stream_set_latency_update_callback(
        m_stream.get(),
        [](pa_stream*, void* self) { static_cast<PulseDevice*>(self)->takeTiming(); }, this);
    pa_stream_set_underflow_callback(
        m_stream.get(),
        [](pa_stream*, void* self) { static_cast<PulseDevice*>(self)->growBuffer(); }, this);
    const auto buffer = bufferOf(m_latency);
    // The C library's enumeration stands for sets of its values.
    // NOLINTNEXTLINE(clang-analyzer-optin.core.EnumCastOutOfRange)
    constexpr auto flags =
        static_cast<pa_stream_flags_t>(PA_STREAM_START_CORKED | PA_STREAM_ADJUST_LATENCY);
    if (pa_stream_connect_playback(m_stream.get(), nullptr, &buffer, flags, nullptr, nullptr) < 0)
        m_lost = failureOf(*m_context);
}

void PulseDevice::streamChanged() {
    const auto state = pa_stream_get_state(m_stream.get());
    if (state == PA_STREAM_READY) {
        move(State::ready);
        m_hasComplained = false;
    } else if (!PA_STREAM_IS_GOOD(state)) {
        m_lost = failureOf(*m_context);
    }
}

void PulseDevice::write(std::size_t bytes) {
    while (bytes >= frameSize) {
        void* memory = nullptr;
        std::size_t size = bytes;
        if (pa_stream_begin_write(m_stream.get(), &memory, &size) < 0 || !memory)
            return;
        const auto frames = std::min(size, bytes) / frameSize;
        m_queue.fill(m_written,
                     std::span(static_cast<float*>(memory), frames * mixing::channelCount),
                     base::hostNow());
        if (pa_stream_write(m_stream.get(), memory, frames * frameSize, nullptr, 0,
                            PA_SEEK_RELATIVE) < 0)
            return;
        m_written += static_cast<std::int64_t>(frames);
        bytes -= frames * frameSize;
    }
}

void PulseDevice::growBuffer() {
    const auto longer =
        std::min(m_latency * 3 / 2 / frameSize * frameSize, std::size_t{longestLatency});
    if (m_state != State::running || longer == m_latency)
        return;
    m_latency = static_cast<std::uint32_t>(longer);
    base::logInfo("The sound server ran dry; it is given {} ms from now on",
                  m_latency / frameSize * 1000 / mixing::sampleRate);
    const auto buffer = bufferOf(m_latency);
    forget(pa_stream_set_buffer_attr(m_stream.get(), &buffer, nullptr, nullptr));
}

void PulseDevice::askForTiming() {
    m_askAt = base::hostNow() + questionInterval(m_asked++);
    forget(pa_stream_update_timing_info(m_stream.get(), nullptr, nullptr));
}

void PulseDevice::takeTiming() {
    const pa_timing_info* info = pa_stream_get_timing_info(m_stream.get());
    if (m_state != State::running || !info || !info->playing || info->read_index_corrupt)
        return;
    // The server stamps by the wall clock.
    timeval wall{};
    pa_gettimeofday(&wall);
    const std::chrono::microseconds age(pa_timeval_diff(&wall, &info->timestamp));
    const double given = static_cast<double>(info->read_index) / frameSize;
    const double ahead = static_cast<double>(info->sink_usec) * mixing::sampleRate / 1e6;
    m_queue.heard(base::hostNow() - age, given - ahead);
}

/// Silent from here on; a context that still stands only needs another stream.
void PulseDevice::lose(const std::string& reason) {
    if (!std::exchange(m_hasComplained, true))
        base::logInfo("Playing without sound until the sound server has a device: {}", reason);
    move(State::absent);
    m_queue.deviceLost();
    m_stream.reset();
    if (m_context && !PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context.get())))
        m_context.reset();
    m_retryAt = base::hostNow() + retryInterval;
}

} // namespace vantro::media::pulse
