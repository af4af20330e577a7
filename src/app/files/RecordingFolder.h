#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vantro::app::files {

// A recording is made in a folder of its own. The folders of all recordings lie in $TMPDIR/Vantro
// where TMPDIR is set, else in $XDG_DATA_HOME/vantro/Recordings (by default below ~/.local/share),
// and where that cannot be written in /var/tmp/vantro-UID/Recordings: recordings are large and
// private, and must survive a reboot. Whoever else may write there, what belongs to somebody else
// is never used. Where the user has chosen another folder for recordings, a link in the usual one
// leads to each that was made there, so every program finds it whatever is chosen since. Any
// thread.

/// "vantro_" and the local date and time, for example vantro_2024-03-05_14-07-09.
std::string defaultRecordingName(std::time_t when = std::time(nullptr));

/// Where the next recording is going to be made.
std::filesystem::path recordingsDirectory();
/// The folders of this user's recordings, wherever they were made.
std::vector<std::filesystem::path> recordingFolders();

/// A new, empty folder for one recording, which only this user can look into. A folder that cannot
/// be made is not reported here; the recorder then fails to open its file in it.
std::filesystem::path
makeRecordingDirectory(const std::optional<std::filesystem::path>& chosen = {});
/// Why no recording can be made in a folder that the user has chosen, with its path; empty when one
/// can.
std::string recordingsFolderProblem(const std::filesystem::path& chosen);

/// The bytes that the files of the recording with this movie take.
std::uintmax_t recordingSize(const std::filesystem::path& movie);
/// Deletes the files of the recording with this movie, if it lies where recordings are made. Throws
/// std::runtime_error, also while another program has it open.
void deleteRecording(const std::filesystem::path& movie);

} // namespace vantro::app::files
