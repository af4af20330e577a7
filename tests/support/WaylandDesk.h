#pragma once

#include "support/Environment.h"
#include "support/PortalBackend.h"
#include "support/TemporaryFolder.h"

#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

namespace vantro::test {

/// A private session of a Wayland desktop, without a compositor: a message bus of its own, PipeWire
/// with its session manager, and the genuine portal over a scripted desktop. Found through the
/// environment, so one at a time.
class WaylandDesk {
  public:
    /// Everything but the portal runs.
    WaylandDesk();
    ~WaylandDesk();
    WaylandDesk(const WaylandDesk&) = delete;
    WaylandDesk& operator=(const WaylandDesk&) = delete;

    /// Whether its programs are installed.
    static bool isInstalled();

    /// Returns when it can be asked. Throws std::runtime_error when it does not start.
    void startPortal(const PortalScript& script = {});
    /// The same over a real desktop's part of it: a name on the bus, and the program that has it.
    void startPortal(const std::string& name, std::vector<std::string> program);
    void endPortal();
    PortalBackend& portal() { return *m_backend; }
    /// As a crash would end it.
    void crashPipeWire();
    void startPipeWire();

    const TemporaryFolder& folder() const { return m_folder; }

  private:
    void startFrontEnd(const std::string& backendName, const std::string& interfaces);
    pid_t launch(std::vector<std::string> command);

    TemporaryFolder m_folder;
    Environment m_environment;
    std::vector<pid_t> m_programs;
    std::vector<pid_t> m_portal;
    pid_t m_pipeWire = -1;
    pid_t m_sessionManager = -1;
    std::unique_ptr<PortalBackend> m_backend;
};

} // namespace vantro::test
