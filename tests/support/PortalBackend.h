#pragma once

#include "support/KeysBackend.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>
namespace vantro::test {

/// How a desktop and its user behave.
struct PortalScript {
    // Bits as the portal's interface has them. These two hold from the portal's start.
    std::uint32_t sourceTypes = 3;
    std::uint32_t cursorModes = 7;

    enum Answer : std::uint32_t { grants = 0, takesBack = 1, fails = 2, never = 3 };
    Answer answer = grants;
    std::uint32_t sourceType = 1; ///< what is granted
    std::uint32_t node = 0;
    std::string id = "screen-1"; ///< empty: the desktop tells none
    std::optional<std::pair<int, int>> position = std::pair(0, 0);
    std::optional<std::pair<int, int>> size{};
    /// Has keys for programs; holds from the portal's start.
    bool hasKeys = false;
    /// To whoever wants the cameras.
    Answer cameraAnswer = grants;
};

/// What a portal's front end was told to do.
struct PortalLog {
    int started = 0;         ///< dialogs
    int restored = 0;        ///< of those, by a token
    int closed = 0;          ///< sessions, by the program
    int withdrawn = 0;       ///< dialogs, by the program
    std::uint32_t types = 0; ///< asked for last
    std::uint32_t cursorMode = 0;
};

/// Stands for the part of the screen-cast portal that belongs to a desktop, and for its user. The
/// genuine portal talks to it. Any thread calls it.
class PortalBackend {
  public:
    static constexpr const char* name = "org.freedesktop.impl.portal.desktop.scripted";

    /// On the session bus of the environment.
    explicit PortalBackend(const PortalScript& script);
    ~PortalBackend();
    PortalBackend(const PortalBackend&) = delete;
    PortalBackend& operator=(const PortalBackend&) = delete;

    /// From the next dialog on.
    void setScript(const PortalScript& script);
    PortalLog log() const;
    /// As the desktop's own button ends all sharing.
    void stopSharing();
    /// Where the script has keys.
    KeysBackend& keys() { return *m_keys; }

  private:
    using Options = std::map<std::string, sdbus::Variant>;
    using Answer = sdbus::Result<std::uint32_t, Options>;

    void offerScreenCast();
    void offerAccess();
    void putOff(Answer&& answer, const std::string& request);
    void openSession(const std::string& path);
    void start(Answer&& answer, const std::string& request, const Options& selected);
    Options grant(const Options& selected) const;

    std::unique_ptr<sdbus::IConnection> m_connection;
    std::unique_ptr<sdbus::IObject> m_object;
    std::unique_ptr<KeysBackend> m_keys;
    mutable std::mutex m_mutex;
    // Guarded by m_mutex:
    PortalScript m_script;
    PortalLog m_log;
    std::map<std::string, std::unique_ptr<sdbus::IObject>> m_sessions;
    std::map<std::string, Options> m_selected;
    std::vector<std::unique_ptr<sdbus::IObject>> m_requests;
    std::vector<Answer> m_unanswered;
};

} // namespace vantro::test
