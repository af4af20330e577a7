#pragma once

#include "capture/x11/X11FrameLoop.h"

#include <thread>

namespace vantro {

/// A rectangle of an X screen as a stream. Its thread and connection are its own.
class X11ScreenStream final : public ScreenStream {
  public:
    X11ScreenStream(X11Connection connection, PixelRect area, HostDuration minimumFrameInterval);
    ~X11ScreenStream() override;

    void startCapture(ScreenStreamOutput& output) override;
    void stopCapture() override;

  private:
    X11FrameLoop m_loop;
    X11WakeUp m_wakeUp;
    std::jthread m_thread;
};

} // namespace vantro
