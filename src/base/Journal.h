#pragma once

#include "base/FileDescriptor.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vantro::base {

/// A file of lines that outlives the program: each line is handed to the system at once, so that
/// only what was under way is lost when the program is killed.
///
/// The file stays locked for as long as the writer lives, which tells a journal that somebody still
/// writes from one that somebody left behind. One thread at a time.
class JournalWriter {
  public:
    /// Creates or empties the file. Throws std::filesystem_error.
    explicit JournalWriter(const std::filesystem::path& path);

    /// One line, or some with breaks between them. False when it could not be written whole;
    /// nothing follows a torn line, so all further ones are refused too.
    bool append(std::string_view line);

  private:
    FileDescriptor m_file;
    std::string m_buffer; ///< the line with its break, for one write
};

/// Whether a writer, of whatever process, still holds the journal.
bool isJournalBeingWritten(const std::filesystem::path& path);

/// The whole lines of a journal, without a last one that was torn. Throws std::filesystem_error
/// when it cannot be read.
std::vector<std::string> readJournal(const std::filesystem::path& path);

} // namespace vantro::base
