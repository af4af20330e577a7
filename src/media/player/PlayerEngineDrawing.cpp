// What the engine's thread draws beside playing: changed edits, and why it cannot.
#include "media/player/PlayerEngine.h"

#include <utility>

namespace vantro::media::player {
namespace {

using base::HostTime;

/// At slower rates a changed edit is drawn between two pictures.
constexpr double slowRate = 0.5;

} // namespace

bool PlayerEngine::redraw() {
    Wishes wishes;
    bool draws = false;
    {
        const auto now = m_time->now();
        const std::lock_guard lock(m_mutex);
        wishes.video = std::exchange(m_wishes.video, {});
        wishes.outputSize = std::exchange(m_wishes.outputSize, {});
        wishes.redraw = std::exchange(m_wishes.redraw, false);
        if (!wishes.video && !wishes.outputSize && !wishes.redraw)
            return false;
        m_queue.forgetComposed();
        if (wishes.video && wishes.video->frameDuration != m_frameDuration) {
            m_frameDuration = wishes.video->frameDuration;
            m_queue.setPath(path(now));
        }
        draws = m_phase != PlayerPhase::playing || m_playedRate < slowRate;
    }
    if (wishes.video)
        m_composer.setVideo(*wishes.video);
    if (wishes.outputSize)
        m_composer.setOutputSize(wishes.outputSize->first, wishes.outputSize->second);
    if (!draws || !m_shown)
        return true;
    if (auto pixels = compose(*m_shown))
        show(std::move(pixels), *m_shown, m_time->now());
    return true;
}

std::shared_ptr<const PixelBuffer> PlayerEngine::compose(const Drawing& drawing) {
    try {
        return drawn(drawing);
    } catch (const std::exception& failure) {
        fail(failure.what());
        return nullptr;
    }
}

/// As compose; throws what the compositor does.
std::shared_ptr<const PixelBuffer> PlayerEngine::drawn(const Drawing& drawing) {
    return m_composer.compose(drawing.time, sourceTime(drawing.time), drawing.source);
}

void PlayerEngine::show(std::shared_ptr<const PixelBuffer> pixels, Drawing drawing, HostTime due) {
    m_show({std::move(pixels), drawing.time, due, ++m_number, drawing.isPreliminary});
    m_shown = std::move(drawing);
}

void PlayerEngine::fail(const std::string& problem) {
    silence();
    const auto now = m_time->now();
    bool wasPlaying = false;
    {
        const std::lock_guard lock(m_mutex);
        m_problem = problem;
        if (m_phase != PlayerPhase::failed)
            follow(m_phase, PlayerPhase::failed);
        m_status = PlayerStatus::failed;
        m_clock.stop(m_clock.timeAt(now));
        wasPlaying = std::exchange(m_rate, 0) != 0;
    }
    if (wasPlaying)
        m_events.rateChanged();
    m_events.statusChanged();
}

} // namespace vantro::media::player
