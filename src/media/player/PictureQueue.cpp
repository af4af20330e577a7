#include "media/player/PictureQueue.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vantro::media::player {
namespace {

constexpr std::size_t mostBytes = 32'000'000;
constexpr std::size_t fewestPictures = 2;
constexpr std::size_t mostPictures = 8;
/// Composed ahead, to even out pictures that take longer than a period.
constexpr std::size_t composedAhead = 2;

std::size_t bytesOf(const VideoFrame& frame) {
    std::size_t bytes = 0;
    for (int plane = 0; frame.pixels && plane < frame.pixels->planeCount(); ++plane)
        bytes += static_cast<std::size_t>(frame.pixels->stride(plane)) *
                 static_cast<std::size_t>(frame.pixels->planeHeight(plane));
    return bytes;
}

} // namespace

void PictureQueue::begin(MediaTime shown, PicturePath path) {
    m_path = path;
    m_pictures.clear();
    m_first.reset();
    m_shown = {shown, false};
    findNext();
}

void PictureQueue::setPath(PicturePath path) {
    const auto previous = std::exchange(m_path, path);
    const auto stays = [&](PathPoint point, PathPoint before) {
        const double distance = std::abs(point.time.seconds() - before.time.seconds());
        const bool dense =
            point.afterJump == before.afterJump && distance < m_path.step(point.afterJump) / 2;
        return m_path.leadsTo(point, previous) && !dense;
    };
    std::deque<QueuedPicture> kept;
    for (auto& picture : m_pictures)
        if (stays(picture.point, kept.empty() ? m_shown : kept.back().point))
            kept.push_back(std::move(picture));
    m_pictures = std::move(kept);
    findNext();
}

void PictureQueue::findNext() {
    if (m_pictures.empty() && m_first)
        m_next = PathPoint{*m_first, false};
    else
        m_next = m_path.after(m_pictures.empty() ? m_shown : m_pictures.back().point);
}

void PictureQueue::jumpMade(MediaTime to, PicturePath path) {
    m_first = to;
    m_path = path;
    const auto isBefore = [](const auto& picture) { return !picture.point.afterJump; };
    m_leftOut += std::erase_if(m_pictures, isBefore);
    m_shown.afterJump = false;
    for (auto& picture : m_pictures)
        picture.point.afterJump = false;
    findNext();
}

void PictureQueue::forgetComposed() {
    for (auto& picture : m_pictures)
        picture.composed.reset();
}

bool PictureQueue::isFull() const {
    std::size_t bytes = 0;
    for (const auto& picture : m_pictures)
        bytes += bytesOf(picture.source);
    return m_pictures.size() >= mostPictures ||
           (m_pictures.size() >= fewestPictures && bytes >= mostBytes);
}

std::optional<PathPoint> PictureQueue::wanted(double seconds) {
    if (isFull())
        return {};
    while (m_next && !m_next->afterJump) {
        const auto later = m_path.after(*m_next);
        if (!later || later->afterJump || later->time.seconds() > seconds)
            break;
        m_next = later;
        ++m_leftOut;
    }
    return m_next;
}

void PictureQueue::add(PathPoint point, VideoFrame frame) {
    if (m_next != point)
        return;
    m_pictures.push_back({point, std::move(frame), nullptr});
    findNext();
}

std::uint64_t PictureQueue::dropLate(const PlaybackClock& clock, base::HostTime now) {
    auto dropped = std::exchange(m_leftOut, 0);
    const auto isDue = [&](const QueuedPicture& picture) {
        return clock.due(picture.point.time, picture.point.afterJump) <= now;
    };
    // A picture that is composed goes only for one that is as well: else slow ones are never shown.
    while (m_pictures.size() > 1 && isDue(m_pictures[1]) &&
           (!m_pictures[0].composed || m_pictures[1].composed)) {
        takeFront();
        ++dropped;
    }
    return dropped;
}

QueuedPicture PictureQueue::takeFront() {
    auto picture = std::move(m_pictures.front());
    m_pictures.pop_front();
    m_shown = picture.point;
    m_first.reset();
    return picture;
}

const QueuedPicture* PictureQueue::toCompose() const {
    const auto last = m_pictures.begin() +
                      static_cast<std::ptrdiff_t>(std::min(m_pictures.size(), composedAhead));
    const auto found = std::find_if(m_pictures.begin(), last,
                                    [](const auto& picture) { return !picture.composed; });
    return found == last ? nullptr : &*found;
}

void PictureQueue::setComposed(PathPoint point, std::shared_ptr<const PixelBuffer> pixels) {
    const auto found = std::ranges::find(m_pictures, point, &QueuedPicture::point);
    if (found != m_pictures.end())
        found->composed = std::move(pixels);
}

} // namespace vantro::media::player
