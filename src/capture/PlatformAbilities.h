#pragma once

#include <string>

namespace vantro::capture {

/// Whether a desktop can do something; where it cannot, one sentence for the user says why.
struct Ability {
    std::string whyNot;   ///< empty: it can
    std::string remark{}; ///< where it can: a sentence on how, if there is something to say

    bool isAvailable() const { return whyNot.empty(); }
    bool operator==(const Ability&) const = default;
};

/// What can be recorded on a desktop, as it is now. A plain record.
struct PlatformAbilities {
    Ability screens;
    Ability areas;
    Ability windows;
    /// Displays and windows can be listed; otherwise the desktop asks the user itself what to
    /// share.
    Ability listsContent;
    Ability ownWindowsLeftOut; ///< otherwise they are hidden while a screen is recorded
    Ability pointer;           ///< where it is, apart from the picture
    Ability clicks;
    // Told apart from what the display can do:
    Ability systemSound;
    Ability microphone;
    Ability camera;
    Ability globalKeys; ///< that work whatever program has the keyboard
    bool operator==(const PlatformAbilities&) const = default;
};

/// Of a desktop that cannot be reached.
PlatformAbilities noAbilities(const std::string& whyNot);

} // namespace vantro::capture
