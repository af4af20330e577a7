#pragma once

#include "media/values/MediaTime.h"
#include "media/values/PixelBuffer.h"

#include <filesystem>
#include <memory>

namespace vantro::render {

/// The webcam's picture at any time of a recording, read from "webcam.mov", whose time line is the
/// recording's own: a camera that was slow to start shows from its first picture on.
///
/// A movie that is missing, empty or damaged gives no picture, from there on, and one log line: a
/// webcam never fails an export. One thread at a time.
class WebcamMovie {
  public:
    explicit WebcamMovie(const std::filesystem::path& movie);
    ~WebcamMovie();
    WebcamMovie(const WebcamMovie&) = delete;
    WebcamMovie& operator=(const WebcamMovie&) = delete;

    /// The latest frame not after `t`; nothing before the first one. The same pointer is the same
    /// picture. Going forward decodes on; going back seeks.
    std::shared_ptr<const media::PixelBuffer> pictureAt(media::MediaTime t);

  private:
    struct Opened;
    static std::unique_ptr<Opened> open(const std::filesystem::path& movie);

    std::unique_ptr<Opened> m_opened; ///< none where there is nothing to show
};

} // namespace vantro::render
