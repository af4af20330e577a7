#pragma once

#include "media/av/Handles.h"
#include "media/av/StreamClock.h"
#include "media/values/MovieReference.h"

#include <cstdint>
#include <vector>

namespace vantro::media::av {

struct PictureSize {
    int width = 0;
    int height = 0;
};

/// A media file open for reading. One thread.
class MovieFile {
  public:
    /// Throws MediaError with path and reason for anything that is not a readable media file.
    explicit MovieFile(const MovieReference& movie);

    const std::filesystem::path& path() const { return m_path; }
    AVFormatContext& context() const { return *m_context; }
    /// Sound and picture streams, without cover art.
    std::vector<AVStream*> mediaStreams() const;
    StreamClock clock(const AVStream& stream) const;
    /// How long the stream goes on after time zero; zero when the file does not tell.
    MediaTime endTime(const AVStream& stream) const;

  private:
    std::filesystem::path m_path;
    InputHandle m_context;
    std::int64_t m_zero = 0; ///< microseconds
};

/// The stored picture with its pixels made square: the width is stretched by the sample aspect
/// ratio. Not yet turned upright.
PictureSize squarePixelSize(const AVStream& stream);

} // namespace vantro::media::av
