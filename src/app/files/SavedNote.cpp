#include "app/files/SavedNote.h"

#include "app/files/RecordingFolder.h"
#include "archive/ArchivePath.h"
#include "base/Log.h"
#include "base/OutputFile.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <system_error>

namespace vantro::app::files {
namespace {

namespace fs = std::filesystem;

fs::path noteBeside(const fs::path& movie) {
    return movie.parent_path() / "saved";
}

bool isSameMovie(const fs::path& a, const fs::path& b) {
    std::error_code none;
    if (fs::equivalent(a, b, none))
        return true;
    // A copy on another file system, or in one file with its project.
    const auto copied = archive::find(b);
    return copied && fs::file_size(a, none) == copied->size && !none;
}

} // namespace

void noteSaved(const fs::path& movie, const fs::path& saved) {
    const auto folders = recordingFolders();
    if (std::ranges::find(folders, movie.parent_path()) == folders.end())
        return;
    try {
        base::writeWholeFile(noteBeside(movie), fs::absolute(saved).string());
    } catch (const fs::filesystem_error& error) { // it is listed though it is saved
        base::logWarning("{}", error.what());
    }
}

bool isSaved(const fs::path& movie) {
    std::ifstream file(noteBeside(movie), std::ios::binary);
    const std::string saved{std::istreambuf_iterator<char>(file), {}};
    if (saved.empty())
        return false;
    std::error_code none;
    // A project that was moved since is known by its link.
    return isSameMovie(movie, saved) || fs::hard_link_count(movie, none) > 1;
}

} // namespace vantro::app::files
