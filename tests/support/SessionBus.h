#pragma once

#include "support/TemporaryFolder.h"

#include <string>

#include <sys/types.h>

namespace vantro::test {

/// For a message bus that starts nothing behind a test's back but the services of a folder, where
/// one is given.
std::string busConfiguration(const std::string& address, const std::string& services = {});

/// A session bus of the test's own, from when it is constructed until it is destroyed. It starts no
/// service of the machine's.
class SessionBus {
  public:
    /// Throws std::runtime_error when it does not start.
    SessionBus();
    ~SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    const std::string& address() const { return m_address; }

  private:
    TemporaryFolder m_folder;
    std::string m_address;
    pid_t m_process = -1;
};

} // namespace vantro::test
