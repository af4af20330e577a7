#include "support/SoundServer.h"

#include "base/FileDescriptor.h"
#include "support/Eventually.h"
#include "support/Program.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <stdexcept>

#include <pulse/error.h>
#include <pulse/simple.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace vantro::test {
namespace {

constexpr int recordedRate = 48'000;
constexpr std::size_t channels = 2;
constexpr std::size_t pieceLength = 64; // divides a cycle of PipeWire's graph
constexpr double cycle = 1024.0 / recordedRate;
constexpr double cycleGap = 0.003;
// Samples that a busy server loses put off what follows.
constexpr std::size_t nearby = 2UL * recordedRate;

double secondsNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// A socket's file is there a moment before anybody who connects is let in.
bool isListening(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof(address.sun_path) - 1);
    const base::FileDescriptor client(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    return client.get() >= 0 && ::connect(client.get(), reinterpret_cast<const sockaddr*>(&address),
                                          sizeof(address)) == 0;
}

} // namespace

SoundServer::SoundServer(Kind kind, int deviceRate) : m_kind(kind), m_rate(deviceRate) {
    const auto folder = m_folder.path().string();
    const std::array<std::pair<std::string, std::string>, 10> wanted{{
        {"XDG_RUNTIME_DIR", folder + "/runtime"},
        {"XDG_CONFIG_HOME", folder + "/config"},
        {"XDG_STATE_HOME", folder + "/state"},
        {"XDG_CACHE_HOME", folder + "/cache"},
        {"PULSE_RUNTIME_PATH", folder + "/runtime/pulse"},
        {"PULSE_STATE_PATH", folder + "/state"},
        {"PULSE_SERVER", ""},
        {"PULSE_COOKIE", ""},
        {"PIPEWIRE_REMOTE", ""},
        {"DBUS_SESSION_BUS_ADDRESS", ""},
    }};
    for (const auto& [name, value] : wanted) {
        m_environment.set(name, value);
        if (!value.empty() && name != "PULSE_RUNTIME_PATH")
            std::filesystem::create_directories(value);
    }
    std::filesystem::permissions(folder + "/runtime", std::filesystem::perms::owner_all);
}

SoundServer::~SoundServer() {
    crash();
}

bool SoundServer::isInstalled(Kind kind) {
    return kind == Kind::pulseaudio ? succeeds("command -v pulseaudio && command -v pactl")
                                    : succeeds("command -v pipewire && command -v wireplumber && "
                                               "command -v pipewire-pulse && command -v pactl && "
                                               "command -v dbus-daemon");
}

void SoundServer::launch(std::vector<std::string> command) {
    m_programs.push_back(startProgram(std::move(command)));
}

void SoundServer::start() {
    // Now and then one of PipeWire's programs does not come up.
    constexpr int mostAttempts = 3;
    for (int attempt = 1; !comesUp(); ++attempt) {
        if (attempt == mostAttempts)
            throw std::runtime_error("the sound server does not answer");
        crash();
    }
    addDevice();
}

bool SoundServer::comesUp() {
    m_kind == Kind::pipewire ? startPipeWire() : startPulseAudio();
    return eventually([] { return succeeds("timeout 2 pactl info"); }, std::chrono::seconds(5));
}

void SoundServer::startPipeWire() {
    const auto folder = m_folder.path().string();
    m_folder.write("config/pipewire/pipewire.conf.d/quantum.conf",
                   "context.properties = { default.clock.quantum = 1024 "
                   "default.clock.min-quantum = 1024 default.clock.max-quantum = 2048 }\n");
    const auto address = "unix:path=" + folder + "/runtime/bus";
    launch({"dbus-daemon", "--session", "--nofork", "--address=" + address});
    m_environment.set("DBUS_SESSION_BUS_ADDRESS", address);
    if (!eventually([&] { return isListening(folder + "/runtime/bus"); }))
        throw std::runtime_error("no message bus");
    launch({"pipewire"});
    if (!eventually([&] { return isListening(folder + "/runtime/pipewire-0"); }))
        throw std::runtime_error("PipeWire does not start");
    launch({"wireplumber"});
    launch({"pipewire-pulse"});
}

void SoundServer::startDenying() {
    const auto folder = m_folder.path().string();
    if (m_kind == Kind::pipewire) {
        std::filesystem::create_directories(folder + "/config/pipewire");
        if (!succeeds("sed 's/#access.rejected = \\[ \\]/access.rejected = [ pipewire-pulse ]/' "
                      "/usr/share/pipewire/pipewire.conf > " +
                      folder + "/config/pipewire/pipewire.conf && grep -q '^ *access.rejected' " +
                      folder + "/config/pipewire/pipewire.conf"))
            throw std::runtime_error("no rule of access can be set");
        startPipeWire();
        if (!eventually([&] { return isListening(folder + "/runtime/pulse/native"); }))
            throw std::runtime_error("the sound server does not start");
        return;
    }
    // Who is known by the user's id needs no cookie, so it listens where ids are not known.
    const auto port = std::to_string(20'000 + ::getpid() % 20'000);
    launch({"pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
            "--disallow-exit",
            "--load=module-native-protocol-tcp listen=127.0.0.1 port=" + port +
                " auth-cookie=" + folder + "/cookie"});
    m_environment.set("PULSE_SERVER", "tcp:127.0.0.1:" + port);
    m_environment.set("PULSE_COOKIE", folder + "/another-cookie");
    if (!eventually([] { return succeeds("timeout 2 pactl info 2>&1 | grep -q denied"); }))
        throw std::runtime_error("the sound server does not refuse");
}

void SoundServer::startPulseAudio() {
    launch({"pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
            "--disallow-exit", "--load=module-native-protocol-unix"});
}

void SoundServer::addDevice() {
    const auto command =
        "pactl load-module module-null-sink sink_name=speakers rate=" + std::to_string(m_rate) +
        " && pactl set-default-sink speakers";
    if (!eventually([&] {
            return succeeds("pactl list short sinks | grep -q speakers") || succeeds(command);
        }) ||
        !eventually([] { return succeeds("pactl get-default-sink | grep -q speakers"); }))
        throw std::runtime_error("the sound server has no device");
}

void SoundServer::removeDevice() {
    if (!succeeds("pactl unload-module module-null-sink"))
        throw std::runtime_error("the device stays");
}

void SoundServer::unlink(const std::string& output, const std::string& input) {
    if (!succeeds("pw-link -d " + output + " " + input))
        throw std::runtime_error(output + " is not linked to " + input);
}

void SoundServer::control(const std::string& arguments) {
    if (!succeeds("pactl " + arguments))
        throw std::runtime_error("pactl " + arguments + " fails");
}

/// PulseAudio's null sink decides seconds ahead what it plays, and its monitor has nothing of the
/// time for which that is decided when somebody begins to listen. Hardware takes it back.
std::string SoundServer::promptOption() const {
    return m_kind == Kind::pulseaudio ? " norewinds=1" : "";
}

void SoundServer::addOutput(const std::string& name, int rate) {
    control("load-module module-null-sink sink_name=" + name + " rate=" + std::to_string(rate) +
            promptOption());
    if (!eventually([&] {
            return succeeds("pactl set-default-sink " + name +
                            " && pactl get-default-sink | grep -q " + name);
        }))
        throw std::runtime_error("the output " + name + " does not become the default one");
}

void SoundServer::addMicrophone(const std::string& name) {
    const auto feed = name + "_feed";
    if (!succeeds("pactl list short sinks | grep -q " + feed))
        control("load-module module-null-sink channels=1 channel_map=mono sink_name=" + feed +
                promptOption());
    control("load-module module-remap-source channels=1 channel_map=mono master_channel_map=mono "
            "source_name=" +
            name + " master=" + feed + ".monitor");
    if (!eventually([&] {
            return succeeds("pactl set-default-source " + name +
                            " && pactl get-default-source | grep -q " + name);
        }))
        throw std::runtime_error("the microphone " + name + " does not become the default one");
}

void SoundServer::removeMicrophone(const std::string& name) {
    if (!succeeds("pactl unload-module $(pactl list short modules | grep source_name=" + name +
                  " | cut -f1)"))
        throw std::runtime_error("the microphone stays");
}

void SoundServer::crash() {
    std::ranges::reverse(m_programs);
    for (const pid_t program : std::exchange(m_programs, {}))
        endProgram(program, SIGKILL);
    std::error_code ignored;
    for (const auto* left : {"bus", "pipewire-0", "pipewire-0.lock", "pulse"})
        std::filesystem::remove_all(m_folder / "runtime" / left, ignored);
}

TonePlayer::TonePlayer(const std::string& output, double frequency) {
    constexpr pa_sample_spec format{PA_SAMPLE_FLOAT32NE, recordedRate, 1};
    constexpr auto automatic = static_cast<std::uint32_t>(-1);
    constexpr std::uint32_t latency = recordedRate / 20 * sizeof(float);
    const pa_buffer_attr buffer{automatic, latency, automatic, automatic, automatic};
    int error = 0;
    m_stream = pa_simple_new(nullptr, "test", PA_STREAM_PLAYBACK, output.c_str(), "tone", &format,
                             nullptr, &buffer, &error);
    if (!m_stream)
        throw std::runtime_error(std::string("cannot play: ") + pa_strerror(error));
    m_thread = std::thread([this, frequency] { run(frequency); });
}

TonePlayer::~TonePlayer() {
    m_ending = true;
    m_thread.join();
    pa_simple_free(static_cast<pa_simple*>(m_stream));
}

void TonePlayer::run(double frequency) {
    std::array<float, recordedRate / 200> piece{};
    long played = 0;
    int error = 0;
    while (!m_ending) {
        for (float& sample : piece)
            sample = m_isHeard ? static_cast<float>(
                                     0.5 * std::sin(2 * std::numbers::pi * frequency *
                                                    static_cast<double>(played++) / recordedRate))
                               : 0;
        if (pa_simple_write(static_cast<pa_simple*>(m_stream), piece.data(), sizeof(piece),
                            &error) < 0)
            return; // the server is gone
    }
}

MonitorRecorder::MonitorRecorder(SoundServer::Kind kind, const std::string& output) : m_kind(kind) {
    constexpr pa_sample_spec format{PA_SAMPLE_FLOAT32NE, recordedRate, channels};
    constexpr std::uint32_t fragment = pieceLength * sizeof(float) * channels;
    constexpr auto automatic = static_cast<std::uint32_t>(-1);
    const pa_buffer_attr buffer{automatic, automatic, automatic, automatic, fragment};
    int error = 0;
    m_stream = pa_simple_new(nullptr, "test", PA_STREAM_RECORD, (output + ".monitor").c_str(),
                             "monitor", &format, nullptr, &buffer, &error);
    if (!m_stream)
        throw std::runtime_error(std::string("cannot record: ") + pa_strerror(error));
    m_thread = std::thread([this] { run(); });
    hear(0.05);
}

MonitorRecorder::~MonitorRecorder() {
    m_ending = true;
    m_thread.join();
    pa_simple_free(static_cast<pa_simple*>(m_stream));
}

void MonitorRecorder::run() {
    auto* stream = static_cast<pa_simple*>(m_stream);
    std::array<float, pieceLength * channels> piece{};
    int error = 0;
    double before = secondsNow();
    while (!m_ending && pa_simple_read(stream, piece.data(), sizeof(piece), &error) == 0) {
        // PulseAudio knows how old the next sample is. PipeWire's null sink plays a cycle of its
        // graph from when the cycle begins, and all of it arrives here when the next one begins.
        const double now = secondsNow();
        const bool beginsCycle = now - std::exchange(before, now) > cycleGap;
        const double age = static_cast<double>(pa_simple_get_latency(stream, &error)) / 1e6;
        const std::lock_guard lock(m_mutex);
        m_sound.insert(m_sound.end(), piece.begin(), piece.end());
        if (m_kind == SoundServer::Kind::pulseaudio)
            m_stamps.push_back({m_sound.size() / channels, now - age});
        else if (beginsCycle)
            m_stamps.push_back({m_sound.size() / channels - pieceLength, now - cycle});
    }
}

std::vector<float> MonitorRecorder::sound() const {
    const std::lock_guard lock(m_mutex);
    return m_sound;
}

double MonitorRecorder::timeOf(std::size_t frame) const {
    const std::lock_guard lock(m_mutex);
    std::vector<double> starts; // of the recording, by each stamp's word
    starts.reserve(m_stamps.size());
    for (const auto& stamp : m_stamps)
        if (std::max(frame, stamp.frame) - std::min(frame, stamp.frame) < nearby)
            starts.push_back(stamp.time - static_cast<double>(stamp.frame) / recordedRate);
    std::ranges::nth_element(starts,
                             starts.begin() + static_cast<std::ptrdiff_t>(starts.size()) / 2);
    return starts.at(starts.size() / 2) + static_cast<double>(frame) / recordedRate;
}

void MonitorRecorder::hear(double seconds) const {
    const auto recorded = [&] {
        const std::lock_guard lock(m_mutex);
        return m_sound.size();
    };
    const auto wanted = recorded() + static_cast<std::size_t>(seconds * recordedRate) * channels;
    if (!eventually([&] { return recorded() >= wanted; }))
        throw std::runtime_error("the monitor is silent");
}

} // namespace vantro::test
