#pragma once

#include "base/Guarded.h"
#include "support/Environment.h"
#include "support/InputDevices.h"
#include "support/TemporaryFolder.h"

#include <functional>

#include <sdbus-c++/sdbus-c++.h>
#include <sys/types.h>

namespace vantro::test {

/// How a system and its user behave.
struct ClickScript {
    enum Answer { allows, refuses, never };
    Answer answer = allows;
    bool isActive = true; ///< the session
    bool isLocked = false;
    bool isInstalled = true; ///< the service; from the start
};

/// A system bus of the test's own, which starts the genuine service for clicks over input devices
/// that the test moves. The parts of polkit and logind that it asks are stood in for here. Found
/// through the environment, so one at a time.
class ClickSystem {
  public:
    explicit ClickSystem(const ClickScript& script = {});
    ~ClickSystem();
    ClickSystem(const ClickSystem&) = delete;
    ClickSystem& operator=(const ClickSystem&) = delete;

    /// Whether its programs are installed.
    static bool isInstalled();

    InputDevices& devices() { return m_devices; }
    /// From now on; the service knows when this returns.
    void setScript(const ClickScript& script);
    void removeSession();
    int questions() const; ///< that the user was asked
    int withdrawn() const; ///< of those, by the service
    static bool isOnBus(const std::string& name);

  private:
    using Decision = sdbus::Struct<bool, bool, std::map<std::string, std::string>>;

    struct State {
        ClickScript script;
        int questions = 0;
        int withdrawn = 0;
    };

    void offerPolkit();
    void offerLogind();
    void awaitService();

    InputDevices m_devices;
    TemporaryFolder m_folder;
    Environment m_environment;
    pid_t m_bus = -1;
    base::Guarded<State> m_state;
    std::unique_ptr<sdbus::IConnection> m_connection;
    std::vector<std::unique_ptr<sdbus::IObject>> m_objects;
    sdbus::IObject* m_session = nullptr; // two of them
    sdbus::IObject* m_manager = nullptr;
    std::vector<sdbus::Result<Decision>> m_unanswered; // the bus thread's
};

} // namespace vantro::test
