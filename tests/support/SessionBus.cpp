#include "support/SessionBus.h"

#include "support/Program.h"

#include <fmt/format.h>

namespace vantro::test {

std::string busConfiguration(const std::string& address, const std::string& services) {
    return fmt::format(
        "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
        "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
        "<busconfig><type>session</type><listen>{}</listen><auth>EXTERNAL</auth>{}"
        "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
        "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n",
        address, services.empty() ? "" : "<servicedir>" + services + "</servicedir>");
}

SessionBus::SessionBus() {
    const auto file = m_folder.write("bus.conf", busConfiguration("unix:tmpdir=/tmp"));
    m_process =
        startAndRead({"dbus-daemon", "--nofork", "--nosyslog", "--config-file=" + file.string(),
                      "--print-address=" + std::to_string(givenFile)},
                     m_address);
}

SessionBus::~SessionBus() {
    endProgram(m_process);
}

} // namespace vantro::test
