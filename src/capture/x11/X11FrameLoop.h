#pragma once

#include "capture/FramePacer.h"
#include "capture/PictureComparison.h"
#include "capture/PictureStore.h"
#include "capture/ScreenStream.h"
#include "capture/x11/X11DamageSource.h"
#include "capture/x11/X11ScreenImage.h"
#include "capture/x11/X11WakeUp.h"

#include <expected>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace vantro {

/// Turns changes of a rectangle of the X screen into samples, for as long as `run` runs.
///
/// Sleeps until something has changed and the next frame is due. Opens everything at construction.
/// One thread at a time.
class X11FrameLoop {
  public:
    X11FrameLoop(X11Connection connection, PixelRect area, HostDuration minimumFrameInterval);

    /// Returns once a stop is asked for and `wakeUp` has been rung, or after `output` was told of
    /// an error.
    void run(const std::stop_token& stop, const X11WakeUp& wakeUp, ScreenStreamOutput& output);

  private:
    void drainEvents();
    bool hasWork() const;
    std::expected<void, std::string> takeFrame(ScreenStreamOutput& output);
    std::expected<void, std::string> updateImage();

    X11Connection m_connection;
    X11ScreenImage m_image;
    std::unique_ptr<X11DamageSource> m_damage; // null: the comparison does its work
    std::optional<PictureComparison> m_comparison;
    PictureStore m_pictures;
    FramePacer m_pacer;
    TileMap m_wholeArea;
    TileMap m_changed;        // not yet told to m_pictures
    bool m_isOffered = false; // the latest picture was refused and waits to be taken
};

} // namespace vantro
