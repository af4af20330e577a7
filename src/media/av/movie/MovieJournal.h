#pragma once

#include "base/Journal.h"
#include "media/av/Handles.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace vantro::media::av {

/// Beside the movie: its name with ".journal" behind.
std::filesystem::path movieJournalPath(const std::filesystem::path& movie);

/// Where one packet lies in a movie. Times are in the encoder's time base.
struct JournalledPacket {
    int track = 0;
    std::int64_t offset = 0; ///< of its first byte in the file
    std::int64_t size = 0;
    std::int64_t pts = 0;
    std::int64_t dts = 0;
    std::int64_t duration = 0;
    bool isKeyframe = false;
};

/// Keeps beside a movie under way what its index will hold at the end: a movie without an index
/// cannot be played, and the index is written last.
///
/// Each track is one line, each packet another, written once the packet itself is in the file. A
/// journal that cannot be written is given up with a line in the log: the movie comes first. One
/// thread at a time.
class MovieJournal {
  public:
    /// Throws std::filesystem_error when the journal cannot be made.
    explicit MovieJournal(const std::filesystem::path& movie);

    void add(const AVCodecContext& track);
    void add(const JournalledPacket& packet);

  private:
    void append(const std::string& line);

    base::JournalWriter m_journal;
    bool m_isGivenUp = false;
};

/// A movie's journal, read back up to the first line that makes no sense.
struct JournalledMovie {
    std::vector<CodecHandle> tracks; ///< describe the tracks, and are open for nothing
    std::vector<JournalledPacket> packets;
};

/// Throws MediaError when there is no journal, or it is none.
JournalledMovie readMovieJournal(const std::filesystem::path& movie);

} // namespace vantro::media::av
