#pragma once

namespace vantro::window {

/// While it exists, Qt's giving up (no display can be reached) ends the program with one line and
/// exit status 1 instead of an abort. Afterwards Qt's messages go to our log. Main thread.
class StartUpGuard {
  public:
    StartUpGuard();
    ~StartUpGuard();
    StartUpGuard(const StartUpGuard&) = delete;
    StartUpGuard& operator=(const StartUpGuard&) = delete;
};

/// Draws without OpenGL where that would be done by the processor anyway, which is many times
/// dearer. What the environment asks for is respected. Before the first window.
void chooseSceneGraph();

} // namespace vantro::window
