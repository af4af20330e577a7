#include "support/SessionBus.h"

#include "support/Program.h"

namespace vantro::test {
namespace {

constexpr auto configuration =
    "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
    "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
    "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>"
    "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
    "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n";

} // namespace

SessionBus::SessionBus() {
    const auto file = m_folder.write("bus.conf", configuration);
    m_process = startAndRead({"dbus-daemon", "--config-file=" + file.string(), "--nofork",
                              "--nosyslog", "--print-address=" + std::to_string(givenFile)},
                             m_address);
}

SessionBus::~SessionBus() {
    endProgram(m_process);
}

} // namespace vantro::test
