#include "capture/sound/PulseSoundDevices.h"

#include "base/HostClock.h"
#include "capture/sound/PulseMeter.h"
#include "capture/sound/PulseQuery.h"
#include "capture/sound/PulseSoundSource.h"

#include <chrono>
#include <optional>

namespace vantro::capture::sound {
namespace {

using namespace std::chrono_literals;

constexpr auto longestAnswer = 2s;

/// One question to the server, on the calling thread.
class Question {
  public:
    /// Nothing where there is no server or no answer in time; `whyNot` tells then.
    std::optional<SoundCatalog> ask(std::string& whyNot) {
        const auto limit = base::hostNow() + longestAnswer;
        const auto context = pulse::connect(
            *m_loop, "production",
            [](pa_context* changed, void* self) {
                static_cast<Question*>(self)->contextChanged(*changed);
            },
            this);
        constexpr int wait = 100'000; // µs
        while (!m_answer && !m_hasFailed && base::hostNow() < limit && pulse::turn(*m_loop, wait))
            ;
        if (!m_answer)
            whyNot = m_hasFailed ? refusalOf(*context).reason : "the sound server does not answer";
        return m_answer;
    }

  private:
    void contextChanged(pa_context& context) {
        const auto state = pa_context_get_state(&context);
        m_hasFailed = !PA_CONTEXT_IS_GOOD(state);
        if (state == PA_CONTEXT_READY)
            m_query.ask(context);
    }

    std::optional<SoundCatalog> m_answer;
    bool m_hasFailed = false;
    pulse::Loop m_loop{pa_mainloop_new()};
    PulseQuery m_query{[this](const SoundCatalog& catalog) { m_answer = catalog; }};
};

class PulseSoundDevices final : public SoundDevices {
  public:
    std::expected<std::vector<SoundDevice>, std::string> list() override {
        std::string whyNot;
        const auto catalog = Question().ask(whyNot);
        if (!catalog)
            return std::unexpected(whyNot);
        return devicesOf(*catalog);
    }

    std::expected<std::unique_ptr<SoundSource>, SoundRefusal>
    open(SoundKind kind, const std::string& device) override {
        return PulseSoundSource::open(kind, device);
    }

    std::unique_ptr<SoundMeter> meter(SoundKind kind, const std::string& device) override {
        return std::make_unique<PulseMeter>(kind, device);
    }
};

} // namespace

std::unique_ptr<SoundDevices> makePulseSoundDevices() {
    return std::make_unique<PulseSoundDevices>();
}

} // namespace vantro::capture::sound
