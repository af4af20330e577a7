#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <sdbus-c++/sdbus-c++.h>

namespace vantro::test {

/// A session between a program and the desktop's part of a portal; `onClose`, on the connection's
/// thread, when the program ends it.
std::unique_ptr<sdbus::IObject> makePortalSession(sdbus::IConnection& connection,
                                                  const std::string& path,
                                                  const std::function<void()>& onClose);

/// Stands for the part of the portal for shortcuts that belongs to a desktop, and for its user. The
/// genuine portal talks to it. Any thread calls it.
class KeysBackend {
  public:
    /// From `connection`'s bus. `answer` as the portal has it: 0 gives the keys, 1 refuses them,
    /// 3 never comes.
    KeysBackend(sdbus::IConnection& connection, sdbus::IObject& object);

    void setAnswer(std::uint32_t answer);
    /// How often programs have asked for keys, and what they wished for last: "toggle CTRL+ALT+r".
    int asked() const;
    std::vector<std::string> wished() const;
    // By the user:
    void press(const std::string& shortcut);
    /// Another key in the desktop's settings.
    void rename(const std::string& shortcut, const std::string& trigger);
    void closeSession();
    /// Whether a program has given the keys back.
    bool isClosed() const;

  private:
    using Options = std::map<std::string, sdbus::Variant>;
    using Shortcut = sdbus::Struct<std::string, Options>;
    using Answer = sdbus::Result<std::uint32_t, Options>;

    void openSession(const std::string& path);
    void bind(Answer&& answer, const std::vector<Shortcut>& shortcuts);

    sdbus::IConnection& m_connection;
    sdbus::IObject& m_object;
    mutable std::mutex m_mutex;
    // Guarded by m_mutex:
    std::uint32_t m_answer = 0;
    int m_asked = 0;
    bool m_isClosed = false;
    std::vector<std::string> m_wished;
    std::unique_ptr<sdbus::IObject> m_session;
    std::vector<Answer> m_unanswered;
};

} // namespace vantro::test
