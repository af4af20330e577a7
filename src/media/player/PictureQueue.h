#pragma once

#include "media/player/PicturePath.h"
#include "media/player/PlaybackClock.h"
#include "media/values/VideoFrame.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>

namespace vantro::media::player {

/// A decoded picture that waits to be shown.
struct QueuedPicture {
    PathPoint point;
    VideoFrame source;
    std::shared_ptr<const PixelBuffer> composed; ///< once it is
};

/// The pictures decoded ahead of playing, in the order of showing, and which of them is due. A
/// value, below threads.
///
/// Bounded: decoded pictures of at most 32 MB, but two at least; where it is full, nothing is
/// wanted.
class PictureQueue {
  public:
    /// What is ahead of the picture at `shown`; forgets all others.
    void begin(MediaTime shown, PicturePath path);
    /// Goes on by another path; what it does not lead to is dropped.
    void setPath(PicturePath path);
    /// The jump to `to` has been made: what was behind it is ahead, on `path`.
    void jumpMade(MediaTime to, PicturePath path);
    /// Composed pictures are so no longer.
    void forgetComposed();

    bool isFull() const;
    bool empty() const { return m_pictures.empty(); }
    /// Whether playing can begin: some pictures are there, or all that will come.
    bool isReady() const { return m_pictures.size() > 1 || !m_next; }
    /// The picture to decode next. Where playing is at `seconds` already, those are left out that
    /// would be given up, and counted as dropped.
    std::optional<PathPoint> wanted(double seconds);
    /// Takes the picture that was wanted; one that is no longer is dropped.
    void add(PathPoint point, VideoFrame frame);

    /// Gives up pictures that are due while the next is as well; returns how many with those that
    /// `wanted` left out, since the last call.
    std::uint64_t dropLate(const PlaybackClock& clock, base::HostTime now);
    /// The next picture; nothing when there is none.
    const QueuedPicture* front() const {
        return m_pictures.empty() ? nullptr : &m_pictures.front();
    }
    QueuedPicture takeFront();
    /// The first picture that waits to be composed, as far ahead as that is done.
    const QueuedPicture* toCompose() const;
    void setComposed(PathPoint point, std::shared_ptr<const PixelBuffer> pixels);

  private:
    void findNext();

    PicturePath m_path;
    PathPoint m_shown;                ///< the last one taken
    std::optional<MediaTime> m_first; ///< behind a jump that was made: what it must show
    std::optional<PathPoint> m_next;
    std::deque<QueuedPicture> m_pictures;
    std::uint64_t m_leftOut = 0;
};

} // namespace vantro::media::player
