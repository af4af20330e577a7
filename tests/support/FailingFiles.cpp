// A library to be preloaded into a program under test: its calls that change files below one folder
// are counted, and one of them fails as a disk, a quota or another program would make it fail.
//
// Set by the environment: FAILING_FOLDER, FAILING_CALL (which call, from 1 on), FAILING_REPORT (the
// file that names the call once it was reached), and FAILING_MANNER:
//   onwards:ERRNO  this call fails and every later one that writes, as on a full disk
//   once:ERRNO     only this call fails
//   short          from this call on every write takes only a part of its bytes
//   kill           the program is killed before this call
#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

template <typename Function>
Function real(const char* name) {
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

std::string setting(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): never set here
    return value != nullptr ? value : "";
}

struct Plan {
    std::string folder = setting("FAILING_FOLDER");
    std::string report = setting("FAILING_REPORT");
    std::string manner = setting("FAILING_MANNER");
    int call = std::atoi(setting("FAILING_CALL").c_str());
    int error = 0;

    Plan() {
        if (const auto colon = manner.find(':'); colon != std::string::npos) {
            error = std::atoi(manner.c_str() + colon + 1);
            manner.resize(colon);
        }
    }
};

const Plan& plan() {
    static const Plan read;
    return read;
}

enum class Answer { goOn, fail, takePart };

void reportCall(const char* name, const std::string& path) {
    const int file = real<int (*)(const char*, int, mode_t)>("open")(
        plan().report.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const std::string line = std::string(name) + " " + path + "\n";
    if (real<ssize_t (*)(int, const void*, size_t)>("write")(file, line.data(), line.size()) < 0)
        std::abort();
    ::close(file);
}

/// Counts a call on `path` and says what is to become of it; errno is set where it fails.
Answer answerFor(const char* name, const std::string& path, bool writes) {
    static std::atomic<int> calls = 0;
    if (plan().folder.empty() || !path.starts_with(plan().folder))
        return Answer::goOn;
    const int number = ++calls;
    if (number == plan().call) {
        reportCall(name, path);
        if (plan().manner == "kill")
            ::kill(::getpid(), SIGKILL);
    }
    const bool isReached = number == plan().call || (number > plan().call && writes);
    if (plan().manner == "short")
        return isReached && writes ? Answer::takePart : Answer::goOn;
    const bool fails = plan().manner == "onwards" ? isReached
                       : plan().manner == "once"  ? number == plan().call
                                                  : false;
    if (fails)
        errno = plan().error;
    return fails ? Answer::fail : Answer::goOn;
}

std::string pathOf(int file) {
    std::array<char, 4096> target{};
    const auto link = "/proc/self/fd/" + std::to_string(file);
    const auto length = ::readlink(link.c_str(), target.data(), target.size());
    return length < 0 ? "" : std::string(target.data(), static_cast<std::size_t>(length));
}

bool makesFile(int flags) {
    return (flags & O_CREAT) != 0;
}

size_t allowed(Answer answer, size_t count) {
    return answer == Answer::takePart ? std::max<size_t>(count / 2, 1) : count;
}

mode_t modeFrom(int flags, std::va_list arguments) {
    return makesFile(flags) ? static_cast<mode_t>(va_arg(arguments, int)) : 0;
}

} // namespace

// NOLINTBEGIN(readability-identifier-naming): the C library's own names
extern "C" {

int open(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const auto mode = modeFrom(flags, arguments);
    va_end(arguments);
    if (makesFile(flags) && answerFor("open", path, true) == Answer::fail)
        return -1;
    return real<int (*)(const char*, int, ...)>("open")(path, flags, mode);
}

int open64(const char* path, int flags, ...) __attribute__((alias("open")));

int mkostemp(char* pattern, int flags) {
    if (answerFor("mkostemp", pattern, true) == Answer::fail)
        return -1;
    return real<int (*)(char*, int)>("mkostemp")(pattern, flags);
}

int mkostemp64(char* pattern, int flags) __attribute__((alias("mkostemp")));

int mkdir(const char* path, mode_t mode) {
    if (answerFor("mkdir", path, true) == Answer::fail)
        return -1;
    return real<int (*)(const char*, mode_t)>("mkdir")(path, mode);
}

ssize_t write(int file, const void* bytes, size_t count) {
    const auto answer = answerFor("write", pathOf(file), true);
    if (answer == Answer::fail)
        return -1;
    return real<ssize_t (*)(int, const void*, size_t)>("write")(file, bytes,
                                                                allowed(answer, count));
}

ssize_t pwrite64(int file, const void* bytes, size_t count, off64_t offset) {
    const auto answer = answerFor("pwrite", pathOf(file), true);
    if (answer == Answer::fail)
        return -1;
    return real<ssize_t (*)(int, const void*, size_t, off64_t)>("pwrite64")(
        file, bytes, allowed(answer, count), offset);
}

int fsync(int file) {
    // A folder's sync may fail without harm: what it makes lasting is in its place already.
    struct stat status{};
    const bool isFolder = ::fstat(file, &status) == 0 && S_ISDIR(status.st_mode);
    if (!isFolder && answerFor("fsync", pathOf(file), false) == Answer::fail)
        return -1;
    return real<int (*)(int)>("fsync")(file);
}

int fdatasync(int file) {
    if (answerFor("fdatasync", pathOf(file), false) == Answer::fail)
        return -1;
    return real<int (*)(int)>("fdatasync")(file);
}

int rename(const char* from, const char* to) noexcept {
    if (answerFor("rename", from, false) == Answer::fail)
        return -1;
    return real<int (*)(const char*, const char*)>("rename")(from, to);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
              unsigned flags) noexcept {
    if (answerFor("renameat2", from, false) == Answer::fail)
        return -1;
    return real<int (*)(int, const char*, int, const char*, unsigned)>("renameat2")(
        fromFolder, from, toFolder, to, flags);
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
    if (answerFor("linkat", to, true) == Answer::fail)
        return -1;
    return real<int (*)(int, const char*, int, const char*, int)>("linkat")(fromFolder, from,
                                                                            toFolder, to, flags);
}

} // extern "C"
// NOLINTEND(readability-identifier-naming)
