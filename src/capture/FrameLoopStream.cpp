#include "capture/FrameLoopStream.h"

#include "base/SerialQueue.h"

namespace vantro::capture {

FrameLoopStream::FrameLoopStream(std::unique_ptr<PictureSource> source,
                                 const RecordingTarget& target)
    : m_loop(std::move(source), target) {}

FrameLoopStream::~FrameLoopStream() {
    stopCapture();
}

void FrameLoopStream::startCapture(ScreenStreamOutput& output) {
    m_thread = std::jthread([this, &output](const std::stop_token& stop) {
        base::setThreadName("com.vantro.capture");
        m_loop.run(stop, m_wakeUp, output);
    });
}

void FrameLoopStream::stopCapture() {
    if (!m_thread.joinable())
        return;
    m_thread.request_stop();
    m_wakeUp.ring();
    m_thread.join();
}

} // namespace vantro::capture
