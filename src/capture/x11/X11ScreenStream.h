#pragma once

#include "capture/x11/X11FrameLoop.h"

#include <thread>

namespace vantro::capture::x11 {

/// A picture of an X display as a stream. Its thread and connection are its own.
class X11ScreenStream final : public ScreenStream {
  public:
    X11ScreenStream(std::unique_ptr<X11Connection> connection,
                    std::unique_ptr<X11PictureSource> source, const RecordingTarget& target);
    ~X11ScreenStream() override;

    void startCapture(ScreenStreamOutput& output) override;
    void stopCapture() override;

  private:
    X11FrameLoop m_loop;
    X11WakeUp m_wakeUp;
    std::jthread m_thread;
};

} // namespace vantro::capture::x11
