#include "support/XServer.h"

#include "support/Program.h"
#include "support/XConnection.h"
#include "support/XorgDesk.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantro::test {
namespace {

constexpr int displayNumberFd = 8; // the server's end of the pipe that tells its number

std::vector<std::string> arguments(const XServer::Options& options) {
    if (!options.xorgFolder.empty())
        return xorgCommand(options.xorgFolder, displayNumberFd);
    std::vector<std::string> list{"Xvfb",
                                  "-displayfd",
                                  std::to_string(displayNumberFd),
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

/// Starts a program of the search path; its standard error goes nowhere.
pid_t spawn(std::vector<std::string> list, posix_spawn_file_actions_t& actions) {
    const auto pointers = pointersTo(list);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = -1;
    const int error =
        posix_spawnp(&process, pointers.front(), &actions, nullptr, pointers.data(), environ);
    if (error != 0)
        throw std::runtime_error("cannot start " + list.front());
    return process;
}

pid_t startServer(const XServer::Options& options, int numberPipe) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, numberPipe, displayNumberFd);
    const pid_t process = spawn(arguments(options), actions);
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

/// The server writes its number when it accepts connections; nothing is written when it fails.
std::string readNumber(int pipe) {
    std::string number;
    char character = 0;
    while (read(pipe, &character, 1) == 1 && character != '\n')
        number += character;
    return number;
}

} // namespace

XServer::XServer(const Options& options) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("cannot make a pipe");
    m_process = startServer(options, ends[1]);
    close(ends[1]);
    const std::string number = readNumber(ends[0]);
    close(ends[0]);
    if (number.empty()) {
        crash();
        throw std::runtime_error("the X server did not start");
    }
    m_display = ":" + number;
}

XServer::~XServer() {
    if (m_process <= 0)
        return;
    kill(m_process, SIGTERM); // lets it remove its socket and lock
    waitpid(m_process, nullptr, 0);
}

void XServer::crash() {
    kill(m_process, SIGKILL);
    waitpid(m_process, nullptr, 0);
    m_process = -1;
}

double XServer::processorSeconds() const {
    std::ifstream file("/proc/" + std::to_string(m_process) + "/schedstat");
    double nanoseconds = 0;
    file >> nanoseconds;
    return nanoseconds / 1e9;
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

void removeMonitor(const XServer& server, const std::string& name) {
    runXrandr(server.display(), {"--delmonitor", name});
}

void resizeScreen(const XServer& server, int width, int height) {
    runXrandr(server.display(), {"--output", "screen", "--off", "--fb",
                                 std::to_string(width) + "x" + std::to_string(height)});
}

} // namespace vantro::test
