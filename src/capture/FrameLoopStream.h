#pragma once

#include "capture/FrameLoop.h"

#include <thread>

namespace vantro::capture {

/// A picture source as a stream, on a thread of its own.
class FrameLoopStream final : public ScreenStream {
  public:
    FrameLoopStream(std::unique_ptr<PictureSource> source, const RecordingTarget& target);
    ~FrameLoopStream() override;

    void startCapture(ScreenStreamOutput& output) override;
    void stopCapture() override;

  private:
    FrameLoop m_loop;
    WakeUp m_wakeUp;
    std::jthread m_thread;
};

} // namespace vantro::capture
