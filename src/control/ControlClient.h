#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vantro::control {

// Tell the Vantro that runs in this session, whichever process that is. Each throws
// std::runtime_error with a text for the user where there is none, or it does not do it.

/// Returns once the recording's files are finished.
void stopRecording();
void markZoom();
/// Pauses the recording, or resumes one that is paused.
void pauseRecording();
/// Stops a recording as above, else has the window start one.
void toggleRecording();

/// Has the window of a running Vantro come to the front, with these files opened. False where none
/// runs, or it does not answer soon.
bool handOver(const std::vector<std::filesystem::path>& files);
/// Has it do an action of the desktop entry; likewise.
bool handOverAction(const std::string& name);

} // namespace vantro::control
