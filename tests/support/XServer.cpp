#include "support/Program.h"
#include "support/XConnection.h"
#include "support/XorgDesk.h"

#include <sys/wait.h>

namespace vantro::test {
namespace {

std::vector<std::string> arguments(const XServer::Options& options) {
    if (!options.xorgFolder.empty())
        return xorgCommand(options.xorgFolder, givenFile);
    std::vector<std::string> list{"Xvfb",
                                  "-displayfd",
                                  std::to_string(givenFile),
                                  "-screen",
                                  "0",
                                  std::to_string(options.width) + "x" +
                                      std::to_string(options.height) + "x" +
                                      std::to_string(options.depth),
                                  "-nolisten",
                                  "tcp",
                                  "-noreset"};
    for (const auto& extension : options.missingExtensions)
        list.insert(list.end(), {"-extension", extension});
    return list;
}

} // namespace

XServer::XServer(const Options& options) {
    std::signal(SIGPIPE, SIG_IGN); // as the program does: libxcb writes to servers that have gone
    std::string number;
    m_process = startAndRead(arguments(options), number);
    m_display = ":" + number;
}

XServer::~XServer() {
    if (m_process > 0)
        endProgram(m_process); // it removes its socket and lock
}

void XServer::crash() {
    kill(m_process, SIGKILL);
    waitpid(m_process, nullptr, 0);
    m_process = -1;
}

void setRootProperty(const XServer& server, const std::string& name, const std::string& value) {
    const XConnection connection = connectTo(server.display());
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, screenOf(connection).root,
                        atom(connection, name), XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(value.size()), value.data());
    roundTrip(connection);
}

void setRootNumber(const XServer& server, const std::string& name, std::uint32_t number) {
    const XConnection connection = connectTo(server.display());
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, screenOf(connection).root,
                        atom(connection, name), XCB_ATOM_CARDINAL, 32, 1, &number);
    roundTrip(connection);
}

// Through xrandr, because libxcb 1.15 gets the length of this request wrong.
void addMonitor(const XServer& server, const std::string& name, media::color::PixelRect rect,
                bool isPrimary) {
    const auto text = [](int value) { return std::to_string(value); };
    const std::string geometry = text(rect.width) + "/100x" + text(rect.height) + "/100+" +
                                 text(rect.x) + "+" + text(rect.y);
    runXrandr(server.display(), {"--setmonitor", (isPrimary ? "*" : "") + name, geometry, "none"});
}

} // namespace vantro::test
