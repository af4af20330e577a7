#pragma once

#include "media/Asset.h"
#include "media/values/VideoFrame.h"

#include <memory>
#include <optional>

namespace vantro::media {

/// Finds the picture that a movie shows at a time.
///
/// Going forward decodes on from where it stands; going back, or far ahead, seeks to the keyframe
/// before. One thread at a time.
class FrameSource {
  public:
    /// Throws MediaError, with "No video track found" when there is none with that id.
    FrameSource(const Asset& asset, int trackID);
    ~FrameSource();
    FrameSource(FrameSource&&) noexcept;

    /// The latest frame whose presentation time is not after `t`; before the first frame that one.
    /// Nothing when the track holds no frame. Throws MediaError where the movie breaks.
    std::optional<VideoFrame> frameAt(MediaTime t);

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::media
