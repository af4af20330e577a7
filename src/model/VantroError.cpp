#include "model/VantroError.h"

namespace vantro::model {
namespace {

using Kind = VantroError::Kind;

std::string describe(Kind kind, std::string_view message) {
    std::string payload(message);
    switch (kind) {
    case Kind::captureStartFailed:
        return "Failed to start screen capture: " + payload;
    case Kind::assetWriterFailed:
        return "Failed to write video: " + payload;
    case Kind::exportFailed:
        return "Export failed: " + payload;
    case Kind::projectSaveFailed:
        return "Failed to save project: " + payload;
    case Kind::projectOpenFailed:
        return "Failed to open project: " + payload;
    case Kind::screenRecordingPermissionDenied:
        return "Screen recording permission is required to capture your screen.";
    case Kind::noRecordingData:
        return "No recording data available.";
    case Kind::invalidSelection:
        return "Invalid screen area selected.";
    }
    return payload;
}

} // namespace

VantroError::VantroError(Kind kind, std::string_view message)
    : std::runtime_error(describe(kind, message)), m_kind(kind), m_message(message) {}

std::string_view VantroError::recoverySuggestion() const {
    switch (m_kind) {
    case Kind::captureStartFailed:
        return "Try selecting a different area or restarting the app.";
    case Kind::screenRecordingPermissionDenied:
        return "Allow screen sharing for Vantro in your desktop's settings, then try again.";
    case Kind::noRecordingData:
        return "Record a screen capture first before previewing or exporting.";
    default:
        return {};
    }
}

} // namespace vantro::model
