#include "support/SessionBus.h"

#include "support/Program.h"

namespace vantro::test {

SessionBus::SessionBus() {
    m_process = startAndRead({"dbus-daemon", "--session", "--nofork", "--nosyslog",
                              "--print-address=" + std::to_string(givenFile)},
                             m_address);
}

SessionBus::~SessionBus() {
    endProgram(m_process);
}

} // namespace vantro::test
