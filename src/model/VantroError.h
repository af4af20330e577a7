#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace vantro::model {

/// What a user is told when something that they started fails: one text that says what went wrong
/// and, for some kinds, one that says what to do about it.
///
/// Thrown by capture and export, caught by the flows, which show it. `what()` is `description()`.
class VantroError : public std::runtime_error {
  public:
    enum class Kind {
        captureStartFailed,
        assetWriterFailed,
        exportFailed,
        projectSaveFailed,
        projectOpenFailed,
        screenRecordingPermissionDenied,
        noRecordingData,
        invalidSelection,
    };

    /// `message` is the failing operation's own text; kinds that carry none ignore it.
    explicit VantroError(Kind kind, std::string_view message = {});

    Kind kind() const { return m_kind; }
    /// The failing operation's own text, without the prefix of the kind.
    const std::string& message() const { return m_message; }
    std::string description() const { return what(); }
    /// Empty where the kind has no advice.
    std::string_view recoverySuggestion() const;

  private:
    Kind m_kind;
    std::string m_message;
};

} // namespace vantro::model
