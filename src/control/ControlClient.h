#pragma once

namespace vantro::control {

// Tell the Vantro that runs in this session, whichever process that is. Each throws
// std::runtime_error with a text for the user where there is none, or it does not do it.

/// Returns once the recording's files are finished.
void stopRecording();
void markZoom();
/// Stops a recording as above, else has the window start one.
void toggleRecording();

} // namespace vantro::control
