#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace vantro::test {

/// A screen of a compositor.
struct ScriptedOutput {
    int x = 0; ///< in the compositor's units
    int y = 0;
    int width = 640; ///< pixels, as the screen has them
    int height = 360;
    int transform = 0; ///< 1: it stands on its side
};

/// What a compositor has, and how it behaves.
struct CompositorScript {
    std::vector<ScriptedOutput> outputs{ScriptedOutput()};
    bool hasPointer = true;
    bool hasCursorSessions = true;
    bool stopsSessions = false; ///< each at once
    bool isMute = false;        ///< takes connections and answers nothing
};

/// Stands for a compositor that tells where the pointer is, which none that can run here does: it
/// speaks the genuine protocol, draws nothing, and moves its pointer when the test says so. Found
/// through the environment as long as it exists. Any thread calls it.
class ScriptedCompositor {
  public:
    /// In the folder of the environment's XDG_RUNTIME_DIR. Throws std::runtime_error.
    explicit ScriptedCompositor(const CompositorScript& script = {});
    /// As a crash would.
    ~ScriptedCompositor();
    ScriptedCompositor(const ScriptedCompositor&) = delete;
    ScriptedCompositor& operator=(const ScriptedCompositor&) = delete;

    /// Sessions that somebody has open.
    int cursorSessions();
    /// To a place on an output, in the pixels of its upright picture; from another one it leaves.
    void movePointer(std::size_t output, int x, int y);
    void stopSessions();
    void unplug(std::size_t output);
    void plugPointer(bool isThere);

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::test
