#pragma once

#include "capture/TargetQuestion.h"
#include "capture/wayland/cast/Cast.h"
#include "capture/wayland/portal/RestoreTokens.h"

#include <functional>
#include <memory>
#include <thread>

namespace vantro::capture::wayland {

/// How the pointer comes into a recording: as the portal has it, or, where that can only hide it,
/// from the compositor.
struct PointerWay {
    PortalCursor asked = PortalCursor::hidden;
    /// Where the compositor's is no help after all.
    std::optional<PortalCursor> instead{};
};

/// Asks the user, by the desktop's own dialog, what to record. On a thread of its own.
class CastQuestion final : public TargetQuestion {
  public:
    /// The answer; with a target comes what is live.
    using Answer = std::function<void(TargetResult, std::shared_ptr<Cast>)>;

    CastQuestion(RecordingRequest request, PointerWay pointer, RestoreTokens tokens, Answer answer);

  private:
    using Picked = std::expected<std::shared_ptr<Cast>, PortalRefusal>;

    void run(const std::stop_token& cancelled);
    Picked pick(const std::optional<RememberedChoice>& remembered,
                const std::stop_token& cancelled);
    Picked negotiate(std::string& token, const std::stop_token& cancelled);
    Picked open(PortalCursor cursor, std::string& token, bool isRestored,
                const std::stop_token& cancelled);
    void answerWith(const std::shared_ptr<Cast>& cast);

    const RecordingRequest m_request;
    const PointerWay m_pointer;
    RestoreTokens m_tokens;
    const Answer m_answer;
    pipewire::Size m_size; // of the first picture
    std::jthread m_thread;
};

} // namespace vantro::capture::wayland
