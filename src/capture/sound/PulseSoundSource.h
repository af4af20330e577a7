#pragma once

#include "base/Guarded.h"
#include "capture/SoundSource.h"
#include "capture/sound/PulseInput.h"
#include "capture/sound/SteadySound.h"

#include <atomic>
#include <expected>
#include <future>
#include <memory>
#include <optional>
#include <thread>

namespace vantro::capture::sound {

/// A sound of the desktop, recorded through its PulseAudio or PipeWire server on a thread of its
/// own, and put on the host clock. While the system's sound is recorded Vantro plays nothing.
///
/// Device and server may come, go and be replaced; what is missing is silence, and the log has one
/// line of each absence.
class PulseSoundSource final : public SoundSource, private PulseListener {
  public:
    /// Returns when the device is open; a server that does not answer is waited for a few seconds.
    /// `device` as chooseSource takes it.
    static std::expected<std::unique_ptr<SoundSource>, SoundRefusal>
    open(SoundKind kind, const std::string& device);
    ~PulseSoundSource() override;

    void start(SoundOutput& output) override;
    /// What has been recorded up to now has arrived when it returns.
    void stop() override;

  private:
    using Opening = std::promise<std::optional<SoundRefusal>>;

    PulseSoundSource(SoundKind kind, const std::string& device);
    void captured(base::HostTime now, std::span<const float> samples) override;
    void timed(base::HostTime now, std::int64_t frames, base::HostTime at) override;
    void opened(const std::string& description) override;
    void missing(const SoundRefusal& refusal) override;
    void timePassed(base::HostTime now) override;
    void tell();
    void deliver(base::HostTime at, std::span<const float> stereo);
    void answer(std::optional<SoundRefusal> refusal);

    const SoundKind m_kind;
    std::optional<pulse::OwnSilence> m_ownSilence; ///< until the stop, for the system's sound
    std::atomic<SoundOutput*> m_output = nullptr;
    std::optional<Opening> m_opening; ///< until it is known how it went; the thread's
    std::string m_missing;            ///< why there is nothing to record; empty while there is
    bool m_isToldMissing = false;
    SteadySound m_sound;
    PulseInput m_input;
    std::jthread m_thread; // the last member: it uses the others
};

} // namespace vantro::capture::sound
