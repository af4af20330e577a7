#pragma once

#include "app/files/ProjectLock.h"
#include "model/Project.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace vantro::app::files {

/// An edit that was not saved, with what it was made of.
struct JournalledEdit {
    /// Without the samples and clicks of its recording, which lie where its movie does.
    model::Project project;
    std::optional<std::filesystem::path> package; ///< none for a recording that nobody saved
};

/// Where this user's journals lie: $XDG_STATE_HOME/vantro/edits, by default below ~/.local/state;
/// empty where there is no home.
std::filesystem::path editJournals();

/// Keeps what was edited and not saved, so that it outlives the program.
///
/// A folder of its own that holds one file, replaced as a whole by each write; it is locked as long
/// as this object lives, which tells it from one that was left behind. Neither movies nor samples
/// are in it: 2,000 clicks take about half a megabyte. One thread at a time; everything blocks.
class EditJournal {
  public:
    /// Makes the folder. Throws std::runtime_error.
    static std::shared_ptr<EditJournal> begin(const std::filesystem::path& directory);
    /// The journals of programs that have ended, the newest first; removes those that hold nothing.
    static std::vector<std::shared_ptr<EditJournal>>
    leftBehind(const std::filesystem::path& directory);

    /// Throws std::runtime_error; the edit before then stays.
    void write(const JournalledEdit& edit) const;
    /// Throws std::runtime_error, also for what is damaged.
    JournalledEdit read() const;
    /// What cannot be read is not found again, but stays on disk; at best.
    void setAside() const;
    /// Nothing but the journal goes. Throws std::filesystem::filesystem_error.
    void remove() const;

    EditJournal(std::filesystem::path folder, std::shared_ptr<const ProjectLock> lock);

  private:
    std::filesystem::path file() const;
    std::filesystem::path fileSetAside() const;

    std::filesystem::path m_folder;
    std::shared_ptr<const ProjectLock> m_lock;
};

/// What an edit says of its recording: its metadata without samples and clicks.
model::RecordingMetadata outlineOf(const model::RecordingMetadata& metadata);

} // namespace vantro::app::files
