#include "support/Program.h"

#include "support/Eventually.h"
#include "support/XConnection.h"

#include <array>
#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantro::test {
namespace {

std::vector<std::string> commandOf(const std::string& display, const std::string& manager) {
    std::vector<std::string> list{"env", "DISPLAY=" + display, manager};
    if (manager == "picom") // whatever the user's settings say
        list.insert(list.end(), {"--config", "/dev/null", "--backend", "xrender", "--shadow",
                                 "--shadow-radius", "12", "--fading"});
    else
        list.insert(list.end(), {"-c", "-f"}); // soft shadows, and fading
    return list;
}

} // namespace

pid_t startProgram(std::vector<std::string> arguments, int file) {
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (auto& each : arguments)
        pointers.push_back(each.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    if (file >= 0)
        posix_spawn_file_actions_adddup2(&actions, file, givenFile);
    pid_t process = -1;
    const int error =
        posix_spawnp(&process, pointers.front(), &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error("cannot start " + arguments.front());
    return process;
}

pid_t startAndRead(std::vector<std::string> arguments, std::string& line) {
    const auto name = arguments.front();
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("cannot make a pipe");
    const pid_t process = startProgram(std::move(arguments), ends[1]);
    close(ends[1]);
    char character = 0;
    while (read(ends[0], &character, 1) == 1 && character != '\n')
        line += character;
    close(ends[0]);
    if (line.empty()) {
        endProgram(process);
        throw std::runtime_error(name + " did not start");
    }
    return process;
}

void endProgram(pid_t process, int signal) {
    ::kill(process, signal);
    waitpid(process, nullptr, 0);
}

bool succeeds(const std::string& command) {
    const auto quietly = "{ " + command + "; } >/dev/null 2>&1";
    return std::system(quietly.c_str()) == 0; // NOLINT(concurrency-mt-unsafe)
}

CompositingManager::CompositingManager(const XServer& server, const std::string& name)
    : m_process(startProgram(commandOf(server.display(), name))) {
    const XConnection connection = connectTo(server.display());
    const auto selection = atom(connection, "_NET_WM_CM_S0");
    const bool isRunning = eventually([&] {
        auto* owner = xcb_get_selection_owner_reply(
            connection.get(), xcb_get_selection_owner(connection.get(), selection), nullptr);
        const bool isOwned = owner != nullptr && owner->owner != XCB_NONE;
        std::free(owner);
        return isOwned;
    });
    if (!isRunning)
        throw std::runtime_error(name + " does not start");
}

} // namespace vantro::test
