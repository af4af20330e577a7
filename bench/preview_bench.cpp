// How fast the preview answers, in a real window: exact seeks, scrubbing and changes of the edit,
// each from the call to the swap that shows it, and what a paused player costs. Of seeks, when a
// picture of the exact time is first seen, and when the movie's own is.
// usage: preview_bench PROJECT.vantro [PROXIES]
// PROXIES is a folder with a small copy of the movie, as proxy_bench makes it; without it there is
// none.

#include "app/files/ProjectStores.h"
#include "app/flows/QtMainLoop.h"
#include "editor/EditorPreview.h"
#include "program/DesktopServices.h"
#include "program/WindowedApplication.h"
#include "render/RendererFactory.h"
#include "window/PlayWindow.h"

#include <QApplication>
#include <QQuickWindow>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <fstream>
#include <random>

#include <fmt/format.h>
#include <sys/resource.h>

namespace {

using namespace vantro;

/// What was seen last, and when.
class Watcher : public ui::PictureWatcher {
  public:
    struct Seen {
        std::uint64_t pictures = 0;
        media::MediaTime time;
        base::HostTime at;
        bool isPreliminary = false;
        base::HostTime firstAt; ///< when a picture of that time was first seen, preliminary or not
    };

    void pictureReplaced(const media::player::PlayerPicture&) override {}
    void pictureShown(const media::player::PlayerPicture& picture, base::HostTime at) override {
        m_seen.with([&](Seen& seen) {
            const bool isSame = seen.pictures > 0 && seen.time == picture.time;
            seen = {seen.pictures + 1, picture.time, at, picture.isPreliminary,
                    isSame ? seen.firstAt : at};
        });
    }
    Seen seen() const {
        return m_seen.with([](const Seen& seen) { return seen; });
    }

  private:
    base::Guarded<Seen> m_seen;
};

template <typename Condition>
bool waitFor(Condition condition, double seconds = 20) {
    const auto end = base::hostNow() + base::HostDuration(static_cast<long>(seconds * 1e9));
    QTimer tick; // so that waiting for events ends
    tick.start(1);
    while (!condition()) {
        if (base::hostNow() > end)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void rest(double seconds) {
    QTimer::singleShot(static_cast<int>(seconds * 1000), [] { QCoreApplication::exit(); });
    QCoreApplication::exec();
}

double processorSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double residentMegabytes() {
    std::ifstream file("/proc/self/statm");
    double all = 0;
    double resident = 0;
    file >> all >> resident;
    return resident * 4096 / 1e6;
}

void printTimes(const char* what, std::vector<double> times, int missing) {
    std::ranges::sort(times);
    const auto at = [&times](double part) {
        return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))] * 1000;
    };
    if (times.empty())
        fmt::print("  {:<24} none of {} was seen\n", what, missing);
    else
        fmt::print("  {:<24} median {:6.1f} ms, 95 % within {:6.1f} ms, {} of {}\n", what, at(0.5),
                   at(0.95), times.size(), times.size() + static_cast<std::size_t>(missing));
}

class Bench {
  public:
    Bench(model::Project project, std::filesystem::path proxies)
        : m_project(std::move(project))
        , m_preview(m_tasks, program::openMovieForEditor, [](const auto&) { return nullptr; },
                    {std::move(proxies)}) {
        m_preview.pictures()->setWatcher(m_watcher);
        m_preview.show(m_project.recording, m_project.edit);
        m_window.window().show();
        if (!waitFor([this] { return m_watcher.seen().pictures > 0; }))
            throw std::runtime_error("nothing is shown");
    }

    void seeks();
    void scrub();
    void edits();
    void pause();

  private:
    /// Seconds until a picture of that time was on the screen; negative when it does not come.
    template <typename Isit>
    double seenAfter(base::HostTime start, Isit isIt) {
        const bool came = waitFor([&] { return isIt(m_watcher.seen()); }, 5);
        return came ? base::inSeconds(m_watcher.seen().at - start) : -1;
    }

    model::Project m_project;
    Watcher m_watcher;
    app::flows::QtTaskRunner m_tasks{"com.vantro.preview"};
    editor::EditorPreview m_preview;
    window::PlayWindow m_window{m_preview};
};

void Bench::seeks() {
    std::mt19937 random(1);
    std::vector<double> first;
    std::vector<double> full;
    int missing = 0;
    auto& transport = *m_preview.transport();
    const auto length = static_cast<std::int64_t>(transport.duration() * 600);
    for (int round = 0; round < 60; ++round) {
        const media::MediaTime target{static_cast<std::int64_t>(random()) % length, 600};
        const auto start = base::hostNow();
        transport.seek(target.seconds() / transport.duration());
        const double taken = seenAfter(start, [&](const auto& seen) {
            return !seen.isPreliminary && std::abs((seen.time - target).seconds()) < 1e-3;
        });
        if (taken < 0) {
            ++missing;
            continue;
        }
        full.push_back(taken);
        first.push_back(base::inSeconds(m_watcher.seen().firstAt - start));
    }
    printTimes("exact seeks", std::move(first), missing);
    printTimes("  full picture", std::move(full), missing);
}

/// Back and forth over a minute, as a hand does, 60 places a second.
void Bench::scrub() {
    constexpr double seconds = 8;
    auto& transport = *m_preview.transport();
    transport.setScrubbing(true);
    const auto before = m_watcher.seen().pictures;
    const auto start = base::hostNow();
    QTimer drag;
    QObject::connect(&drag, &QTimer::timeout, [&] {
        const double t = base::inSeconds(base::hostNow() - start);
        const double place = transport.duration() / 2 + 30 * std::sin(t * 2);
        transport.seek(std::clamp(place / transport.duration(), 0.0, 1.0));
    });
    drag.start(16);
    rest(seconds);
    drag.stop();
    transport.setScrubbing(false);
    fmt::print("  {:<24} {:.1f} pictures a second\n", "scrubbing over a minute",
               static_cast<double>(m_watcher.seen().pictures - before) / seconds);
}

void Bench::edits() {
    std::vector<double> times;
    int missing = 0;
    auto edit = m_project.edit;
    for (int round = 0; round < 40; ++round) {
        edit.background.padding = 0.05 + 0.002 * round;
        const auto before = m_watcher.seen().pictures;
        const auto start = base::hostNow();
        m_preview.show(m_project.recording, edit);
        const double taken =
            seenAfter(start, [before](const auto& seen) { return seen.pictures > before; });
        taken < 0 ? void(++missing) : times.push_back(taken);
    }
    printTimes("changed edits", std::move(times), missing);
}

void Bench::pause() {
    constexpr double seconds = 5;
    rest(1);
    const double before = processorSeconds();
    rest(seconds);
    fmt::print("  {:<24} {:.2f} % of a core, {:.0f} MB resident\n", "paused",
               100 * (processorSeconds() - before) / seconds, residentMegabytes());
}

} // namespace

int main(int argc, char** argv) try {
    if (argc < 2 || argc > 3)
        throw std::runtime_error("usage: preview_bench PROJECT.vantro [PROXIES]");
    const auto application = program::makeWindowedApplication(argc, argv);
    Bench bench(app::files::readProjectFile(argv[1]), argc > 2 ? argv[2] : "");
    bench.seeks();
    bench.scrub();
    bench.edits();
    bench.pause();
    return 0;
} catch (const std::exception& error) {
    fmt::print(stderr, "preview_bench: {}\n", error.what());
    return 1;
}
