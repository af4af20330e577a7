#include "capture/x11/X11FrameLoop.h"

namespace vantro::capture::x11 {

X11FrameLoop::X11FrameLoop(std::unique_ptr<X11Connection> connection,
                           std::unique_ptr<X11PictureSource> source, const RecordingTarget& target)
    : m_connection(std::move(connection))
    , m_source(std::move(source))
    , m_fit(target.width, target.height)
    , m_pictures(target.width, target.height)
    , m_pacer(target.minimumFrameInterval)
    , m_changed(target.width, target.height) {}

void X11FrameLoop::run(const std::stop_token& stop, const X11WakeUp& wakeUp,
                       ScreenStreamOutput& output) {
    while (!stop.stop_requested()) {
        drainEvents();
        if (m_connection->isLost()) {
            output.streamStopped("the connection to the display was lost");
            return;
        }
        if (!m_isOffered && !m_source->hasChanges()) {
            m_connection->wait(wakeUp.fd());
        } else if (base::hostNow() < m_pacer.nextDeadline()) {
            m_connection->wait(wakeUp.fd(), m_pacer.nextDeadline());
        } else if (const auto taken = takeFrame(output); !taken) {
            output.streamStopped(taken.error());
            return;
        }
    }
}

void X11FrameLoop::drainEvents() {
    while (const XcbEvent event = m_connection->pollEvent())
        m_source->handle(*event);
}

std::expected<void, std::string> X11FrameLoop::takeFrame(ScreenStreamOutput& output) {
    const base::HostTime now = base::hostNow();
    m_pacer.frameTaken(now);
    const auto updated = m_source->update();
    if (m_connection->isLost())
        return {}; // told of by the next round
    if (!updated)
        return std::unexpected(updated.error());
    if (!*updated)
        return {};
    const auto picture = m_fit.fit(m_source->picture(), m_source->changed(), m_changed);
    m_source->changed().clear();
    if (m_changed.isEmpty() && !m_isOffered)
        return {}; // what has changed lies elsewhere
    m_pictures.sourceChanged(m_changed);
    m_changed.clear();
    const ScreenSample sample{.status = FrameStatus::complete,
                              .presentationTime = now,
                              .pixels = m_pictures.picture(picture.pixels, picture.stride)};
    m_isOffered = output.screenSample(sample) == SampleDisposition::refused;
    return {};
}

} // namespace vantro::capture::x11
