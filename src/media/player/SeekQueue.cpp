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
    const Seek& running = m_running.emplace(std::move(*m_waiting));
    m_waiting.reset();
    m_stop = {};
    return &running;
}

std::vector<SeekQueue::Completion> SeekQueue::seen() {
    std::vector<Completion> superseded;
    m_hasGivenUp = false;
    if (m_running && m_waiting) {
        m_hasGivenUp = true;
        m_stop.request_stop();
        append(superseded, std::exchange(m_running->done, nullptr));
    }
    return superseded;
}

SeekQueue::Completion SeekQueue::finish(bool shown) {
    m_stop.request_stop();
    if (shown)
        m_hasGivenUp = false;
    auto ended = std::exchange(m_running, {});
    return ended ? std::move(ended->done) : nullptr;
}

std::vector<SeekQueue::Completion> SeekQueue::clear() {
    std::vector<Completion> ended;
    if (m_running)
        append(ended, finish(false));
    if (auto waiting = std::exchange(m_waiting, {}))
        append(ended, std::move(waiting->done));
    m_stop.request_stop();
    return ended;
}

} // namespace vantro::media::player
