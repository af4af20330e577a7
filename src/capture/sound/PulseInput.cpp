#include "capture/sound/PulseInput.h"

#include "base/Fatal.h"
#include "media/values/AudioBuffer.h"

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace vantro::capture::sound {
namespace {

using namespace std::chrono_literals;
using media::mixing::sampleRate;

// Pieces of sound arrive so often: shorter ones cost more, longer ones delay the stop.
constexpr std::uint32_t piece = sampleRate * 40 / 1000; // frames
constexpr std::uint32_t peakRate = 25;
constexpr auto retryInterval = 1s;
// A busy server is late by less; devices send also while they are silent.
constexpr auto longestStall = 3s;
constexpr auto longestWait = 250ms;

/// Until the server is asked again what it has recorded: in quick succession at first, and at
/// changing places of a server's cycle.
std::chrono::milliseconds questionInterval(int asked) {
    constexpr int hasty = 20;
    return std::chrono::milliseconds(asked < hasty ? 7 + asked % 5 : 40 + asked * 7 % 31);
}

} // namespace

PulseInput::PulseInput(SoundKind kind, std::string device, PulseListener& listener, Detail detail)
    : m_kind(kind)
    , m_device(std::move(device))
    , m_listener(listener)
    , m_detail(detail)
    , m_query([this](const SoundCatalog& catalog) { decide(catalog); })
    , m_loop(pa_mainloop_new()) {}

PulseInput::~PulseInput() = default;

void PulseInput::wakeUp() {
    pa_mainloop_wakeup(m_loop.get());
}

void PulseInput::run(const std::stop_token& stop) {
    m_retryAt = base::hostNow();
    while (!stop.stop_requested()) {
        update();
        if (!pulse::turn(*m_loop, waitingTime()))
            break;
    }
    m_stream.reset();
    m_context.reset();
}

/// Microseconds.
int PulseInput::waitingTime() const {
    if (m_lost || m_chosen)
        return 0;
    base::HostDuration wait = longestWait;
    const auto now = base::hostNow();
    if (m_retryAt)
        wait = std::min(wait, *m_retryAt - now);
    if (asksForTimes())
        wait = std::min(wait, m_askAt - now);
    wait = std::max<base::HostDuration>(wait, 0ns);
    return static_cast<int>(std::chrono::ceil<std::chrono::microseconds>(wait).count());
}

void PulseInput::move(State to) {
    base::require(to != State::recording || m_state == State::opening,
                  "a sound input in an impossible state");
    m_state = to;
}

void PulseInput::update() {
    const auto now = base::hostNow();
    if (m_state == State::recording && now - m_heardAt >= longestStall)
        m_lost = {.reason = "nothing comes from " + m_source.description};
    if (const auto lost = std::exchange(m_lost, {}))
        lose(*lost);
    if (const auto chosen = std::exchange(m_chosen, {}))
        open(*chosen);
    if (m_retryAt && now >= *m_retryAt) {
        m_retryAt.reset();
        if (!m_context)
            connect();
        else
            m_query.ask(*m_context);
    }
    if (asksForTimes() && now >= m_askAt)
        askForTiming(now);
    m_listener.timePassed(now);
}

void PulseInput::connect() {
    m_context = pulse::connect(
        *m_loop, "production",
        [](pa_context* context, void* self) {
            static_cast<PulseInput*>(self)->contextChanged(*context);
        },
        this);
}

void PulseInput::contextChanged(pa_context& context) {
    const auto state = pa_context_get_state(&context);
    if (!PA_CONTEXT_IS_GOOD(state))
        m_lost = refusalOf(context);
    else if (state == PA_CONTEXT_READY)
        m_query.follow(context);
}

/// The server has said what there is.
void PulseInput::decide(const SoundCatalog& catalog) {
    const auto* wanted = chooseSource(m_kind, m_device, catalog);
    if (wanted == nullptr)
        m_lost = {.reason = m_kind == SoundKind::system ? "there is no output"
                            : m_device.empty()          ? "there is no microphone"
                                                        : "there is no " + m_device};
    else if (!m_stream || wanted->index != m_source.index)
        m_chosen = *wanted;
}

void PulseInput::open(const ServerSource& source) {
    m_source = source;
    m_stream.reset();
    move(State::opening);
    const bool isMeter = m_detail == Detail::peaks;
    const pa_sample_spec format{PA_SAMPLE_FLOAT32NE, isMeter ? peakRate : sampleRate,
                                static_cast<std::uint8_t>(isMeter ? 1 : channelsOf(m_kind))};
    m_stream.reset(pa_stream_new(m_context.get(), "Recording", &format, nullptr));
    if (!m_stream)
        return lose(refusalOf(*m_context));
    pa_stream_set_state_callback(
        m_stream.get(),
        [](pa_stream*, void* self) { static_cast<PulseInput*>(self)->streamChanged(); }, this);
    pa_stream_set_moved_callback(
        m_stream.get(),
        [](pa_stream*, void* self) { static_cast<PulseInput*>(self)->streamMoved(); }, this);
    pa_stream_set_read_callback(
        m_stream.get(),
        [](pa_stream*, std::size_t, void* self) { static_cast<PulseInput*>(self)->read(); }, this);
    pa_stream_set_latency_update_callback(
        m_stream.get(),
        [](pa_stream*, void* self) { static_cast<PulseInput*>(self)->takeTiming(); }, this);
    if (!connectStream())
        lose(refusalOf(*m_context));
}

bool PulseInput::connectStream() {
    constexpr auto automatic = static_cast<std::uint32_t>(-1);
    const auto fragment =
        m_detail == Detail::peaks ? sizeof(float) : static_cast<std::size_t>(piece * frameSize());
    const pa_buffer_attr buffer{automatic, automatic, automatic, automatic,
                                static_cast<std::uint32_t>(fragment)};
    // NOLINTNEXTLINE(clang-analyzer-optin.core.EnumCastOutOfRange): flags, as the library takes
    // them
    const auto flags = static_cast<pa_stream_flags_t>(
        PA_STREAM_DONT_MOVE | PA_STREAM_ADJUST_LATENCY |
        (m_detail == Detail::peaks ? PA_STREAM_PEAK_DETECT : PA_STREAM_NOFLAGS));
    return pa_stream_connect_record(m_stream.get(), m_source.name.c_str(), &buffer, flags) >= 0;
}

void PulseInput::streamChanged() {
    const auto state = pa_stream_get_state(m_stream.get());
    if (!PA_STREAM_IS_GOOD(state))
        m_lost = refusalOf(*m_context);
    if (state != PA_STREAM_READY)
        return;
    if (pa_stream_get_device_index(m_stream.get()) != m_source.index) {
        m_lost = {.reason = "the sound server gives another device than " + m_source.description};
        return;
    }
    move(State::recording);
    m_asked = 0;
    m_askAt = m_heardAt = base::hostNow();
    m_listener.opened(m_source.description);
}

/// Against its orders, perhaps to a device of the other kind.
void PulseInput::streamMoved() {
    if (pa_stream_get_device_index(m_stream.get()) != m_source.index)
        m_lost = {.reason = "the sound server gives another device than " + m_source.description};
}

void PulseInput::askForTiming(base::HostTime now) {
    m_askAt = now + questionInterval(m_asked++);
    pulse::forget(pa_stream_update_timing_info(m_stream.get(), nullptr, nullptr));
}

/// What the server had handed over at an instant. PulseAudio's answers are exact, with a monitor
/// that runs ahead of what is heard; PipeWire hands over a cycle of its graph at once, when it is
/// complete, so its answers are up to a cycle late.
void PulseInput::takeTiming() {
    const pa_timing_info* info = pa_stream_get_timing_info(m_stream.get());
    if (m_state != State::recording || m_lost || !info || info->write_index_corrupt)
        return;
    // The server stamps by the wall clock.
    timeval wall{};
    pa_gettimeofday(&wall);
    const std::chrono::microseconds age(pa_timeval_diff(&wall, &info->timestamp));
    const auto latency = std::chrono::microseconds(static_cast<std::int64_t>(info->source_usec)) -
                         std::chrono::microseconds(static_cast<std::int64_t>(info->sink_usec));
    const auto now = base::hostNow();
    m_listener.timed(now, info->write_index / frameSize(), now - age - latency);
}

void PulseInput::read() {
    const void* data = nullptr;
    std::size_t size = 0;
    while (pa_stream_peek(m_stream.get(), &data, &size) >= 0 && size > 0) {
        if (m_state == State::recording && !m_lost) {
            const auto now = m_heardAt = base::hostNow();
            const auto count = size / sizeof(float);
            if (data != nullptr)
                m_listener.captured(now, {static_cast<const float*>(data), count});
            else // the server has lost what was here
                m_listener.captured(now, std::vector<float>(count));
        }
        pa_stream_drop(m_stream.get());
    }
}

/// A connection that still stands is only asked again.
void PulseInput::lose(const SoundRefusal& refusal) {
    m_stream.reset();
    m_chosen.reset();
    if (m_context && !PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context.get()))) {
        m_context.reset();
        m_query.forget();
    }
    move(State::absent);
    m_retryAt = base::hostNow() + retryInterval;
    m_listener.missing(refusal);
}

} // namespace vantro::capture::sound
