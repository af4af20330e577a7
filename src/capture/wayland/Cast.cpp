#include "capture/wayland/Cast.h"

#include "base/SerialQueue.h"
#include "capture/wayland/PixelWalk.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace vantro::capture::wayland {
namespace {

// A desktop that ends the sharing stops the stream first, and tells of it a moment later. Without
// that the stream has failed.
constexpr base::HostDuration longestGoodbye = std::chrono::milliseconds(500);
// A first picture that was sent before the stream stood is lost, at its start or after a change of
// size, and a still screen sends no second one. Compositors send theirs within a few frames.
constexpr base::HostDuration untilAskedAgain = std::chrono::milliseconds(400);
constexpr int mostTimesAsked = 5;
// A window that fades out changes each frame.
constexpr base::HostDuration restAfterChange = std::chrono::milliseconds(100);
constexpr base::HostDuration untilWoken = std::chrono::hours(1);
// Places that wait for the thread: a second of the fastest mouse, far beyond what a frame takes.
constexpr std::size_t mostCursorNews = 1024;

constexpr pipewire::Rate fastest{60, 1};

pipewire::StreamRequest requestFor(const PortalStream& source) {
    pipewire::FormatOffer offer{.layouts = castLayouts(),
                                .size = {{1920, 1080}, {1, 1}, {16'384, 16'384}},
                                .rate = {{0, 1}}, // as the screen changes
                                // Some take a screen's rate without its fraction, so nothing fixed.
                                .highestRate = {{fastest, {1, 1}, fastest}}};
    pipewire::StreamRequest request{.name = "Vantro",
                                    .role = "Screen",
                                    .node = source.node,
                                    .target = {},
                                    .offers = {std::move(offer)},
                                    .wantsCursor = true,
                                    .wantsCrop = true,
                                    .wantsTransform = true};
    if (source.serial) {
        request.node.reset();
        request.target = std::to_string(*source.serial);
    }
    return request;
}

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
        m_cast.runTasks();
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

/// A loop that other threads may wake, for as long as this lives.
class Cast::PublishedLoop {
  public:
    PublishedLoop(Cast& cast, pipewire::Loop& loop) : m_cast(cast) { set(&loop); }
    ~PublishedLoop() { set(nullptr); }
    PublishedLoop(const PublishedLoop&) = delete;
    PublishedLoop& operator=(const PublishedLoop&) = delete;

  private:
    void set(pipewire::Loop* loop) {
        const std::lock_guard lock(m_cast.m_mutex);
        m_cast.m_loop = loop;
    }

    Cast& m_cast;
};

Cast::Cast(std::unique_ptr<PortalSession> session, PortalGrant grant)
    : m_source(grant.stream), m_session(std::move(session)) {
    if (m_source.mode == model::CaptureMode::window)
        m_receiver.picture().keepWindowInPlace();
    m_session->onClosed([this] {
        m_isClosed = true;
        wakeUp();
    });
    m_thread = std::jthread([this, given = std::move(grant)](const std::stop_token& stop) mutable {
        run(stop, std::move(given));
    });
}

Cast::~Cast() {
    m_thread.request_stop();
    m_recordingStop.request_stop();
    wakeUp();
}

void Cast::run(const std::stop_token& stop, PortalGrant grant) {
    base::setThreadName("com.vantro.capture");
    try {
        pipewire::Loop loop;
        const PublishedLoop published(*this, loop);
        live(loop, stop, std::move(grant));
    } catch (const std::exception& error) {
        endWith(error.what());
    }
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
        m_changed.notify_all();
    }
    runTasks();
}

void Cast::live(pipewire::Loop& loop, const std::stop_token& stop, PortalGrant grant) {
    auto connection = pipewire::Connection::open(loop, std::move(grant.pipeWire));
    if (!connection)
        return endWith(connection.error().reason);
    m_connection = connection->get();
    pipewire::VideoStream stream(**connection, requestFor(m_source), m_receiver);
    m_stream = &stream;
    while (!stop.stop_requested()) {
        runTasks();
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
    if (m_receiver.awaitedSince() && m_timesAsked < mostTimesAsked)
        longestWait = std::min(longestWait, untilAskedAgain);
    loop.turn(m_receiver.failure() ? std::min(longestWait, longestGoodbye) : longestWait);
    takeCursorNews();
    if (const auto& loss = m_connection->loss())
        m_receiver.fail(loss->reason);
    askAgain();
    const auto& picture = m_receiver.picture();
    const std::lock_guard lock(m_mutex);
    if (!m_firstSize && !picture.isEmpty()) {
        m_firstSize = {picture.view().width, picture.view().height};
        m_changed.notify_all();
    }
}

bool Cast::takePointerFromCompositor(pipewire::Size picture) {
    onThread(std::packaged_task<void()>([this] { m_receiver.setPointerElsewhere(); }));
    m_cursor = CursorSession::of(m_source, picture, *this);
    return m_cursor != nullptr;
}

void Cast::note(const CursorNews& news) {
    m_cursorNews.with([&](auto& waiting) {
        if (waiting.size() == mostCursorNews)
            waiting.pop_front();
        waiting.push_back(news);
    });
    wakeUp();
}

void Cast::takeCursorNews() {
    const auto waiting = m_cursorNews.with([](auto& each) { return std::exchange(each, {}); });
    for (const CursorNews& news : waiting)
        news.place ? m_receiver.pointerAt(*news.place, news.arrival) : m_receiver.pointerLost();
}

void Cast::askAgain() {
    const auto& since = m_receiver.awaitedSince();
    const auto now = base::hostNow();
    if (!since)
        m_timesAsked = 0;
    else if (m_timesAsked < mostTimesAsked && now - std::max(*since, m_asked) >= untilAskedAgain) {
        m_stream->setActive(false);
        m_stream->setActive(true);
        m_asked = now;
        ++m_timesAsked;
    }
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
    std::shared_ptr<media::PixelBuffer> copy;
    onThread(std::packaged_task<void()>([&] {
        if (m_receiver.picture().isEmpty())
            return;
        const auto& view = m_receiver.picture().view();
        copy = media::PixelBuffer::allocate(media::PixelFormat::bgra, view.width, view.height);
        for (int y = 0; y < view.height; ++y)
            std::memcpy(copy->mutableRow(0, y), view.pixels + y * view.stride,
                        std::size_t{4} * view.width);
    }));
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
    onThread(std::packaged_task<void()>([&] { m_receiver.picture().crop(crop); }));
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
    onThread(std::packaged_task<void()>([&] {
        const std::lock_guard lock(m_mutex);
        if (m_isOver) {
            ended = m_failure.value_or(Failure());
            return;
        }
        m_recording = Recording{target, &output, m_recordingStop.get_token()};
        m_isRecording = true;
    }));
    if (ended)
        output.streamStopped(*ended);
}

void Cast::stopRecording() {
    m_recordingStop.request_stop();
    wakeUp();
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_isRecording || m_isOver; });
}

void Cast::followPointer(PointerOutput& output, PointerScale scale) {
    onThread(std::packaged_task<void()>([&] {
        takeCursorNews(); // so that what came before is not told as news
        m_receiver.setPointerOutput(&output, scale);
    }));
}

void Cast::leavePointer() {
    onThread(std::packaged_task<void()>([this] { m_receiver.setPointerOutput(nullptr); }));
}

void Cast::wakeUp() {
    const std::lock_guard lock(m_mutex);
    if (m_loop != nullptr)
        m_loop->wakeUp();
}

void Cast::onThread(std::packaged_task<void()> task) {
    auto done = task.get_future();
    {
        std::unique_lock lock(m_mutex);
        if (m_isOver) {
            lock.unlock();
            return task();
        }
        m_tasks.push_back(std::move(task));
        if (m_loop != nullptr)
            m_loop->wakeUp();
    }
    done.get();
}

void Cast::runTasks() {
    for (;;) {
        std::packaged_task<void()> task;
        {
            const std::lock_guard lock(m_mutex);
            if (m_tasks.empty())
                return;
            task = std::move(m_tasks.front());
            m_tasks.pop_front();
        }
        task();
    }
}

} // namespace vantro::capture::wayland
