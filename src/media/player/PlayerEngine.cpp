#include "media/player/PlayerEngine.h"

#include "media/values/Fraction.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vantro::media::player {
namespace {

/// From here on pictures that no other refers to need not be decoded.
constexpr double fastRate = 4;
/// So many pictures in a row that take longer than two periods mean that decoding does not keep up.
constexpr int slowReadsInARow = 5;

const CompositionTrack& trackOf(const PlayerItem& item) {
    const CompositionTrack* track = item.composition.track(item.video.trackID);
    base::require(track != nullptr, "the video composition's track is not in the composition");
    return *track;
}

} // namespace

PlayerEngine::PlayerEngine(const PlayerItem& item, PlayerServices services, Events events)
    : m_track(trackOf(item))
    , m_end(item.composition.duration())
    , m_time(std::move(services.time))
    , m_events(std::move(events))
    , m_composer(item.video)
    , m_sound(std::move(services.sound))
    , m_show(std::move(services.show))
    , m_clock(m_end)
    , m_frameDuration(item.video.frameDuration) {
    for (auto& reader : m_readers)
        reader = std::make_unique<FrameReader>(item.composition.asset(), m_track.source().id);
    {
        const std::lock_guard lock(m_mutex);
        m_seeks.add({}); // the first picture opens the movie
        beginSeek();
    }
    m_thread = std::jthread([this](const std::stop_token& stop) { run(stop); });
}

PlayerEngine::~PlayerEngine() {
    const std::lock_guard lock(m_mutex);
    m_isEnding = true;
    m_seeks.clear();
    m_readingStop.request_stop();
    m_preparingStop.request_stop();
}

double PlayerEngine::rate() const {
    const std::lock_guard lock(m_mutex);
    return m_rate;
}

void PlayerEngine::setRate(double rate) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_rate == rate)
            return;
        m_rate = rate;
    }
    m_time->wakeUp();
    m_events.rateChanged();
}

MediaTime PlayerEngine::currentTime() const {
    const auto now = m_time->now();
    const std::lock_guard lock(m_mutex);
    return m_seeks.target().value_or(m_clock.timeAt(now));
}

std::optional<MediaTime> PlayerEngine::duration() const {
    const std::lock_guard lock(m_mutex);
    return m_isOpen ? std::optional(m_end) : std::nullopt;
}

PlayerStatus PlayerEngine::status() const {
    const std::lock_guard lock(m_mutex);
    return m_status;
}

std::string PlayerEngine::problem() const {
    const std::lock_guard lock(m_mutex);
    return m_problem;
}

PlayerCounts PlayerEngine::counts() const {
    const std::lock_guard lock(m_mutex);
    return m_counts;
}

void PlayerEngine::seek(Seek seek) {
    seek.to = std::clamp(seek.to, MediaTime{}, m_end);
    std::vector<SeekQueue::Completion> superseded;
    {
        const std::lock_guard lock(m_mutex);
        superseded = m_seeks.add(std::move(seek));
        beginSeek();
    }
    m_time->wakeUp();
    tell(std::move(superseded));
    m_events.timeJumped();
}

void PlayerEngine::tell(std::vector<SeekQueue::Completion> superseded) const {
    for (auto& done : superseded)
        m_events.seekDone(std::move(done), false);
}

void PlayerEngine::planJump(std::optional<PlannedJump> jump) {
    const auto now = m_time->now();
    {
        const std::lock_guard lock(m_mutex);
        if (m_jump == jump)
            return;
        m_jump = jump;
        m_clock.setJump(jumpAhead(now), now);
        m_queue.setPath(path(now));
        m_wishes.soundJump = true;
        readAhead();
        prepareJump();
    }
    m_time->wakeUp();
}

void PlayerEngine::setVideo(VideoComposition video) {
    {
        const std::lock_guard lock(m_mutex);
        m_wishes.video = std::move(video);
    }
    m_time->wakeUp();
}

void PlayerEngine::refresh() {
    {
        const std::lock_guard lock(m_mutex);
        m_wishes.redraw = true;
    }
    m_time->wakeUp();
}

void PlayerEngine::setOutputSize(int width, int height) {
    {
        const std::lock_guard lock(m_mutex);
        m_wishes.outputSize = {width, height};
    }
    m_time->wakeUp();
}

void PlayerEngine::setMix(std::vector<TrackMix> mix) {
    {
        const std::lock_guard lock(m_mutex);
        m_wishes.mix = std::move(mix);
    }
    m_time->wakeUp();
}

void PlayerEngine::setMuted(bool muted) {
    {
        const std::lock_guard lock(m_mutex);
        m_wishes.muted = muted;
    }
    m_time->wakeUp();
}

void PlayerEngine::setProxy(std::shared_ptr<proxy::ProxyMovie> proxy) {
    const auto size = m_track.source().naturalSize;
    auto reader = proxy ? std::make_shared<proxy::ProxyReader>(
                              std::move(proxy), static_cast<int>(std::lround(size.width)),
                              static_cast<int>(std::lround(size.height)))
                        : nullptr;
    const std::lock_guard lock(m_mutex);
    m_proxy.swap(reader);
    // The one before goes last, without the lock: it may still have an answer to give.
}

void PlayerEngine::addTick(int number, base::HostDuration interval) {
    const auto now = m_time->now();
    {
        const std::lock_guard lock(m_mutex);
        m_ticks.push_back({number, interval, now});
    }
    m_time->wakeUp();
}

void PlayerEngine::removeTick(int number) {
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_ticks, [number](const Tick& tick) { return tick.number == number; });
}

void PlayerEngine::readAhead() {
    const bool plays = m_phase == PlayerPhase::starting || m_phase == PlayerPhase::playing;
    if (m_reading || !plays || m_isEnding || !m_readProblem.empty())
        return;
    const auto now = m_time->now();
    m_reading = m_queue.wanted(m_clock.isRunning() ? m_clock.secondsAt(now) : 0);
    if (!m_reading)
        return;
    const bool isFast = m_playedRate >= fastRate;
    m_readsKeyframes = m_readsKeyframes || (isFast && m_slowReads >= slowReadsInARow);
    const bool isOnOtherReader = m_reading->afterJump && m_jump && m_jump->from != m_jump->to;
    m_readingStop = {};
    m_readingSince = now;
    m_readers[isOnOtherReader ? 1 - m_active : m_active]->request(
        {.time = sourceTime(m_reading->time),
         .skipsUnreferenced = isFast,
         .keyframesOnly = m_readsKeyframes,
         .givenUp = m_readingStop.get_token()},
        [this, stop = m_readingStop.get_token()](const FrameReader::Answer& answer) {
            {
                const std::lock_guard lock(m_mutex);
                if (stop.stop_requested())
                    return;
                take(answer);
                readAhead();
            }
            m_time->wakeUp();
        });
}

void PlayerEngine::take(const FrameReader::Answer& answer) {
    const auto point = std::exchange(m_reading, {});
    if (!point)
        return;
    const double took = base::inSeconds(m_time->now() - m_readingSince);
    m_slowReads = took > 2 * m_frameDuration.seconds() ? m_slowReads + 1 : 0;
    if (!answer.frame.pixels)
        m_readProblem = answer.problem.empty() ? "The movie holds no picture" : answer.problem;
    else
        m_queue.add(*point, answer.frame);
}

void PlayerEngine::prepareJump() {
    if (!m_jump || m_jump->from == m_jump->to || !m_isOpen || m_isEnding)
        return;
    const auto target = sourceTime(m_jump->to);
    if (m_prepared == target)
        return;
    m_preparingStop.request_stop();
    m_preparingStop = {};
    m_prepared = target;
    m_readers[1 - m_active]->request({.time = target, .givenUp = m_preparingStop.get_token()},
                                     [](const FrameReader::Answer&) {});
}

std::optional<PlannedJump> PlayerEngine::jumpAhead(base::HostTime now) const {
    if (!m_jump || m_jump->from <= m_clock.timeAt(now) || m_jump->from > m_end)
        return {};
    auto jump = *m_jump;
    jump.to = std::clamp(jump.to, MediaTime{}, m_end);
    jump.rate = playableRate(jump.rate);
    return jump;
}

PicturePath PlayerEngine::path(base::HostTime now) const {
    return {m_frameDuration, m_playedRate, jumpAhead(now), m_end};
}

} // namespace vantro::media::player
