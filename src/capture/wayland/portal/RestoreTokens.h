#pragma once

#include "model/Choices.h"
#include "model/Geometry.h"

#include <filesystem>
#include <optional>
#include <string>

namespace vantro::capture::wayland {

/// What a user has chosen in the desktop's dialog, as far as it can be recognized. A plain record.
struct ChosenSource {
    std::string id; ///< the desktop's own name for it; empty where it has none
    std::optional<model::Point> position; // of the compositor's units, as is the size
    std::optional<model::Size> size;
    int width = 0; ///< of its first picture, pixels; 0 until there was one
    int height = 0;
    bool operator==(const ChosenSource&) const = default;
};

/// Whether one can be taken for the other.
bool isSame(const ChosenSource& remembered, const ChosenSource& now);

/// A choice that the desktop can be asked to let hold again.
struct RememberedChoice {
    std::string token;
    ChosenSource source;
};

/// The choices of this user, one for each kind of source, in a file. Each token is good for one use
/// only, so it is forgotten when it is taken. The desktop knows a token by the application that it
/// thinks we are, which is another when we are started from a terminal: choices of the one do not
/// meet those of the other. A choice that cannot be read or kept is none: the desktop asks again.
/// One thread at a time.
class RestoreTokens {
  public:
    /// `application` is what the desktop takes us for; empty: for none.
    RestoreTokens(std::filesystem::path file, std::string application);

    /// Of this user and this process.
    static RestoreTokens usual();

    /// An area is chosen on a screen, so these are of one kind.
    std::optional<RememberedChoice> take(model::CaptureMode mode);
    void keep(model::CaptureMode mode, const RememberedChoice& choice);

  private:
    std::string key(model::CaptureMode mode) const;

    std::filesystem::path m_file; ///< empty where there is no home
    std::string m_application;
};

/// The application that the desktop's session manager has started a process as, by the contents of
/// its /proc/PID/cgroup; empty where it was started otherwise.
std::string applicationOf(const std::string& cgroups);

} // namespace vantro::capture::wayland
