#include "capture/x11/X11FrameLoop.h"

namespace vantro {

X11FrameLoop::X11FrameLoop(X11Connection connection, PixelRect area,
                           HostDuration minimumFrameInterval)
    : m_connection(std::move(connection))
    , m_image(m_connection, area)
    , m_damage(X11DamageSource::create(m_connection, area))
    , m_pictures(area.width, area.height)
    , m_pacer(minimumFrameInterval)
    , m_wholeArea(area.width, area.height)
    , m_changed(area.width, area.height) {
    m_wholeArea.addAll();
    m_changed.addAll(); // the first picture is whole
    if (!m_damage)
        m_comparison.emplace(area.width, area.height);
}

void X11FrameLoop::run(const std::stop_token& stop, const X11WakeUp& wakeUp,
                       ScreenStreamOutput& output) {
    while (!stop.stop_requested()) {
        drainEvents();
        if (m_connection.isLost()) {
            output.streamStopped("the connection to the display was lost");
            return;
        }
        if (!hasWork()) {
            m_connection.wait(wakeUp.fd());
        } else if (hostNow() < m_pacer.nextDeadline()) {
            m_connection.wait(wakeUp.fd(), m_pacer.nextDeadline());
        } else if (const auto taken = takeFrame(output); !taken) {
            output.streamStopped(taken.error());
            return;
        }
    }
}

void X11FrameLoop::drainEvents() {
    while (const XcbEvent event = m_connection.pollEvent())
        if (m_damage)
            m_damage->handle(*event);
}

bool X11FrameLoop::hasWork() const {
    return m_isOffered || !m_damage || m_damage->hasChanges();
}

std::expected<void, std::string> X11FrameLoop::takeFrame(ScreenStreamOutput& output) {
    const HostTime now = hostNow();
    m_pacer.frameTaken(now);
    if (auto updated = updateImage(); !updated)
        return updated;
    if (m_changed.isEmpty() && !m_isOffered)
        return {}; // what has changed lies elsewhere
    m_pictures.sourceChanged(m_changed);
    m_changed.clear();
    const ScreenSample sample{.status = FrameStatus::complete,
                              .presentationTime = now,
                              .pixels = m_pictures.picture(m_image.pixels(), m_image.stride())};
    m_isOffered = output.screenSample(sample) == SampleDisposition::refused;
    return {};
}

std::expected<void, std::string> X11FrameLoop::updateImage() {
    if (m_damage) {
        m_damage->collect(m_changed);
        return m_image.fetch(m_changed);
    }
    auto fetched = m_image.fetch(m_wholeArea);
    if (fetched)
        m_comparison->collect(m_image.pixels(), m_image.stride(), m_changed);
    return fetched;
}

} // namespace vantro
