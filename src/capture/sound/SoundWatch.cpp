#include "capture/sound/SoundWatch.h"

#include "base/SerialQueue.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace vantro::capture::sound {
namespace {

using namespace std::chrono_literals;

// A server that is started later is found so soon.
constexpr auto retryInterval = 2s;
constexpr auto longestAnswer = 3s;

} // namespace

SoundWatch::SoundWatch(std::function<void()> changed)
    : m_changed(std::move(changed))
    , m_query([this](const SoundCatalog& catalog) {
        m_answerBy.reset();
        know(devicesOf(catalog));
    })
    , m_loop(pa_mainloop_new())
    , m_thread([this](const std::stop_token& stop) { run(stop); }) {}

SoundWatch::~SoundWatch() {
    m_thread.request_stop();
    pa_mainloop_wakeup(m_loop.get());
    m_thread.join();
}

void SoundWatch::run(const std::stop_token& stop) {
    base::setThreadName("sound-watch");
    m_retryAt = base::hostNow();
    while (!stop.stop_requested()) {
        if (m_isLost && m_context) {
            m_context.reset();
            m_query.forget();
            m_answerBy.reset();
            m_retryAt = base::hostNow() + retryInterval;
            know(std::unexpected(m_whyLost));
        }
        if (m_answerBy && base::hostNow() >= *m_answerBy) {
            m_answerBy.reset();
            know(std::unexpected("the sound server does not answer"));
        }
        if (!m_context && base::hostNow() >= m_retryAt) {
            m_isLost = false;
            m_answerBy = base::hostNow() + longestAnswer;
            m_context = pulse::connect(
                *m_loop, "production",
                [](pa_context* context, void* self) {
                    static_cast<SoundWatch*>(self)->contextChanged(*context);
                },
                this);
            continue;
        }
        if (!pulse::turn(*m_loop, waitingTime()))
            break;
    }
    m_context.reset();
}

/// When something has to be done though nothing happens.
std::optional<base::HostTime> SoundWatch::due() const {
    if (!m_context)
        return m_retryAt;
    return m_isLost ? base::hostNow() : m_answerBy;
}

/// Microseconds; −1 for as long as nothing happens.
int SoundWatch::waitingTime() const {
    const auto at = due();
    if (!at)
        return -1;
    const auto wait = std::max<base::HostDuration>(*at - base::hostNow(), 0ns);
    return static_cast<int>(std::chrono::ceil<std::chrono::microseconds>(wait).count());
}

void SoundWatch::contextChanged(pa_context& context) {
    const auto state = pa_context_get_state(&context);
    m_isLost = !PA_CONTEXT_IS_GOOD(state);
    if (m_isLost)
        m_whyLost = refusalOf(context).reason;
    if (state == PA_CONTEXT_READY)
        m_query.follow(context);
}

void SoundWatch::know(Devices devices) {
    const bool isNews = m_devices.with([&](std::optional<Devices>& known) {
        const bool differs = known != devices;
        known = std::move(devices);
        return differs;
    });
    if (isNews)
        m_changed();
}

} // namespace vantro::capture::sound
