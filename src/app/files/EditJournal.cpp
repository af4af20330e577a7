#include "app/files/EditJournal.h"

#include "base/Log.h"
#include "base/OutputFile.h"
#include "base/UserFolders.h"
#include "model/Json.h"
#include "model/Uuid.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include <fmt/format.h>

namespace vantro::app::files {
namespace {

namespace fs = std::filesystem;

/// What the file begins with. Paths, each ended by a zero byte, may be of any encoding.
struct Header {
    static constexpr std::size_t fields = 3;
    std::string movie;
    std::string package; ///< empty for none
    std::string picture; ///< the background's; empty for none
};

std::string picturePath(const model::Edit& edit) {
    const auto* image = std::get_if<model::BackgroundImageSource>(&edit.background.type);
    return image != nullptr && !image->isBuiltIn ? image->path.string() : std::string();
}

JournalledEdit parsed(std::string_view bytes) {
    std::array<std::string, Header::fields> header;
    for (auto& field : header) {
        const auto end = bytes.find('\0');
        if (end == std::string_view::npos)
            throw std::runtime_error("it breaks off");
        field = bytes.substr(0, end);
        bytes.remove_prefix(end + 1);
    }
    const auto& [movie, package, picture] = header;
    JournalledEdit edit{.project = model::decodeProject(bytes, movie), .package = {}};
    if (!package.empty())
        edit.package = package;
    if (!picture.empty())
        edit.project.edit.background.type = model::BackgroundImageSource::custom(picture);
    return edit;
}

} // namespace

fs::path editJournals() {
    const auto state = base::userFolder("XDG_STATE_HOME", ".local/state");
    return state ? *state / "vantro/edits" : fs::path();
}

model::RecordingMetadata outlineOf(const model::RecordingMetadata& metadata) {
    return {.startTime = metadata.startTime,
            .endTime = metadata.endTime,
            .captureRect = metadata.captureRect,
            .displayID = metadata.displayID,
            .frameRate = metadata.frameRate,
            .displayScaleFactor = metadata.displayScaleFactor,
            .cursorPositions = {},
            .clickEvents = {},
            .hasSystemAudio = metadata.hasSystemAudio,
            .hasMicrophoneAudio = metadata.hasMicrophoneAudio,
            .hasWebcam = metadata.hasWebcam};
}

EditJournal::EditJournal(fs::path folder, std::shared_ptr<const ProjectLock> lock)
    : m_folder(std::move(folder)), m_lock(std::move(lock)) {}

fs::path EditJournal::file() const {
    return m_folder / "edit";
}

fs::path EditJournal::fileSetAside() const {
    return m_folder / "edit-unreadable";
}

std::shared_ptr<EditJournal> EditJournal::begin(const fs::path& directory) {
    if (directory.empty())
        throw std::runtime_error("there is no home folder to keep them in");
    fs::create_directories(directory);
    fs::permissions(directory, fs::perms::owner_all);
    auto folder = directory / model::Uuid::random().toString();
    fs::create_directory(folder);
    auto lock = ProjectLock::take(folder);
    if (!lock)
        throw std::runtime_error(fmt::format("{}: {}", folder.string(), lock.error()));
    return std::make_shared<EditJournal>(std::move(folder), std::move(*lock));
}

std::vector<std::shared_ptr<EditJournal>> EditJournal::leftBehind(const fs::path& directory) {
    std::vector<std::shared_ptr<EditJournal>> found;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(directory, none)) {
        auto lock = ProjectLock::take(entry.path());
        if (!lock || !entry.is_directory(none))
            continue;
        auto journal = std::make_shared<EditJournal>(entry.path(), std::move(*lock));
        if (fs::exists(journal->file(), none))
            found.push_back(std::move(journal));
        else if (!fs::exists(journal->fileSetAside(), none))
            fs::remove_all(entry.path(), none);
    }
    std::ranges::sort(found, std::ranges::greater(), [](const auto& journal) {
        std::error_code gone;
        return fs::last_write_time(journal->file(), gone);
    });
    return found;
}

void EditJournal::write(const JournalledEdit& edit) const {
    const auto& project = edit.project;
    const Header header{.movie = project.recording.movie().string(),
                        .package = edit.package ? edit.package->string() : std::string(),
                        .picture = picturePath(project.edit)};
    std::string bytes;
    for (const auto& field : {header.movie, header.package, header.picture})
        bytes.append(field).push_back('\0');
    bytes += model::encodeProject(
        {.name = project.name,
         .recording = {project.recording.movie(), outlineOf(project.recording.metadata())},
         .edit = project.edit});
    base::writeWholeFile(file(), bytes);
}

JournalledEdit EditJournal::read() const {
    std::ifstream input(file(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(input), {}};
    try {
        return parsed(bytes);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(fmt::format("{}: {}", file().string(), error.what()));
    }
}

void EditJournal::setAside() const {
    std::error_code stays; // and is told once more
    fs::rename(file(), fileSetAside(), stays);
}

void EditJournal::remove() const {
    fs::remove_all(m_folder);
}

} // namespace vantro::app::files
