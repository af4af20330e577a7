#include "support/Program.h"

#include "support/Eventually.h"
#include "support/XConnection.h"

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantro::test {
namespace {

/// Ours, but for another display.
std::vector<std::string> environmentOn(const std::string& display) {
    std::vector<std::string> list{"DISPLAY=" + display};
    for (char** each = environ; *each != nullptr; ++each)
        if (!std::string_view(*each).starts_with("DISPLAY="))
            list.emplace_back(*each);
    return list;
}

std::vector<std::string> commandOf(const std::string& manager) {
    if (manager == "picom") // whatever the user's settings say
        return {"picom",    "--config",        "/dev/null", "--backend", "xrender",
                "--shadow", "--shadow-radius", "12",        "--fading"};
    return {manager, "-c", "-f"}; // soft shadows, and fading
}

} // namespace

std::vector<char*> pointersTo(std::vector<std::string>& list) {
    std::vector<char*> pointers;
    pointers.reserve(list.size() + 1);
    for (auto& each : list)
        pointers.push_back(each.data());
    pointers.push_back(nullptr);
    return pointers;
}

Program::Program(const std::string& display, const std::vector<std::string>& arguments) {
    auto list = arguments;
    auto variables = environmentOn(display);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const int error = posix_spawnp(&m_process, list.front().c_str(), &actions, nullptr,
                                   pointersTo(list).data(), pointersTo(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error("cannot start " + list.front());
}

Program::~Program() {
    end(SIGTERM);
}

void Program::kill() {
    end(SIGKILL);
}

void Program::end(int signal) {
    if (m_process <= 0)
        return;
    ::kill(m_process, signal);
    waitpid(m_process, nullptr, 0);
    m_process = -1;
}

CompositingManager::CompositingManager(const XServer& server, const std::string& name)
    : m_program(server.display(), commandOf(name)) {
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
