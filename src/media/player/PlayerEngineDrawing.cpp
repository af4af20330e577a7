// What the engine's thread draws beside playing: seeks, changed edits, and why it cannot.
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
        show(std::move(pixels), m_shown->time, m_time->now());
    return true;
}

bool PlayerEngine::answerSeek() {
    FrameReader::Answer answer;
    Seek seek;
    SeekQueue::Completion done;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_sought)
            return false;
        answer = *std::exchange(m_sought, {});
        seek = *m_seeking;
        if (answer.isGivenUp) {
            m_seeks.finish(false);
            beginSeek();
            return true;
        }
    }
    if (answer.frame.pixels)
        landSeek(seek, answer.frame);
    else
        fail(answer.problem.empty() ? "The movie holds no picture" : answer.problem);
    bool finished = false;
    bool isFirst = false;
    {
        const std::lock_guard lock(m_mutex);
        finished = m_phase == PlayerPhase::paused;
        isFirst = finished && m_status != PlayerStatus::ready;
        if (isFirst) {
            m_status = PlayerStatus::ready;
            m_problem.clear();
            m_isOpen = true;
        }
        done = m_seeks.finish(finished);
        beginSeek();
        prepareJump();
    }
    if (isFirst)
        m_events.statusChanged();
    if (done)
        m_events.seekDone(std::move(done), finished);
    m_events.timeJumped();
    return true;
}

void PlayerEngine::landSeek(const Seek& seek, const VideoFrame& frame) {
    const Drawing drawing{landing(seek, frame), frame};
    auto pixels = compose(drawing);
    if (!pixels)
        return;
    m_shown = drawing;
    {
        const auto now = m_time->now();
        const std::lock_guard lock(m_mutex);
        m_clock.stop(drawing.time);
        m_queue.begin(drawing.time, path(now));
        m_shownTime = drawing.time;
        follow(m_phase, PlayerPhase::paused);
    }
    show(std::move(pixels), drawing.time, m_time->now());
}

std::shared_ptr<const PixelBuffer> PlayerEngine::compose(const Drawing& drawing) {
    try {
        return m_composer.compose(drawing.time, sourceTime(drawing.time), drawing.source);
    } catch (const std::exception& failure) {
        fail(failure.what());
        return nullptr;
    }
}

void PlayerEngine::show(std::shared_ptr<const PixelBuffer> pixels, MediaTime time, HostTime due) {
    m_show({std::move(pixels), time, due, ++m_number});
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
