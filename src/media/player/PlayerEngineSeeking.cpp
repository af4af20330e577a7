// How the engine finds the picture that a seek is to show: who is asked for it, and what is done
// with the answers.
#include "media/player/PlayerEngine.h"
#include "media/values/Fraction.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace vantro::media::player {
namespace {

using namespace std::chrono_literals;

/// A picture of the movie that is found within this time is the first to be seen: a proxy's would
/// only flash up, at each step from picture to picture for instance.
constexpr auto proxyPatience = 30ms;
/// So long a pointer rests before the movie's own picture is searched for, which takes the
/// processor that the next proxy's pictures would need.
constexpr auto restBeforeRefining = 150ms;

} // namespace

/// Times at and behind the end show the last picture.
MediaTime PlayerEngine::sourceTime(MediaTime t) const {
    constexpr MediaTime moment{1, 720'000'000};
    const auto last = MediaTime::nearestTo(Fraction(m_track.duration()) - Fraction(moment));
    return m_track.sourceTime(std::clamp(t, MediaTime{}, std::max(last, MediaTime{})))
        .value_or(MediaTime{});
}

/// Where a seek has come to with this picture, which a tolerant one may find beside its target.
MediaTime PlayerEngine::landing(const Seek& seek, const VideoFrame& frame) const {
    const auto wanted = sourceTime(seek.to);
    const MediaTimeRange shown{frame.presentationTime, frame.duration};
    if (seek.tolerance == MediaTime{} || (shown.start <= wanted && shown.contains(wanted)))
        return seek.to;
    const auto distance = Fraction(frame.presentationTime) - Fraction(wanted);
    return std::clamp(MediaTime::nearestTo(Fraction(seek.to) + distance), MediaTime{}, m_end);
}

void PlayerEngine::beginSeek() {
    const Seek* seek = m_seeks.begin();
    if (seek == nullptr)
        return;
    if (m_phase != PlayerPhase::opening)
        follow(m_phase, PlayerPhase::seeking);
    m_readingStop.request_stop();
    m_reading.reset();
    m_readProblem.clear();
    m_seeking = *seek;
    ++m_seekNumber;
    m_proxied.reset();
    m_refineAt.reset();
    const auto now = m_time->now();
    m_clock.stop(seek->to);
    m_queue.begin(seek->to, path(now));
    const bool asksProxy = m_proxy && m_proxy->has(sourceTime(seek->to));
    const bool isTolerant = seek->tolerance > MediaTime{};
    if (asksProxy && (isTolerant || m_preliminary != seek->to))
        askProxy(*seek);
    if (!asksProxy || !isTolerant)
        askReader(*seek);
}

void PlayerEngine::askReader(const Seek& seek) {
    const auto time = sourceTime(seek.to);
    if (m_prepared == time) {
        m_active = 1 - m_active;
        m_prepared.reset();
    }
    m_readers[m_active]->request(
        {.time = time, .tolerance = seek.tolerance, .givenUp = m_seeks.givenUp()},
        [this](FrameReader::Answer answer) {
            {
                const std::lock_guard lock(m_mutex);
                m_sought = std::move(answer);
                m_isProxied = false;
            }
            m_time->wakeUp();
        });
}

void PlayerEngine::askProxy(const Seek& seek) {
    m_proxiedDue = m_time->now() + proxyPatience;
    m_proxy->request(sourceTime(seek.to), m_seeks.givenUp(),
                     [this, number = m_seekNumber](std::optional<VideoFrame> frame) {
                         {
                             const std::lock_guard lock(m_mutex);
                             if (number != m_seekNumber || !m_seeks.isRunning() || m_isEnding)
                                 return;
                             takeProxied(std::move(frame));
                         }
                         m_time->wakeUp();
                     });
}

void PlayerEngine::takeProxied(std::optional<VideoFrame> frame) {
    const bool isTolerant = m_seeking.tolerance > MediaTime{};
    const bool isGivenUp = m_seeks.givenUp().stop_requested();
    if (!isTolerant) {
        m_proxied = std::move(frame);
    } else if (frame || isGivenUp) {
        m_sought = FrameReader::Answer{frame.value_or(VideoFrame{}), !frame, {}};
        m_isProxied = true;
    } else {
        askReader(m_seeking);
    }
}

bool PlayerEngine::answerSeek() {
    std::optional<FrameReader::Answer> answer;
    Seek seek;
    SeekQueue::Completion done;
    bool isProxied = false;
    {
        const std::lock_guard lock(m_mutex);
        answer = std::exchange(m_sought, {});
        if (!answer)
            return false;
        isProxied = m_isProxied;
        seek = m_seeking;
        if (answer->isGivenUp) {
            m_seeks.finish(false);
            beginSeek();
            return true;
        }
    }
    if (answer->frame.pixels)
        landSeek(seek, answer->frame, isProxied);
    else
        fail(answer->problem.empty() ? "The movie holds no picture" : answer->problem);
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
        m_proxied.reset();
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

void PlayerEngine::landSeek(const Seek& seek, const VideoFrame& frame, bool isPreliminary) {
    Drawing drawing{landing(seek, frame), frame, isPreliminary};
    auto pixels = compose(drawing);
    if (!pixels)
        return;
    const auto now = m_time->now();
    {
        const std::lock_guard lock(m_mutex);
        m_clock.stop(drawing.time);
        m_queue.begin(drawing.time, path(now));
        m_shownTime = drawing.time;
        m_preliminary = isPreliminary ? std::optional(drawing.time) : std::nullopt;
        m_refineAt = isPreliminary ? std::optional(now + restBeforeRefining) : std::nullopt;
        follow(m_phase, PlayerPhase::paused);
    }
    show(std::move(pixels), std::move(drawing), m_time->now());
}

/// The proxy's picture, while the movie's is searched for.
bool PlayerEngine::showProxy() {
    Drawing drawing;
    std::vector<SeekQueue::Completion> superseded;
    const auto now = m_time->now();
    {
        const std::lock_guard lock(m_mutex);
        if (!m_proxied || m_sought || m_proxiedDue > now || m_seeks.givenUp().stop_requested())
            return false;
        drawing = {m_seeking.to, std::move(*m_proxied), true};
        m_proxied.reset();
    }
    std::shared_ptr<const PixelBuffer> pixels;
    try {
        pixels = drawn(drawing);
    } catch (const std::exception&) {
        return true; // the movie's picture will tell
    }
    {
        const std::lock_guard lock(m_mutex);
        m_preliminary = drawing.time;
        superseded = m_seeks.seen();
    }
    show(std::move(pixels), std::move(drawing), now);
    tell(std::move(superseded));
    return true;
}

/// The movie's own picture after a tolerant seek that ended with the proxy's.
bool PlayerEngine::refine() {
    const auto now = m_time->now();
    const std::lock_guard lock(m_mutex);
    if (m_phase != PlayerPhase::paused || !m_refineAt || *m_refineAt > now || m_rate != 0)
        return false;
    m_refineAt.reset();
    m_seeks.add({m_shownTime, {}, {}}); // none is under way
    beginSeek();
    return true;
}

} // namespace vantro::media::player
