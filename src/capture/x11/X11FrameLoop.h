#pragma once

#include "capture/RecordingTarget.h"
#include "capture/ScreenStream.h"
#include "capture/pictures/FramePacer.h"
#include "capture/pictures/PictureFit.h"
#include "capture/pictures/PictureStore.h"
#include "capture/x11/X11Connection.h"
#include "capture/x11/X11PictureSource.h"
#include "capture/x11/X11WakeUp.h"

#include <expected>
#include <memory>
#include <stop_token>
#include <string>

namespace vantro::capture::x11 {

/// Turns changes of a picture source into samples of one size, for as long as `run` runs.
///
/// Sleeps until something has changed and the next frame is due. One thread at a time.
class X11FrameLoop {
  public:
    /// `source` uses the connection.
    X11FrameLoop(std::unique_ptr<X11Connection> connection,
                 std::unique_ptr<X11PictureSource> source, const RecordingTarget& target);

    /// Returns once a stop is asked for and `wakeUp` has been rung, or after `output` was told of
    /// an error.
    void run(const std::stop_token& stop, const X11WakeUp& wakeUp, ScreenStreamOutput& output);

  private:
    void drainEvents();
    std::expected<void, std::string> takeFrame(ScreenStreamOutput& output);

    std::unique_ptr<X11Connection> m_connection;
    std::unique_ptr<X11PictureSource> m_source;
    pictures::PictureFit m_fit;
    pictures::PictureStore m_pictures;
    pictures::FramePacer m_pacer;
    pictures::TileMap m_changed; // not yet told to m_pictures
    bool m_isOffered = false;    // the latest picture was refused and waits to be taken
};

} // namespace vantro::capture::x11
