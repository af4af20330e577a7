#pragma once

#include "capture/ChosenContent.h"
#include "capture/PlatformAbilities.h"
#include "capture/PointerSource.h"
#include "capture/ScreenStream.h"
#include "capture/ShareableContent.h"
#include "capture/TargetQuestion.h"

#include <expected>
#include <memory>
#include <stop_token>
#include <string>

namespace vantro::capture {

/// Everything that a recording needs from one desktop. Failures carry a text for the user. One
/// thread at a time; what it hands out is independent of it and of each other.
class CapturePlatform {
  public:
    enum class WindowIcons { leftOut, included };

    virtual ~CapturePlatform() = default;

    virtual PlatformAbilities abilities() = 0;
    /// Whether it still can be asked; if not, another connection may help. Cheap enough for the
    /// window's thread.
    virtual bool isConnected() = 0;
    /// The main one first. Cheap enough for the window's thread. An error where content cannot be
    /// listed.
    virtual std::expected<std::vector<ShareableDisplay>, std::string> displays() = 0;
    /// Icons make it dear.
    virtual std::expected<ShareableContent, std::string>
    shareableContent(WindowIcons icons = WindowIcons::leftOut) = 0;

    /// Finds what a request names. `answer` is called once, on any thread, perhaps before this
    /// returns. Where content can be listed, it is looked up there at once; a desktop that asks the
    /// user itself overrides this.
    virtual std::unique_ptr<TargetQuestion> findTarget(const RecordingRequest& request,
                                                       TargetAnswer answer);

    /// What the user was asked for last and no stream has taken over; nothing otherwise.
    virtual std::optional<ChosenContent> chosen() { return {}; }
    /// Whether that can still be recorded: the user may end the sharing by the desktop's own means.
    virtual bool isShared() { return true; }
    /// Returns once that no longer shows our own windows, which have just been hidden; after half a
    /// second at the latest.
    virtual void awaitHiddenWindows() {}
    /// Settles whether clicks are told, where the user has to be asked for that; refusing it
    /// hinders nothing. Returns when that is known or `cancelled`.
    virtual void settleClicks(const std::stop_token& /*cancelled*/) {}

    /// A target that the user was asked for is good for one stream. The error is empty when the
    /// user has ended the sharing meanwhile, by the desktop's own means.
    virtual std::expected<std::unique_ptr<ScreenStream>, std::string>
    makeScreenStream(const RecordingTarget& target) = 0;
    /// After the stream.
    virtual std::expected<std::unique_ptr<PointerSource>, std::string>
    makePointerSource(const RecordingTarget& target) = 0;
};

/// Waits for the target of a request; nothing when `cancelled` or the user took it back. Throws
/// VantroError.
std::optional<RecordingTarget> awaitTarget(CapturePlatform& platform,
                                           const RecordingRequest& request,
                                           std::stop_token cancelled = {});

} // namespace vantro::capture
