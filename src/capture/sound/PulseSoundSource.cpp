#include "capture/sound/PulseSoundSource.h"

#include "base/Log.h"
#include "base/SerialQueue.h"

#include <chrono>
#include <utility>

namespace vantro::capture::sound {
namespace {

using namespace std::chrono_literals;

constexpr auto longestOpening = 3s;

const char* queueName(SoundKind kind) {
    return kind == SoundKind::system ? "com.vantro.systemaudio" : "com.vantro.mic";
}

} // namespace

std::expected<std::unique_ptr<SoundSource>, SoundRefusal>
PulseSoundSource::open(SoundKind kind, const std::string& device) {
    std::unique_ptr<PulseSoundSource> source(new PulseSoundSource(kind, device));
    auto opening = source->m_opening.emplace().get_future();
    source->m_thread = std::jthread([self = source.get(), kind](const std::stop_token& stop) {
        base::setThreadName(queueName(kind));
        self->m_input.run(stop);
        self->m_sound.finish();
    });
    if (opening.wait_for(longestOpening) != std::future_status::ready)
        return std::unexpected(SoundRefusal{.reason = "the sound server does not answer"});
    if (auto refusal = opening.get())
        return std::unexpected(*std::move(refusal));
    return source;
}

PulseSoundSource::PulseSoundSource(SoundKind kind, const std::string& device)
    : m_kind(kind)
    , m_ownSilence(kind == SoundKind::system ? decltype(m_ownSilence)(std::in_place) : std::nullopt)
    , m_sound(PulseInput::channelsOf(kind),
              [this](base::HostTime at, std::span<const float> stereo) { deliver(at, stereo); })
    , m_input(kind, device, *this) {}

PulseSoundSource::~PulseSoundSource() {
    stop();
}

void PulseSoundSource::start(SoundOutput& output) {
    m_output = &output;
}

void PulseSoundSource::stop() {
    if (!m_thread.joinable())
        return;
    m_thread.request_stop();
    m_input.wakeUp();
    m_thread.join();
    m_output = nullptr;
    m_ownSilence.reset();
}

void PulseSoundSource::answer(std::optional<SoundRefusal> refusal) {
    if (auto opening = std::exchange(m_opening, {}))
        opening->set_value(std::move(refusal));
}

void PulseSoundSource::captured(base::HostTime now, std::span<const float> samples) {
    m_sound.captured(now, samples);
}

void PulseSoundSource::timed(base::HostTime now, std::int64_t frames, base::HostTime at) {
    m_sound.timed(now, frames, at);
}

void PulseSoundSource::opened(const std::string& description) {
    base::logInfo("Recording the sound of {}", description);
    m_sound.interrupted();
    m_missing.clear();
    answer({});
}

void PulseSoundSource::missing(const SoundRefusal& refusal) {
    if (m_opening)
        return answer(refusal);
    m_sound.interrupted();
    if (m_missing.empty())
        m_missing = refusal.reason;
}

void PulseSoundSource::timePassed(base::HostTime now) {
    m_sound.passTime(now);
    tell();
}

/// Once for each absence, also of one that began before anybody listened.
void PulseSoundSource::tell() {
    auto* output = m_output.load();
    if (!output || m_isToldMissing == !m_missing.empty())
        return;
    m_isToldMissing = !m_isToldMissing;
    if (m_isToldMissing)
        output->soundMissing(m_missing);
    else
        output->soundReturned();
}

void PulseSoundSource::deliver(base::HostTime at, std::span<const float> stereo) {
    if (auto* output = m_output.load())
        output->sound({.presentationTime = {at.time_since_epoch().count(), 1'000'000'000},
                       .samples = std::vector<float>(stereo.begin(), stereo.end())});
}

} // namespace vantro::capture::sound
