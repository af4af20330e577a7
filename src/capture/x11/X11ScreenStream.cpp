#include "capture/x11/X11ScreenStream.h"

#include "base/SerialQueue.h"

namespace vantro::capture::x11 {

X11ScreenStream::X11ScreenStream(std::unique_ptr<X11Connection> connection,
                                 std::unique_ptr<X11PictureSource> source,
                                 const RecordingTarget& target)
    : m_loop(std::move(connection), std::move(source), target) {}

X11ScreenStream::~X11ScreenStream() {
    stopCapture();
}

void X11ScreenStream::startCapture(ScreenStreamOutput& output) {
    m_thread = std::jthread([this, &output](const std::stop_token& stop) {
        base::setThreadName("com.vantro.capture");
        m_loop.run(stop, m_wakeUp, output);
    });
}

void X11ScreenStream::stopCapture() {
    if (!m_thread.joinable())
        return;
    m_thread.request_stop();
    m_wakeUp.ring();
    m_thread.join();
}

} // namespace vantro::capture::x11
