#pragma once

#include "media/Asset.h"
#include "media/values/VideoFrame.h"

#include <cstddef>
#include <expected>
#include <functional>
#include <memory>
#include <stop_token>

namespace vantro::media {

/// Why a FrameSource gives no picture.
enum class NoFrame {
    emptyTrack, ///< the track holds none
    givenUp,    ///< the caller stopped the search
};

using FoundFrame = std::expected<VideoFrame, NoFrame>;

/// Finds the picture that a movie shows at a time.
///
/// Going forward decodes on from where it stands; going back, or far ahead, seeks to the keyframe
/// before. The pictures around the last time stay decoded. A search that is given up leaves what it
/// has decoded so far, and any call may follow it. All searches throw MediaError where the movie
/// breaks; what lies elsewhere in it can still be asked for. One thread at a time; another source
/// of the same asset, for what is shown next or by another thread, costs one opening of the file.
class FrameSource {
  public:
    static constexpr std::size_t usualKeptBytes = 48'000'000;

    /// Throws MediaError, with "No video track found" when there is none with that id. `opened` is
    /// called once the file has been read, before there are threads that decode.
    FrameSource(const Asset& asset, int trackID, const std::function<void()>& opened = {});
    ~FrameSource();
    FrameSource(FrameSource&&) noexcept;

    /// The latest frame whose presentation time is not after `t`; before the first frame that one.
    /// Gives up within the decoding of one picture once `givenUp` says so.
    FoundFrame frameAt(MediaTime t, const std::stop_token& givenUp = {});
    /// One of the pictures shown between `t - tolerance` and `t + tolerance`, whichever is found at
    /// once: one that is still decoded, or a keyframe; where there is neither, the exact one.
    FoundFrame frameNear(MediaTime t, MediaTime tolerance, const std::stop_token& givenUp = {});
    /// The latest keyframe not after `t`, and before the first that one, by decoding nothing else;
    /// its duration is unknown. For speeds at which nothing else keeps up. A file whose index is
    /// missing or inexact may give an earlier one.
    FoundFrame keyframeAt(MediaTime t);

    /// Whether pictures that no other one refers to are left out, so that a fast player decodes
    /// less: `frameAt` then gives the latest of the others. Movies without B-frames have none to
    /// leave out.
    void setSkipsUnreferenced(bool skips);
    /// Decoded pictures are dropped, those farthest back first, once all that are kept take more
    /// than `bytes`; two are always kept. Pictures that somebody else holds as well cost nothing
    /// more.
    void setKeptBytes(std::size_t bytes);
    /// What the pictures kept take at present.
    std::size_t keptBytes() const;
    /// By how much a picture's time may be too late because the file rounds it to milliseconds. The
    /// searches allow for it.
    MediaTime rounding() const;

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::media
