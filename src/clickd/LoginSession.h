#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include <sdbus-c++/sdbus-c++.h>
#include <sys/types.h>

namespace vantro::clickd {

/// The graphical session of a user, as logind tells of it. By the user, not by the process: what a
/// desktop starts runs outside of the session that it serves.
class LoginSession {
  public:
    /// `changed` is called when logind has answered, or has not, and whenever it tells of a change.
    LoginSession(sdbus::IConnection& bus, uid_t user, std::function<void()> changed);

    /// It has the screen, and is not locked. False where logind does not say so.
    bool isInUse() const { return m_isActive && !m_isLocked; }
    /// Where it has the screen.
    const std::string& seat() const { return m_seat; }

  private:
    using Properties = std::map<std::string, sdbus::Variant>;

    void askForDisplay(const std::string& userPath);
    void follow(const std::string& sessionPath);
    void update(const Properties& properties);

    sdbus::IConnection& m_bus;
    const std::function<void()> m_changed;
    bool m_isActive = false;
    bool m_isLocked = false;
    std::string m_seat;
    std::unique_ptr<sdbus::IProxy> m_manager;
    std::unique_ptr<sdbus::IProxy> m_user;
    std::unique_ptr<sdbus::IProxy> m_session;
};

} // namespace vantro::clickd
