// What recording a camera of 640 × 480 pixels at 30 pictures a second costs, by thread, beside a
// screen that stands still; and what ffmpeg takes to decode the same pictures from a file and
// encode them at the same speed and rate. Shares of one core. The camera is a node of a private
// PipeWire server and lives in this process, in threads that are not counted.
// usage: camera_bench [SECONDS [ROUNDS]]
#include "capture/camera/DesktopCameras.h"
#include "capture/session/RecordingSession.h"
#include "capture/x11/X11CapturePlatform.h"
#include "support/FakeCamera.h"
#include "support/SoundServer.h"
#include "support/TemporaryFolder.h"
#include "support/XServer.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <thread>

#include <fmt/format.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using namespace vantro;
using Layout = test::FakeCamera::Layout;

/// Seconds that each kind of thread has worked, by its name.
std::map<std::string, double> workByThread() {
    std::map<std::string, double> work;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string name;
        std::getline(std::ifstream(task.path() / "comm"), name);
        std::string line;
        std::getline(std::ifstream(task.path() / "schedstat"), line); // ns on a processor first
        work[name] += std::strtod(line.c_str(), nullptr) / 1e9;
    }
    return work;
}

/// The shares of those threads that are a recording's.
void printShares(const char* layout, int seconds) {
    const test::XServer server({.width = 1920, .height = 1080});
    const test::TemporaryFolder folder;
    capture::RecordingRequest request;
    request.sources.camera = true;
    capture::RecordingSession session(
        request,
        [&] {
            return capture::x11::connectX11(server.display(), [](std::int64_t) { return false; })
                .value();
        },
        nullptr, capture::camera::makeDesktopCameras());
    session.choose({});
    session.start(folder / "recording.mov");
    const auto before = workByThread();
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    const auto after = workByThread();
    session.stop();
    const auto statistics = session.statistics();
    fmt::print("{}: {} pictures, {} dropped\n", layout, statistics.webcamFramesCaptured,
               statistics.webcamFramesDropped);
    for (const auto& [name, worked] : after) {
        const auto earlier = before.contains(name) ? before.at(name) : 0;
        if (name.contains("vantro") && worked - earlier > 0)
            fmt::print("    {:<18} {:5.1f} %\n", name, 100 * (worked - earlier) / seconds);
    }
}

double childSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const auto inSeconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return inSeconds(usage.ru_utime) + inSeconds(usage.ru_stime);
}

void printPeer(const test::FakeCamera::Format& format, int seconds) {
    const test::TemporaryFolder folder;
    std::ofstream file(folder / "pictures", std::ios::binary);
    for (int i = 0; i < seconds * format.rate; ++i) {
        const auto picture =
            test::fakePicture(format, static_cast<std::uint32_t>(i), i / format.rate % 2 == 0);
        file.write(reinterpret_cast<const char*>(picture.data()),
                   static_cast<std::streamsize>(picture.size()));
    }
    file.close();
    const auto before = childSeconds();
    const auto command = fmt::format(
        "cd '{}' && ffmpeg -nostdin -v error -y -re {} -i pictures -c:v libx264 -preset ultrafast "
        "-tune zerolatency -pix_fmt yuv420p -b:v 2M peer.mov",
        folder.path().string(),
        format.layout == Layout::mjpeg ? "-f mjpeg -framerate 30"
                                       : "-f rawvideo -pix_fmt yuyv422 -s 640x480 -framerate 30");
    if (std::system(command.c_str()) != 0) // NOLINT(concurrency-mt-unsafe)
        return;
    fmt::print("    {:<18} {:5.1f} %\n", "ffmpeg alone", 100 * (childSeconds() - before) / seconds);
}

} // namespace

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 20;
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 3;
    test::SoundServer server(test::SoundServer::Kind::pipewire);
    server.start();
    for (int round = 0; round < rounds; ++round)
        for (const auto& [layout, name] :
             {std::pair(Layout::yuyv, "YUYV"), {Layout::mjpeg, "MJPEG"}}) {
            test::FakeCamera::Settings settings;
            settings.formats = {{.layout = layout, .width = 640, .height = 480, .rate = 30}};
            {
                const test::FakeCamera camera(settings);
                printShares(name, seconds);
            }
            printPeer(settings.formats.front(), seconds);
        }
}
