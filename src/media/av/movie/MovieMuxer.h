#pragma once

#include "base/OutputFile.h"
#include "media/av/EncodedPacket.h"
#include "media/av/Handles.h"
#include "media/av/movie/MovieJournal.h"
#include "media/values/WriterSettings.h"

#include <exception>
#include <filesystem>
#include <mutex>
#include <optional>
#include <vector>

namespace vantro::media::av {

/// Writes encoded packets into a movie file. Every failed write throws MediaError with the path
/// that the user knows and the reason. Any thread may write; the rest is for one at a time.
///
/// A quickTimeMovie takes packets as they come, so that none waits in memory; an mpeg4 file puts
/// the tracks' packets in the order of their times.
class MovieMuxer {
  public:
    enum class Content {
        fresh, ///< creates or empties the file
        kept,  ///< writes over what is there, and cuts the rest off when finished
    };

    /// `shownPath` stands in the error texts.
    MovieMuxer(const std::filesystem::path& file, std::filesystem::path shownPath, FileType type,
               Content content = Content::fresh);

    /// Keeps a journal beside `file` until it is finished, from which recoverMovie makes it whole
    /// should the program be killed. For a quickTimeMovie, before `addTrack`.
    void keepJournal();
    /// A track for what `encoder` makes; its index. Before `begin`.
    int addTrack(const AVCodecContext& encoder);
    void begin();
    /// Times are in the encoder's time base; the packet's duration must be right. Leaves the packet
    /// empty.
    void write(int track, EncodedPacket& packet);
    /// Where the next packet of a quickTimeMovie will lie in the file, once it has begun.
    std::int64_t position() const { return avio_tell(m_file.get()); }
    /// Writes the index and closes the file. Moving an mpeg4 file's index to its front copies the
    /// whole film; when that is cancelled, it throws MediaError.
    void finish(const base::Finishing& finishing = {});

  private:
    static int isInterrupted(void* muxer) noexcept;
    void closeFile();
    void writeInPlace(AVPacket& packet, const JournalledPacket& times);
    void check(int result) const;

    std::filesystem::path m_path;
    std::filesystem::path m_shownPath;
    FileType m_type;
    Content m_content;
    IoHandle m_file;
    std::mutex m_writing;
    const base::Finishing* m_finishing = nullptr; ///< while it finishes
    std::int64_t m_lengthBefore = 0;              ///< bytes written until then
    std::exception_ptr m_failure;                 ///< of somebody who follows the finishing
    OutputHandle m_context;                       // destroyed first: it refers to m_file
    std::vector<AVRational> m_timeBases;          ///< the encoders', by track
    std::optional<MovieJournal> m_journal;
};

} // namespace vantro::media::av
