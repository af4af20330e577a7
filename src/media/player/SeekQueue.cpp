#include "media/player/SeekQueue.h"

#include <utility>

namespace vantro::media::player {
namespace {

void append(std::vector<SeekQueue::Completion>& list, SeekQueue::Completion done) {
    if (done)
        list.push_back(std::move(done));
}

} // namespace

std::vector<SeekQueue::Completion> SeekQueue::add(Seek seek) {
    std::vector<Completion> superseded;
    if (m_waiting)
        append(superseded, std::move(m_waiting->done));
    m_waiting = std::move(seek);
    if (m_running && !m_hasGivenUp) {
        m_hasGivenUp = true;
        m_stop.request_stop();
        append(superseded, std::exchange(m_running->done, nullptr));
    }
    return superseded;
}

std::optional<MediaTime> SeekQueue::target() const {
    if (m_waiting)
        return m_waiting->to;
    return m_running ? std::optional(m_running->to) : std::nullopt;
}

const Seek* SeekQueue::begin() {
    if (m_running || !m_waiting)
        return nullptr;
    m_running = std::exchange(m_waiting, {});
    m_stop = {};
    return &*m_running;
}

std::vector<SeekQueue::Completion> SeekQueue::seen() {
    std::vector<Completion> superseded;
    m_hasGivenUp = m_running && m_waiting;
    if (m_hasGivenUp) {
        m_stop.request_stop();
        append(superseded, std::exchange(m_running->done, nullptr));
    }
    return superseded;
}

SeekQueue::Completion SeekQueue::finish(bool shown) {
    m_stop.request_stop();
    auto done = std::move(m_running->done);
    m_running.reset();
    if (shown)
        m_hasGivenUp = false;
    return done;
}

std::vector<SeekQueue::Completion> SeekQueue::clear() {
    std::vector<Completion> ended;
    if (m_running)
        append(ended, finish(false));
    if (m_waiting)
        append(ended, std::exchange(m_waiting, {})->done);
    m_stop.request_stop();
    return ended;
}

} // namespace vantro::media::player
