#pragma once

#include "base/Guarded.h"
#include "capture/SoundLevel.h"
#include "capture/SoundMeter.h"
#include "capture/sound/PulseInput.h"

#include <string>
#include <thread>

namespace vantro::capture::sound {

/// Meters what a recording of that kind and device would take. Only peaks come from the server, a
/// few dozen a second. Works on a thread of its own.
class PulseMeter final : public SoundMeter, private PulseListener {
  public:
    PulseMeter(SoundKind kind, const std::string& device);
    ~PulseMeter() override;

    std::optional<Reading> reading() const override;

  private:
    void captured(base::HostTime now, std::span<const float> samples) override;
    void timed(base::HostTime, std::int64_t, base::HostTime) override {}
    void opened(const std::string& description) override;
    void missing(const SoundRefusal& refusal) override;
    void timePassed(base::HostTime) override {}

    base::Guarded<std::optional<SoundLevel>> m_level;
    PulseInput m_input;
    std::jthread m_thread; // the last member: it uses the others
};

} // namespace vantro::capture::sound
