#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantro::capture {

/// What a key does from anywhere, whatever program has the keyboard.
enum class GlobalAction : std::uint8_t {
    toggle, ///< starts a recording, or ends the one under way
    pause,  ///< pauses the recording under way, or resumes it
    mark,   ///< has the film zoom to where the pointer is
};

/// A key and what it does. A plain record.
struct GlobalKey {
    GlobalAction action = GlobalAction::toggle;
    /// Wished for, "Ctrl+Alt+R"; told, however the desktop calls it, or empty where it has none.
    std::string keys;
    bool operator==(const GlobalKey&) const = default;
};

/// How keys stand. A plain record.
struct GlobalKeysState {
    /// asking ──→ bound ──→ ended
    ///   ├──────→ refused
    ///   └──────→ failed
    enum class Kind : std::uint8_t { asking, bound, refused, failed, ended };
    Kind kind = Kind::asking;
    std::vector<GlobalKey> keys; ///< while bound
    std::string whyNot;          ///< failed or ended: one sentence for the user
    bool operator==(const GlobalKeysState&) const = default;
};

/// Where no program can have keys of its own.
inline constexpr const char* keyboardSettingsText =
    "This desktop gives no keys to programs: in its keyboard settings, bind keys to the commands "
    "“vantro toggle”, “vantro pause” and “vantro mark”.";

/// Keys that are bound for as long as this lives. One thread constructs and destroys it.
class GlobalKeys {
  public:
    /// Both are called on a thread of the keys' own, and never after the destruction.
    struct Listener {
        std::function<void(GlobalAction)> pressed;
        std::function<void(GlobalKeysState)> changed; ///< each step after asking, and other names
    };
    virtual ~GlobalKeys() = default;
};

/// The keys that are wished for unless the user takes others.
inline std::vector<GlobalKey> usualGlobalKeys() {
    return {{GlobalAction::toggle, "Ctrl+Alt+R"},
            {GlobalAction::pause, "Ctrl+Alt+P"},
            {GlobalAction::mark, "Ctrl+Alt+Z"}};
}

/// A key with the modifiers that are held with it. `symbol` is X11's number of the key's sign.
struct KeyCombination {
    bool control = false;
    bool alt = false;
    bool shift = false;
    bool super = false;
    std::uint32_t symbol = 0;
    bool operator==(const KeyCombination&) const = default;
};
/// Of "Ctrl+Alt+R"; "Meta" is the key with the desktop's logo. Nothing for keys that are not known,
/// and for signs with Shift or no modifier at all, which would be missed when typing.
std::optional<KeyCombination> parseKeys(std::string_view keys);

} // namespace vantro::capture
