#pragma once

#include "base/Journal.h"
#include "model/RecordingMetadata.h"

#include <filesystem>

namespace vantro::capture {

/// Keeps the pointer's path and the clicks of a recording under way beside its movie, so that they
/// outlive the program. One line a sample, written as it comes. One thread at a time.
class CursorJournal {
  public:
    /// `description` is what the metadata will hold but for samples and clicks. Throws
    /// std::filesystem_error.
    CursorJournal(const std::filesystem::path& movie, const model::RecordingMetadata& description);

    // A journal that cannot be written is given up with a line in the log.
    void add(const model::CursorPosition& position);
    void add(const model::ClickEvent& click);

  private:
    void append(const std::string& line);

    base::JournalWriter m_journal;
    bool m_isGivenUp = false;
};

/// The journal of `movie`: its name with ".cursor" behind.
std::filesystem::path cursorJournalPath(const std::filesystem::path& movie);

/// What the journal holds, up to the first line that makes no sense; the end time is the last
/// sample's. Throws std::runtime_error when it cannot be read at all.
model::RecordingMetadata readCursorJournal(const std::filesystem::path& movie);

} // namespace vantro::capture
