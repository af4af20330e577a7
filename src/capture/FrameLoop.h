#pragma once

#include "capture/PictureSource.h"
#include "capture/RecordingTarget.h"
#include "capture/ScreenStream.h"
#include "capture/WakeUp.h"
#include "capture/pictures/FramePacer.h"
#include "capture/pictures/PictureFit.h"
#include "capture/pictures/PictureStore.h"

#include <memory>
#include <stop_token>

namespace vantro::capture {

/// Turns changes of a picture source into samples of one size, evenly paced, for as long as `run`
/// runs. A refused picture is offered again until it is taken; one that is not wanted is not made.
///
/// Sleeps until something has changed and the next frame is due. One thread at a time.
class FrameLoop {
  public:
    FrameLoop(std::unique_ptr<PictureSource> source, const RecordingTarget& target);

    /// Returns once a stop is asked for and `wakeUp` has been rung, or after `output` was told of
    /// an error.
    void run(const std::stop_token& stop, const WakeUp& wakeUp, ScreenStreamOutput& output);

  private:
    std::expected<void, std::string> takeFrame(ScreenStreamOutput& output);
    void putOff();
    base::HostTime timeOfPicture(base::HostTime now);

    std::unique_ptr<PictureSource> m_source;
    pictures::PictureFit m_fit;
    pictures::PictureStore m_pictures;
    pictures::FramePacer m_pacer;
    pictures::TileMap m_changed; // not yet told to m_pictures
    bool m_isOffered = false;    // the latest picture was refused or put off, and waits
    base::HostTime m_lastTime;   // of a sample; before the first, when the loop began
};

} // namespace vantro::capture
