#pragma once

#include "media/AssetWriter.h"
#include "media/av/Handles.h"

#include <filesystem>

namespace vantro::av {

/// Writes encoded packets into a movie file. Every failed write throws MediaError with the path
/// that the user knows and the reason. One thread at a time.
class MovieMuxer {
  public:
    /// Creates or empties `file`. `shownPath` stands in the error texts.
    MovieMuxer(const std::filesystem::path& file, std::filesystem::path shownPath, FileType type);

    /// A track for what `encoder` makes; its index. Before `begin`.
    int addTrack(const AVCodecContext& encoder);
    void begin();
    /// Times are in the encoder's time base; the packet's duration must be right. Leaves the packet
    /// empty.
    void write(int track, AVPacket& packet);
    /// Writes the index and closes the file.
    void finish();

  private:
    void check(int result) const;

    std::filesystem::path m_shownPath;
    FileType m_type;
    IoHandle m_file;
    OutputHandle m_context;              // destroyed first: it refers to m_file
    std::vector<AVRational> m_timeBases; ///< the encoders', by track
};

} // namespace vantro::av
