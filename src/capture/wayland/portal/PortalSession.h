#pragma once

#include "base/FileDescriptor.h"
#include "capture/wayland/portal/PortalBus.h"
#include "model/Choices.h"
#include "model/Geometry.h"

#include <condition_variable>
#include <cstdint>
#include <expected>
#include <map>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>

namespace vantro::capture::wayland {

/// Where the pointer is to be.
enum class PortalCursor : std::uint8_t { hidden = 1, inPicture = 2, apart = 4 };

/// What the user is to choose. A plain record.
struct PortalRequest {
    model::CaptureMode mode = model::CaptureMode::screen; ///< a screen, or else a window
    PortalCursor cursor = PortalCursor::hidden;           ///< one that the portal offers
    std::string restoreToken; ///< of an earlier choice that is to hold again; empty: none
};

/// What the user has chosen. A plain record.
struct PortalStream {
    std::uint32_t node = 0; ///< of PipeWire
    /// Of that node, where the portal tells it: unlike ids these are never used again.
    std::optional<std::uint64_t> serial;
    /// As asked for: only that kind is on offer, and some desktops tell another.
    model::CaptureMode mode = model::CaptureMode::screen;
    PortalCursor cursor = PortalCursor::hidden; ///< likewise
    bool isRestored = false; ///< an earlier choice that holds again: perhaps nobody was asked
    std::string id;          ///< the desktop's own name for it; empty where it has none
    // In the compositor's units; each may be absent.
    std::optional<model::Point> position;
    std::optional<model::Size> size;
};

struct PortalGrant {
    PortalStream stream;
    std::string restoreToken;      ///< for the next time; empty: there is none
    base::FileDescriptor pipeWire; ///< a connection on which the node can be seen
};

struct PortalRefusal {
    enum class Kind { takenBack, failed };
    Kind kind = Kind::failed;
    std::string reason; ///< of a failure, for the user
};

/// One session of the desktop's screen-cast portal, over a bus connection of its own. Destruction
/// closes it, and with it the desktop's dialog. One thread constructs, asks and destroys it.
class PortalSession {
  public:
    /// Throws std::runtime_error.
    PortalSession();
    ~PortalSession();

    /// Lets the desktop ask the user, who may take any time or never answer; `cancelled` gives up.
    /// Once.
    std::expected<PortalGrant, PortalRefusal> ask(const PortalRequest& request,
                                                  const std::stop_token& cancelled);
    /// `told` is called once, on any thread, when the desktop has ended the session; at once where
    /// that has happened before. Not destroyed inside of it.
    void onClosed(std::function<void()> told);

  private:
    /// idle ──→ asking ──→ granted
    ///   └─────────┴──────────┴───→ closed
    enum class State { idle, asking, granted, closed };
    enum class Step { create, select, start };
    using Results = std::map<std::string, sdbus::Variant>;
    struct Response {
        std::uint32_t code = 0;
        Results results;
    };

    void advance(State to);
    void closed();
    std::unique_ptr<sdbus::IProxy> makeRequest(Step step);
    /// Makes a call that is answered by a Response.
    template <typename... Arguments>
    std::expected<Results, PortalRefusal> call(Step step, const std::stop_token& cancelled,
                                               const Arguments&... arguments);
    std::expected<Results, PortalRefusal> await(Step step, const std::stop_token& cancelled);
    std::expected<PortalGrant, PortalRefusal> negotiate(const PortalRequest& request,
                                                        const std::stop_token& cancelled);
    base::FileDescriptor openPipeWire();

    PortalBus m_bus;
    std::unique_ptr<sdbus::IProxy> m_portal;
    std::unique_ptr<sdbus::IProxy> m_session;
    sdbus::Slot m_closedWatch;
    std::map<Step, std::unique_ptr<sdbus::IProxy>> m_requests;
    std::mutex m_mutex;
    std::condition_variable_any m_news;
    // Guarded by m_mutex:
    State m_state = State::idle;
    std::map<Step, Response> m_responses;
    std::function<void()> m_onClosed;
};

} // namespace vantro::capture::wayland
