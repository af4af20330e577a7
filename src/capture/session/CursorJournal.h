#pragma once

#include "base/BoundedQueue.h"
#include "base/Guarded.h"
#include "base/Journal.h"
#include "capture/SoundSource.h"
#include "model/RecordingMetadata.h"

#include <filesystem>
#include <string>
#include <thread>

namespace vantro::capture {

/// Keeps the pointer's path and the clicks of a recording under way, and which sounds it has,
/// beside its movie, so that they outlive the program. One line a sample, a click or sound written
/// as it comes and places eight at a time, on a thread of its own: a slow disk delays nobody. Any
/// thread adds; what its queue of two minutes of samples cannot hold is left out.
class CursorJournal {
  public:
    /// `description` is what the metadata will hold but for samples and clicks. Throws
    /// std::filesystem_error.
    CursorJournal(const std::filesystem::path& movie, const model::RecordingMetadata& description);
    /// Writes what has been added.
    ~CursorJournal();

    // A journal that cannot be written is given up with a line in the log.
    void add(const model::CursorPosition& position);
    void add(const model::ClickEvent& click);
    /// The movie has that sound.
    void add(SoundKind sound);
    /// Nothing more comes for a while: what has been added is written.
    void flush();

  private:
    struct Batch {
        std::string lines;
        int count = 0;
    };

    void add(std::string line, bool isUrgent);
    void run();

    base::JournalWriter m_journal; // the thread's, once it runs
    base::Guarded<Batch> m_batch;  // not yet in the queue
    base::BoundedQueue<std::string> m_batches;
    std::jthread m_thread;
};

/// The journal of `movie`: its name with ".cursor" behind.
std::filesystem::path cursorJournalPath(const std::filesystem::path& movie);

/// What the journal holds, up to the first line that makes no sense; the end time is the last
/// sample's. Throws std::runtime_error when it cannot be read at all.
model::RecordingMetadata readCursorJournal(const std::filesystem::path& movie);

} // namespace vantro::capture
