// Where the time of an export goes: exports a project with libx264 and the software renderer, and
// prints the seconds of processor that each stage took, their share of all, how much of the wall
// time the encoder was at work, and the most memory held.
// usage: export_bench PROJECT.vantro FILM.mp4

#include "app/files/ProjectStores.h"
#include "export/VideoExporter.h"
#include "render/RendererFactory.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <exception>
#include <fstream>
#include <map>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>

#include <fmt/format.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using namespace vantro;
namespace fs = std::filesystem;

/// What the threads of this process do, looked up again and again: nothing of it is built in.
class Threads {
  public:
    void sample() {
        bool isEncoding = false;
        std::error_code ended;
        for (const auto& task : fs::directory_iterator("/proc/self/task", ended)) {
            std::string stage = stageOf(task.path());
            double nanoseconds = 0;
            if (stage.empty() || !(std::ifstream(task.path() / "schedstat") >> nanoseconds))
                continue; // it has ended
            m_seconds[task.path().filename()] = {stage, nanoseconds / 1e9};
            isEncoding = isEncoding || (stage == "encode" && isRunning(task.path()));
        }
        ++m_samples;
        m_encoding += isEncoding ? 1 : 0;
    }

    double encoderShare() const { return static_cast<double>(m_encoding) / m_samples; }
    std::map<std::string, double> stages() const {
        std::map<std::string, double> sums;
        for (const auto& [thread, used] : m_seconds)
            sums[used.stage] += used.seconds;
        return sums;
    }

  private:
    struct Used {
        std::string stage;
        double seconds;
    };

    /// By the thread's name, of which the kernel keeps the last 15 letters. libav and libx264 name
    /// none of theirs, which have that of the program; the decoder's are older than the reader.
    std::string stageOf(const fs::path& task) {
        const int number = std::stoi(task.filename());
        std::string name;
        std::ifstream file(task / "comm");
        if (!std::getline(file, name))
            return {};
        if (number == ::getpid())
            return "open, finish";
        if (name.ends_with("vantro.reader"))
            m_reader = number;
        if (number == m_reader)
            return "decode";
        if (name.starts_with("vantro.worker") || name.ends_with("export.video"))
            return "compose, convert";
        if (name.ends_with("writer"))
            return "feed encoder, write";
        if (name.ends_with("sound") || name.ends_with("audio"))
            return "sound";
        if (name == "sampler")
            return "measuring";
        return m_reader == 0 || number < m_reader ? "decode" : "encode";
    }

    static bool isRunning(const fs::path& task) {
        std::string stat;
        std::getline(std::ifstream(task / "stat"), stat);
        const auto state = stat.rfind(')') + 2;
        return state < stat.size() && stat[state] == 'R';
    }

    std::map<std::string, Used> m_seconds; ///< by thread
    int m_reader = 0;
    int m_samples = 0;
    int m_encoding = 0;
};

void watch(const std::stop_token& stop, Threads& threads) {
    constexpr std::chrono::milliseconds interval{5};
    ::pthread_setname_np(::pthread_self(), "sampler");
    std::mutex mutex;
    std::condition_variable_any ended;
    std::unique_lock lock(mutex);
    while (!ended.wait_for(lock, stop, interval, [&] { return stop.stop_requested(); }))
        threads.sample();
}

void run(const char* package, const char* film) {
    const auto project = app::files::readProjectFile(package);
    render::MovieSession session(project.recording, project.edit,
                                 render::makeRenderer(render::RendererChoice::software));
    exporting::VideoExporter exporter;
    exporter.setEncoder(media::VideoEncoderChoice::libx264);
    Threads threads;
    const auto start = std::chrono::steady_clock::now();
    exporting::ExportSummary summary;
    {
        const std::jthread sampler([&](const std::stop_token& stop) { watch(stop, threads); });
        summary = exporter.run(session, exporting::ExportResolution::original, film, {}, {});
    }
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    double all = 0;
    for (const auto& [stage, seconds] : threads.stages())
        all += stage == "measuring" ? 0 : seconds;
    for (const auto& [stage, seconds] : threads.stages())
        fmt::print("{:<22} {:8.2f} s {:6.2f} ms a frame {:5.1f} %\n", stage, seconds,
                   1000 * seconds / static_cast<double>(summary.frameCount), 100 * seconds / all);
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    fmt::print(
        "wall {:.2f} s for {:.2f} s of film, the encoder at work {:.0f} % of it, {:.0f} MB\n",
        wall.count(), summary.duration, 100 * threads.encoderShare(),
        static_cast<double>(usage.ru_maxrss) * 1024 / 1e6);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: export_bench PROJECT.vantro FILM.mp4\n", stderr);
        return 2;
    }
    try {
        run(argv[1], argv[2]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "export_bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
