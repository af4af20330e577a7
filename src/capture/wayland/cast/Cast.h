#pragma once

#include "capture/FrameLoop.h"
#include "capture/wayland/cast/CastReceiver.h"
#include "capture/wayland/cast/CursorMailbox.h"
#include "capture/wayland/cast/LoopTasks.h"
#include "capture/wayland/cast/PictureReminder.h"
#include "capture/wayland/compositor/CursorSession.h"
#include "capture/wayland/portal/PortalSession.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>

namespace vantro::capture::wayland {

/// What a user has chosen in the desktop's dialog, live from then on until this is destroyed: the
/// one owner of the portal's session and of its stream. A thread of its own, "com.vantro.capture",
/// takes in what arrives and, while it is recorded, makes the frames, so that no picture is locked
/// or copied twice. One other thread at a time calls it.
class Cast {
  public:
    /// Why it shows nothing more, for the user; empty when the user has ended it by the desktop's
    /// own means.
    using Failure = std::string;

    Cast(std::unique_ptr<PortalSession> session, PortalGrant grant);
    /// Portals rely on it that the stream ends before the session.
    ~Cast();
    Cast(const Cast&) = delete;
    Cast& operator=(const Cast&) = delete;

    const PortalStream& source() const { return m_source; }
    /// Has the compositor itself tell where the pointer is. False when it does not, or it is in
    /// doubt which screen this is. Before recording and pointer, once the size is known.
    bool takePointerFromCompositor(pipewire::Size picture);
    bool tellsPointer() const { return m_source.cursor == PortalCursor::apart || m_cursor; }
    std::optional<Failure> failure();
    /// Waits for the first picture and gives its size; nothing when `cancelled`.
    std::expected<std::optional<pipewire::Size>, Failure>
    awaitPicture(base::HostDuration longestWait, std::stop_token cancelled);

    /// What it shows now, before it is recorded; null before the first picture.
    std::shared_ptr<const media::PixelBuffer> picture();
    /// Waits until the picture has changed and then rested for a moment, but no longer than that.
    void awaitChange(base::HostDuration longestWait);
    /// Shows only that part, from now on. Before recording and pointer.
    void crop(const PictureCrop& crop);

    /// Frames go to `output`, on the cast's thread, until the stop or an error. Once at a time.
    void record(const RecordingTarget& target, ScreenStreamOutput& output);
    /// No frame comes after this has returned. Harmless when repeated.
    void stopRecording();
    /// The pointer's places go to `output`, on the cast's thread; at first the newest.
    void followPointer(PointerOutput& output, PointerScale scale);
    /// None comes after this has returned. Harmless when repeated.
    void leavePointer();

  private:
    class Picture;

    struct Recording {
        RecordingTarget target;
        ScreenStreamOutput* output = nullptr;
        std::stop_token stop;
    };

    void run(const std::stop_token& stop, PortalGrant grant);
    void live(pipewire::Loop& loop, const std::stop_token& stop, PortalGrant grant);
    void recordFrames(const Recording& recording);
    void turn(base::HostDuration longestWait);
    void noteChanges();
    void endWith(const Failure& failure);
    std::optional<Failure> failureNow() const;

    const PortalStream m_source;
    std::atomic<bool> m_isClosed = false; // by the desktop
    std::stop_source m_recordingStop;
    // The thread's:
    CastReceiver m_receiver;
    std::optional<Recording> m_recording; // that is to begin
    // While it is live:
    pipewire::Connection* m_connection = nullptr;
    pipewire::VideoStream* m_stream = nullptr;
    PictureReminder m_reminder;

    LoopTasks m_tasks;
    CursorMailbox m_cursorNews{[this] { m_tasks.wakeUp(); }};
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    // Guarded by m_mutex:
    std::optional<pipewire::Size> m_firstSize;
    std::optional<Failure> m_failure; // of a stream that has ended
    base::HostTime m_lastChange;      // of the picture while it is not recorded
    bool m_isRecording = false;
    bool m_isOver = false; // the thread takes no more tasks

    // Destroyed first, the thread before the portal's session.
    std::unique_ptr<PortalSession> m_session;
    std::jthread m_thread;
    std::unique_ptr<CursorSession> m_cursor; // before the thread: it wakes that
};

} // namespace vantro::capture::wayland
