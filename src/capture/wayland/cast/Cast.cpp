#include "capture/wayland/cast/Cast.h"

#include "base/SerialQueue.h"
#include "capture/wayland/cast/CastOffer.h"

#include <algorithm>
#include <utility>

namespace vantro::capture::wayland {
namespace {

// A desktop that ends the sharing stops the stream first, and tells of it a moment later. Without
// that the stream has failed.
constexpr base::HostDuration longestGoodbye = std::chrono::milliseconds(500);
// A window that fades out changes each frame.
constexpr base::HostDuration restAfterChange = std::chrono::milliseconds(100);
constexpr base::HostDuration untilWoken = std::chrono::hours(1);

} // namespace

/// What the thread's receiver has, for a loop that makes frames of it. Waiting means to take in
/// what comes.
class Cast::Picture final : public PictureSource {
  public:
    explicit Picture(Cast& cast) : m_cast(cast) {}

    void wait(int /*wakeUp*/, std::optional<base::HostTime> deadline) override {
        m_cast.turn(deadline ? *deadline - base::hostNow() : untilWoken);
    }
    std::expected<void, std::string> takeNews() override {
        m_cast.m_tasks.run();
        if (const auto failure = m_cast.failureNow())
            return std::unexpected(*failure);
        return {};
    }
    bool hasChanges() const override { return m_isFirst || m_cast.m_receiver.hasNews(); }
    std::expected<bool, std::string> update() override {
        m_isFirst = false;
        m_cast.m_receiver.takeNews();
        return !m_cast.m_receiver.picture().isEmpty();
    }
    pictures::PictureView picture() const override { return m_cast.m_receiver.picture().view(); }
    std::optional<base::HostTime> pictureTime() const override {
        return m_cast.m_receiver.picture().time();
    }
    pictures::TileMap& changed() override { return m_cast.m_receiver.picture().changed(); }

  private:
    Cast& m_cast;
    bool m_isFirst = true; // a picture is there already
};

Cast::Cast(std::unique_ptr<PortalSession> session, PortalGrant grant)
    : m_source(grant.stream), m_session(std::move(session)) {
    if (m_source.mode == model::CaptureMode::window)
        m_receiver.picture().keepWindowInPlace();
    m_session->onClosed([this] {
        m_isClosed = true;
        m_tasks.wakeUp();
    });
    m_thread = std::jthread([this, given = std::move(grant)](const std::stop_token& stop) mutable {
        run(stop, std::move(given));
    });
}

Cast::~Cast() {
    m_thread.request_stop();
    m_recordingStop.request_stop();
    m_tasks.wakeUp();
}

void Cast::run(const std::stop_token& stop, PortalGrant grant) {
    base::setThreadName("com.vantro.capture");
    try {
        pipewire::Loop loop;
        const LoopTasks::Published published(m_tasks, loop);
        live(loop, stop, std::move(grant));
    } catch (const std::exception& error) {
        endWith(error.what());
    }
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
        m_changed.notify_all();
    }
    m_tasks.end();
}

void Cast::live(pipewire::Loop& loop, const std::stop_token& stop, PortalGrant grant) {
    auto connection = pipewire::Connection::open(loop, std::move(grant.pipeWire));
    if (!connection)
        return endWith(connection.error().reason);
    m_connection = connection->get();
    pipewire::VideoStream stream(**connection, requestFor(m_source), m_receiver);
    m_stream = &stream;
    while (!stop.stop_requested()) {
        m_tasks.run();
        if (const auto failure = failureNow())
            return endWith(*failure);
        if (const auto recording = std::exchange(m_recording, {}))
            recordFrames(*recording);
        else
            turn(untilWoken);
        noteChanges();
    }
}

void Cast::turn(base::HostDuration longestWait) {
    auto& loop = m_connection->loop();
    longestWait = m_reminder.longestWait(m_receiver.awaitedSince(), longestWait);
    loop.turn(m_receiver.failure() ? std::min(longestWait, longestGoodbye) : longestWait);
    m_cursorNews.deliver(m_receiver);
    if (const auto& loss = m_connection->loss())
        m_receiver.fail(loss->reason);
    m_reminder.turn(m_receiver.awaitedSince(), *m_stream);
    const auto& picture = m_receiver.picture();
    const std::lock_guard lock(m_mutex);
    if (!m_firstSize && !picture.isEmpty()) {
        m_firstSize = {picture.view().width, picture.view().height};
        m_changed.notify_all();
    }
}

bool Cast::takePointerFromCompositor(pipewire::Size picture) {
    m_tasks.onThread([this] { m_receiver.setPointerElsewhere(); });
    m_cursor = CursorSession::of(m_source, picture, m_cursorNews);
    return m_cursor != nullptr;
}

void Cast::noteChanges() {
    auto& changed = m_receiver.picture().changed();
    if (m_recording || changed.isEmpty())
        return;
    changed.clear();
    const std::lock_guard lock(m_mutex);
    m_lastChange = base::hostNow();
    m_changed.notify_all();
}

std::optional<Cast::Failure> Cast::failureNow() const {
    if (m_isClosed)
        return Failure();
    const auto& failure = m_receiver.failure();
    if (failure && base::hostNow() - failure->since >= longestGoodbye)
        return failure->reason;
    return {};
}

void Cast::endWith(const Failure& failure) {
    if (m_recording)
        m_recording->output->streamStopped(failure);
    m_recording.reset();
    const std::lock_guard lock(m_mutex);
    m_failure = failure;
    m_isRecording = false;
    m_changed.notify_all();
}

std::optional<Cast::Failure> Cast::failure() {
    const std::lock_guard lock(m_mutex);
    return m_failure;
}

std::expected<std::optional<pipewire::Size>, Cast::Failure>
Cast::awaitPicture(base::HostDuration longestWait, std::stop_token cancelled) {
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, std::move(cancelled), longestWait,
                       [this] { return m_firstSize || m_failure; });
    if (m_failure)
        return std::unexpected(*m_failure);
    return m_firstSize;
}

std::shared_ptr<const media::PixelBuffer> Cast::picture() {
    std::shared_ptr<const media::PixelBuffer> copy;
    m_tasks.onThread([&] { copy = m_receiver.picture().copy(); });
    return copy;
}

void Cast::awaitChange(base::HostDuration longestWait) {
    const auto since = base::hostNow();
    std::unique_lock lock(m_mutex);
    while (!m_failure) {
        auto until = since + longestWait;
        if (m_lastChange > since)
            until = std::min(until, m_lastChange + restAfterChange);
        const auto now = base::hostNow();
        if (now >= until)
            return;
        m_changed.wait_for(lock, until - now);
    }
}

void Cast::crop(const PictureCrop& crop) {
    m_tasks.onThread([&] { m_receiver.picture().crop(crop); });
}

void Cast::recordFrames(const Recording& recording) {
    const WakeUp none; // the thread's loop itself is woken
    try {
        FrameLoop(std::make_unique<Picture>(*this), recording.target)
            .run(recording.stop, none, *recording.output);
    } catch (const std::exception& error) {
        recording.output->streamStopped(error.what());
    }
    const std::lock_guard lock(m_mutex);
    m_isRecording = false;
    m_changed.notify_all();
}

void Cast::record(const RecordingTarget& target, ScreenStreamOutput& output) {
    m_recordingStop = std::stop_source();
    std::optional<Failure> ended;
    m_tasks.onThread([&] {
        const std::lock_guard lock(m_mutex);
        if (m_isOver) {
            ended = m_failure.value_or(Failure());
            return;
        }
        m_recording = Recording{target, &output, m_recordingStop.get_token()};
        m_isRecording = true;
    });
    if (ended)
        output.streamStopped(*ended);
}

void Cast::stopRecording() {
    m_recordingStop.request_stop();
    m_tasks.wakeUp();
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_isRecording || m_isOver; });
}

void Cast::followPointer(PointerOutput& output, PointerScale scale) {
    m_tasks.onThread([&] {
        m_cursorNews.deliver(m_receiver); // so that what came before is not told as news
        m_receiver.setPointerOutput(&output, scale);
    });
}

void Cast::leavePointer() {
    m_tasks.onThread([this] { m_receiver.setPointerOutput(nullptr); });
}

} // namespace vantro::capture::wayland
