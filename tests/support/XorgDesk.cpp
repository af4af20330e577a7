#include "support/XorgDesk.h"

#include "support/Program.h"

#include <cstdint>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantro::test {
namespace {

// The wrapper in /usr/bin looks for a graphics card first.
constexpr const char* program = "/usr/lib/xorg/Xorg";

constexpr const char* settings = R"(
Section "ServerFlags"
  Option "AutoAddDevices" "false"
  Option "AutoAddGPU" "false"
  Option "DontVTSwitch" "true"
EndSection
Section "Device"
  Identifier "card"
  Driver "dummy"
  VideoRam 64000
EndSection
Section "Monitor"
  Identifier "monitor"
  HorizSync 5.0-1000.0
  VertRefresh 5.0-300.0
EndSection
Section "Screen"
  Identifier "screen"
  Device "card"
  Monitor "monitor"
  DefaultDepth 24
  SubSection "Display"
    Depth 24
    Modes "800x600" "1280x720" "640x400"
    Virtual 2560 1024
  EndSubSection
EndSection
Section "InputDevice"
  Identifier "touch"
  Driver "inputtest"
  Option "SocketPath" "FOLDER/touch"
  Option "DeviceType" "Touch"
  Option "TouchCount" "5"
EndSection
Section "InputDevice"
  Identifier "pen"
  Driver "inputtest"
  Option "SocketPath" "FOLDER/pen"
  Option "DeviceType" "PointerAbsoluteProximity"
  Option "PointerButtonCount" "7"
EndSection
Section "ServerLayout"
  Identifier "desk"
  Screen "screen"
  InputDevice "touch" "SendCoreEvents"
  InputDevice "pen" "SendCoreEvents"
EndSection
)";

// The messages of Xorg's driver "inputtest", version 1.1, as its manual page lists them.
enum MessageType : std::uint32_t {
    clientVersion = 0,
    waitForSync = 1,
    motion = 2,
    button = 4,
    touch = 6
};
enum TouchType : std::uint32_t { touchBegin = 18, touchEnd = 20 };

struct Header {
    std::uint32_t length;
    std::uint32_t type;
};

struct Version {
    Header header;
    std::uint16_t major;
    std::uint16_t minor;
};

struct Valuators {
    std::uint32_t hasUnaccelerated;
    std::uint8_t mask[8];
    double values[64];
    double unaccelerated[64];
};

struct Touch {
    Header header;
    std::uint32_t touch;
    std::uint32_t type;
    Valuators valuators;
};

struct Motion {
    Header header;
    std::uint32_t isAbsolute;
    Valuators valuators;
};

struct Button {
    Header header;
    std::int32_t isAbsolute;
    std::int32_t button;
    std::uint32_t isPress;
    Valuators valuators;
};

/// The devices' axes reach from 0 to 65535 over the whole screen in each direction.
Valuators at(int x, int y) {
    constexpr double axisLength = 65536;
    Valuators valuators{};
    valuators.mask[0] = 0b11;
    valuators.values[0] = (x + 0.5) * axisLength / 800;
    valuators.values[1] = (y + 0.5) * axisLength / 600;
    return valuators;
}

template <typename Message>
Message make(std::uint32_t type) {
    Message message{};
    message.header = {sizeof message, type};
    return message;
}

} // namespace

bool canRunXorg() {
    return geteuid() == 0 && std::filesystem::exists(program);
}

std::vector<std::string> xorgCommand(const std::filesystem::path& folder, int displayNumberFd) {
    std::filesystem::create_directories(folder / "none");
    std::string text = settings;
    for (auto at = text.find("FOLDER"); at != std::string::npos; at = text.find("FOLDER"))
        text.replace(at, std::strlen("FOLDER"), folder.string());
    std::ofstream(folder / "settings") << text;
    return {program,         "-displayfd",        std::to_string(displayNumberFd),
            "-config",       folder / "settings", "-configdir",
            folder / "none", "-logfile",          folder / "log",
            "-noreset",      "-nolisten",         "tcp",
            "-sharevts",     "-novtswitch",       "vt7"};
}

void runXrandr(const std::string& display, const std::vector<std::string>& arguments) {
    std::vector<std::string> list{"xrandr", "--display", display};
    list.insert(list.end(), arguments.begin(), arguments.end());
    pid_t process = -1;
    int status = -1;
    if (posix_spawnp(&process, "xrandr", nullptr, nullptr, pointersTo(list).data(), environ) == 0)
        waitpid(process, &status, 0);
    if (status != 0)
        throw std::runtime_error("xrandr failed");
}

InputDevice::InputDevice(const std::filesystem::path& folder, Kind kind)
    : m_kind(kind), m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto path = (folder / (kind == Kind::pen ? "pen" : "touch")).string();
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    if (m_socket < 0 ||
        connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("the server has no such device");
    auto version = make<Version>(clientVersion);
    version.major = 1;
    version.minor = 1;
    send(&version, sizeof version);
    Version answer{};
    if (read(m_socket, &answer, sizeof answer) != sizeof answer)
        throw std::runtime_error("the device does not answer");
}

InputDevice::~InputDevice() {
    close(m_socket);
}

void InputDevice::tap(int x, int y) const {
    if (m_kind == Kind::touchScreen) {
        auto message = make<Touch>(touch);
        message.valuators = at(x, y);
        for (const auto type : {touchBegin, touchEnd}) {
            message.type = type;
            send(&message, sizeof message);
        }
    } else {
        auto move = make<Motion>(motion);
        move.isAbsolute = 1;
        move.valuators = at(x, y);
        send(&move, sizeof move);
        auto press = make<Button>(button);
        press.button = 1;
        for (const std::uint32_t isPress : {1U, 0U}) {
            press.isPress = isPress;
            send(&press, sizeof press);
        }
    }
    awaitServer();
}

void InputDevice::send(const void* message, std::size_t size) const {
    if (write(m_socket, message, size) != static_cast<ssize_t>(size))
        throw std::runtime_error("the device does not listen");
}

void InputDevice::awaitServer() const {
    const Header question{sizeof(Header), waitForSync};
    send(&question, sizeof question);
    Header answer{};
    if (read(m_socket, &answer, sizeof answer) != sizeof answer)
        throw std::runtime_error("the device does not answer");
}

} // namespace vantro::test
