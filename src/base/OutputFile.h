#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <stop_token>

namespace vantro::base {

/// How somebody follows the finishing of a file, and can give it up.
struct Finishing {
    std::stop_token cancelled{};
    /// Is told how much is done, 0 to 1, ascending, on the thread that finishes.
    std::function<void(double fraction)> progress{};

    /// The part of the work from `from` to `to`.
    Finishing part(double from, double to) const;
    void report(double fraction) const;
};

/// A file that appears under its name only when it is whole.
///
/// Writers fill `temporaryPath()`, which lies beside the target; `commit` syncs it to disk and
/// renames it over the target. Destruction without `commit` removes the temporary file, so a
/// failed or cancelled writer leaves the earlier file untouched. Errors are std::filesystem_error
/// with the target's path. Any one thread.
class OutputFile {
  public:
    explicit OutputFile(std::filesystem::path target);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    const std::filesystem::path& target() const { return m_target; }
    const std::filesystem::path& temporaryPath() const { return m_temporary; }
    /// False when it was cancelled before the rename; nothing has happened to the target then.
    bool commit(const Finishing& finishing = {});

  private:
    std::filesystem::path m_target;
    std::filesystem::path m_temporary;
    bool m_committed = false;
};

/// Returns when the file's content is safe on disk. Throws std::filesystem_error.
void syncToDisk(const std::filesystem::path& file);

/// Writes `bytes` as the whole new content of `target`, through an OutputFile.
void writeWholeFile(const std::filesystem::path& target, std::span<const char> bytes);

} // namespace vantro::base
