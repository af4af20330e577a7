#include "capture/FrameLoop.h"

namespace vantro::capture {

FrameLoop::FrameLoop(std::unique_ptr<PictureSource> source, const RecordingTarget& target)
    : m_source(std::move(source))
    , m_fit(target.width, target.height)
    , m_pictures(target.width, target.height)
    , m_pacer(target.minimumFrameInterval)
    , m_changed(target.width, target.height) {}

void FrameLoop::run(const std::stop_token& stop, const WakeUp& wakeUp, ScreenStreamOutput& output) {
    m_lastTime = base::hostNow();
    while (!stop.stop_requested()) {
        if (const auto news = m_source->takeNews(); !news)
            return output.streamStopped(news.error());
        if (!m_isOffered && !m_source->hasChanges())
            m_source->wait(wakeUp.fd());
        else if (base::hostNow() < m_pacer.nextDeadline())
            m_source->wait(wakeUp.fd(), m_pacer.nextDeadline());
        else if (!output.wantsPicture())
            putOff();
        else if (const auto taken = takeFrame(output); !taken)
            return output.streamStopped(taken.error());
    }
}

std::expected<void, std::string> FrameLoop::takeFrame(ScreenStreamOutput& output) {
    const base::HostTime now = base::hostNow();
    m_pacer.frameTaken(now);
    const auto updated = m_source->update();
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
                              .presentationTime = timeOfPicture(now),
                              .pixels = m_pictures.picture(picture.pixels, picture.stride)};
    m_isOffered = output.screenSample(sample) == SampleDisposition::refused;
    return {};
}

/// Asks again at the next frame's time.
void FrameLoop::putOff() {
    m_pacer.frameTaken(base::hostNow());
    m_isOffered = true;
}

/// Times ascend. A picture from before the loop, or one that had to wait, counts as of now.
base::HostTime FrameLoop::timeOfPicture(base::HostTime now) {
    const auto told = m_source->pictureTime();
    const bool isNews = told && !m_isOffered && *told > m_lastTime && *told < now;
    m_lastTime = isNews ? *told : now;
    return m_lastTime;
}

} // namespace vantro::capture
