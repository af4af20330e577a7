#pragma once

#include <filesystem>
#include <string>

namespace vantro::app::files {

/// "vantro_" and the local date and time, for example vantro_2024-03-05_14-07-09.
std::string defaultRecordingName();

/// Where the folders of recordings lie: Vantro in the temporary directory.
std::filesystem::path recordingsDirectory();

/// A new, empty folder for one recording under the temporary directory ($TMPDIR, else /var/tmp: a
/// recording is large and must survive a reboot). A folder that cannot be made is not reported
/// here; the recorder then fails to open its file in it.
std::filesystem::path makeRecordingDirectory();

} // namespace vantro::app::files
