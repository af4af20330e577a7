#include "capture/sound/PulseMeter.h"

#include "base/SerialQueue.h"

namespace vantro::capture::sound {

PulseMeter::PulseMeter(SoundKind kind, const std::string& device)
    : m_input(kind, device, *this, PulseInput::Detail::peaks)
    , m_thread([this](const std::stop_token& stop) {
        base::setThreadName("sound-meter");
        m_input.run(stop);
    }) {}

PulseMeter::~PulseMeter() {
    m_thread.request_stop();
    m_input.wakeUp();
    m_thread.join();
}

std::optional<SoundMeter::Reading> PulseMeter::reading() const {
    return m_level.with([](const std::optional<SoundLevel>& level) -> std::optional<Reading> {
        if (!level)
            return {};
        return Reading{.level = level->level(), .isSilent = level->isSilent()};
    });
}

void PulseMeter::captured(base::HostTime now, std::span<const float> samples) {
    m_level.with([&](std::optional<SoundLevel>& level) {
        if (level)
            level->take(now, samples);
    });
}

void PulseMeter::opened(const std::string&) {
    m_level.with([](std::optional<SoundLevel>& level) { level.emplace(); });
}

void PulseMeter::missing(const SoundRefusal&) {
    m_level.with([](std::optional<SoundLevel>& level) { level.reset(); });
}

} // namespace vantro::capture::sound
