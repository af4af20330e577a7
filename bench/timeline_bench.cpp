// What the editor costs with a recording of two hours, 450,000 pointer samples, 2,000 clicks and
// 200 segments, in a window 1920 wide with the preview, the sidebar and the recording's thumbnails:
// opening the project from disk, and for each event of a drag our handler and the way to the swap
// that shows it, both also in CPU time of the main thread, which a machine with other work does not
// spoil. Beside them a peer: a slider of Qt's, which has one handle and no model, dragged in the
// same window.
// usage: timeline_bench [MOVIE] (two hours of it; made by ffmpeg where none is named.
// QT_QPA_PLATFORM and QT_QUICK_BACKEND choose where; software by default)

#include "app/files/ProjectStores.h"
#include "app/flows/ExportFlow.h"
#include "app/flows/Flows.h"
#include "app/flows/JournalFlow.h"
#include "app/flows/PermissionService.h"
#include "app/flows/QtMainLoop.h"
#include "app/flows/RecoveryFlow.h"
#include "editor/EditorModel.h"
#include "editor/bars/EditorActions.h"
#include "program/DesktopServices.h"
#include "program/PictureWithoutUs.h"
#include "ui/ActionGuard.h"
#include "ui/platform/Appearance.h"
#include "ui/platform/NativePanels.h"
#include "window/DisplayChoice.h"
#include "window/MainModel.h"
#include "window/MainWindow.h"
#include "window/devices/CameraView.h"
#include "window/devices/DeviceChoice.h"
#include "window/devices/LevelMeters.h"
#include "window/overlay/DesktopOverlays.h"
#include "window/start/RecentProjectsModel.h"
#include "window/start/UnsavedRecordingsModel.h"

#include <QApplication>
#include <QMouseEvent>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <vector>

#include <fmt/format.h>

namespace {

using namespace vantro;
using Clock = std::chrono::steady_clock;

constexpr double twoHours = 7200; // seconds
constexpr int events = 300;       // of each drag

double milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

/// What this thread has computed.
double threadMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// Two hours of small pictures, two a second, with sound.
std::string madeMovie(const QTemporaryDir& folder) {
    const auto movie = folder.filePath("recording.mov").toStdString();
    const auto command = fmt::format(
        "ffmpeg -v error -f lavfi -i testsrc2=size=640x360:rate=2 -f lavfi -i sine=r=16000 -t {} "
        "-c:v libx264 -preset ultrafast -g 20 -pix_fmt yuv420p -c:a aac -b:a 32k '{}'",
        twoHours, movie);
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error("ffmpeg makes no movie");
    return movie;
}

model::Project projectOf(const std::filesystem::path& movie) {
    constexpr double length = twoHours;
    model::RecordingMetadata metadata;
    metadata.endTime = length;
    metadata.captureRect = {0, 0, 1920, 1080};
    for (int i = 0; i < 450'000; ++i)
        metadata.cursorPositions.push_back({.x = 960 + 900 * std::sin(i * 1e-3),
                                            .y = 540 + 500 * std::cos(i * 1e-3),
                                            .timestamp = i * length / 450'000});
    for (int i = 0; i < 2'000; ++i)
        metadata.clickEvents.push_back(
            {.x = i % 1900 + 0.5, .y = i % 1000 + 0.25, .timestamp = i * length / 2'000});
    auto edit = model::freshEdit(metadata);
    std::vector<model::TimelineSegment> segments;
    segments.push_back({.startFraction = 0, .endFraction = 0.2});
    for (int i = 0; i < 199; ++i)
        segments.push_back({.startFraction = 0.21 + i * 0.79 / 199,
                            .endFraction = 0.21 + (i + 0.9) * 0.79 / 199,
                            .speed = 1 + i % 3 * 0.5});
    edit.segments = std::move(segments);
    return {"bench", {movie, std::move(metadata)}, std::move(edit)};
}

constexpr auto peerSource = R"(
import QtQuick
import QtQuick.Templates as T
T.Slider {
    id: slider
    width: 1000; height: 40; z: 10
    handle: Rectangle { x: slider.visualPosition * (slider.width - 16); width: 16; height: 16; radius: 8; color: "red" }
}
)";

/// The program's window, without what records.
struct Rig {
    QTemporaryDir folder;
    ui::Preferences preferences{folder.filePath("vantro.ini")};
    ui::Appearance appearance{preferences};
    program::DesktopRecording desktop;
    app::flows::QtMainTimers timers;
    app::AppState state{1};
    app::flows::PermissionService permission{timers, [] { return true; }};
    ui::NativePanels panels{state, preferences};
    window::overlay::DesktopOverlays overlays{desktop, program::pictureWithoutUs, preferences};
    app::flows::QtTaskRunner tasks{"bench"};
    app::flows::QtTaskRunner previewTasks{"bench.preview"};
    app::flows::RecordingFlow recording{state, {desktop, overlays, timers, tasks}};
    app::flows::ExportFlow exports{state, panels, tasks, program::runExport};
    app::flows::ProjectFlow projects{state, panels, tasks};
    app::flows::RecoveryFlow recovery{state, projects, tasks};
    app::flows::JournalFlow journals{state, projects, timers, tasks,
                                     folder.filePath("edits").toStdString()};
    const app::flows::Flows flows{recording, exports, projects, recovery, journals};
    editor::EditorPreview preview{previewTasks, program::openMovieForEditor,
                                  [](const auto&) { return nullptr; }};
    window::picker::WindowPickerModel windows{tasks, timers, program::listShareableContent};
    window::DisplayChoice displays{state, [this] { return desktop.displays(); }};
    ui::ActionGuard guard{state, permission, flows, [this] { return desktop.abilities(); }};
    window::MainModel model{state, permission, windows, flows, guard};
    editor::EditorModel editor{state,
                               preview,
                               flows,
                               {.panels = panels,
                                .tasks = tasks,
                                .openMovie = program::openMovieForEditor,
                                .showInFolder = [](const QString&) {}}};
    editor::bars::EditorActions actions{state, *preview.transport()};
    window::start::UnsavedRecordingsModel recordings{recovery};
    window::start::RecentProjectsModel recents{preferences, projects, tasks};
    window::devices::DeviceChoice microphones{state, preferences, ui::DeviceUse::microphone};
    window::devices::DeviceChoice cameras{state, preferences, ui::DeviceUse::camera};
    window::devices::CameraView camera{
        guard, state, tasks, [](const auto&) { return std::unexpected(capture::CameraRefusal{}); }};
    window::devices::LevelMeters meters{guard, state, timers,
                                        [](auto, const auto&) { return nullptr; }};
    window::MainWindow window{{model, editor, actions, windows, displays, guard, appearance,
                               recordings, recents, meters, microphones, cameras, camera, recovery,
                               recording}};
};

/// The window, and the times of what is sent to it.
class Bench {
  public:
    Bench() {
        QObject::connect(&window(), &QQuickWindow::frameSwapped, [this] { ++m_swaps; });
        m_rig.permission.startPolling();
        window().show();
        awaitSwap(0);
        window().resize(1920, 1080);
    }

    void open(const std::filesystem::path& package) {
        const auto began = Clock::now();
        const double busy = threadMilliseconds();
        m_rig.projects.open(package);
        await([this] { return m_rig.state.phase() == app::AppPhase::previewing(); });
        awaitSwap(m_swaps);
        fmt::print("opening, until the editor is shown: {:.0f} ms ({:.0f} of the main thread)\n",
                   milliseconds(Clock::now() - began), threadMilliseconds() - busy);
        await([this] { return m_rig.preview.isReady() || !m_rig.preview.problem().isEmpty(); });
        fmt::print("         until its movie can be played: {:.0f} ms\n",
                   milliseconds(Clock::now() - began));
        window().resize(1920, 1080);
        await([this] { return m_rig.actions.strip()->hasPictures(); });
        const auto until = Clock::now() + std::chrono::seconds(3); // thumbnails come
        await([&] { return Clock::now() > until; });
    }

    /// Drags from `from` by `points` to the right and back.
    void drag(const char* name, QPointF from, double points) {
        mouse(QEvent::MouseButtonPress, from);
        for (int i = 1; i <= events; ++i) {
            const double share = 1 - std::abs(1 - 2.0 * i / events);
            measure([&] { mouse(QEvent::MouseMove, from + QPointF(points * share, 0)); });
        }
        mouse(QEvent::MouseButtonRelease, from);
        print(name);
    }
    void wheel(const char* name, QPointF at) {
        for (int i = 0; i < events; ++i)
            measure([&] {
                QWheelEvent event(at, window().mapToGlobal(at), {},
                                  {0, i / 15 % 2 == 0 ? 120 : -120}, {}, {}, Qt::NoScrollPhase,
                                  false);
                QCoreApplication::sendEvent(&window(), &event);
            });
        print(name);
    }
    void dragPeer() {
        QQmlComponent component(qmlContext(window().contentItem()->childItems().first())->engine());
        component.setData(peerSource, {});
        const std::unique_ptr<QObject> slider(component.create());
        auto* item = qobject_cast<QQuickItem*>(slider.get());
        if (item == nullptr)
            throw std::runtime_error(component.errorString().toStdString());
        item->setParentItem(window().contentItem());
        drag("peer: Qt's slider", {8, 8}, 600);
    }
    QPointF on(const char* name, double x) {
        auto& item = found(name);
        return item.mapToScene({x, item.height() / 2});
    }
    /// The handle of a slider that stands at `share` of its way.
    QPointF onSlider(const char* name) {
        auto& slider = found(name);
        slider.forceActiveFocus(Qt::TabFocusReason); // is scrolled into view
        awaitSwap(m_swaps);
        return on(name, 8 + slider.property("visualPosition").toDouble() * (slider.width() - 16));
    }
    QQuickItem& found(const char* name) {
        auto* item = window().findChild<QQuickItem*>(QString::fromLatin1(name));
        if (item == nullptr)
            throw std::runtime_error(fmt::format("{} is not shown", name));
        return *item;
    }
    Rig& rig() { return m_rig; }
    QQuickWindow& window() { return m_rig.window.window(); }
    static void await(const auto& isDone) {
        QTimer looks; // events may be far apart, and a loop without a pause takes a processor away
        looks.start(2);
        while (!isDone())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

  private:
    struct Times {
        std::vector<double> handler;  ///< CPU
        std::vector<double> computed; ///< CPU, to the swap
        std::vector<double> shown;
    };

    void mouse(QEvent::Type type, QPointF at) {
        const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, window().mapToGlobal(at), button,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
        event.setTimestamp(m_time += 10);
        QCoreApplication::sendEvent(&window(), &event);
    }
    void measure(const auto& send) {
        const int before = m_swaps;
        const auto began = Clock::now();
        const double busy = threadMilliseconds();
        send();
        m_times.handler.push_back(threadMilliseconds() - busy);
        window().update(); // a step that changes nothing is shown as well
        awaitSwap(before);
        m_times.computed.push_back(threadMilliseconds() - busy);
        m_times.shown.push_back(milliseconds(Clock::now() - began));
    }
    void awaitSwap(int before) const {
        while (m_swaps == before)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    void print(const char* name) {
        const auto at = [](std::vector<double>& times, double share) {
            std::ranges::sort(times);
            return times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
        };
        auto& [handler, computed, shown] = m_times;
        fmt::print("{:30} handler {:5.2f} median {:5.2f} p95 {:5.2f} worst   to the swap {:5.1f} "
                   "median {:5.1f} p95 (CPU {:4.1f}, {:4.1f})\n",
                   name, at(handler, 0.5), at(handler, 0.95), at(handler, 1), at(shown, 0.5),
                   at(shown, 0.95), at(computed, 0.5), at(computed, 0.95));
        std::fflush(stdout);
        m_times = {};
    }

    Rig m_rig;
    Times m_times;
    int m_swaps = 0;
    ulong m_time = 0;
};

void measureBars(Bench& bench) {
    auto& timeline = *bench.rig().actions.timeline();
    const double width = timeline.width();
    bench.drag("an edge of a segment", bench.on("segmentsBar", width * 0.2), -300);
    bench.drag("a zoom among 2,000", bench.on("zoomBar", width / 2), 600);
    bench.drag("marking a range", bench.on("zoomBar", -4), 600);
    bench.drag("scrubbing", bench.on("ruler", 300), 1200);
    bench.wheel("magnifying", bench.on("ruler", width / 2));
    for (int i = 0; i < 20; ++i)
        timeline.magnify(1.25, width / 2);
    const auto& zoom = timeline.zoomRows()[1];
    bench.drag("a zoom with room to move", bench.on("zoomBar", zoom.x + zoom.width / 2), 40);
    bench.drag("scrolling a magnified view", bench.on("zoomBar", width / 2), 1200);
}

void measureSettings(Bench& bench) {
    auto& state = bench.rig().state;
    const auto& zoom = state.editableClickEvents()[10];
    state.setSelectedClickID(zoom.id);
    bench.rig().preview.transport()->seek(zoom.timestamp / twoHours);
    for (const auto* slider : {"zoomLevelSlider", "zoomXSlider", "paddingSlider",
                               "cornerRadiusSlider", "pointerScaleSlider", "allZoomsLevelSlider"})
        bench.drag(slider, bench.onSlider(slider), 60);
    Bench::await([&] { return bench.found("zoomTarget").isVisible(); });
    bench.drag("the zoom's target", bench.on("zoomTarget", 18), 200);
}

} // namespace

int main(int argc, char** argv) try {
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software");
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    const auto package = std::filesystem::path(folder.path().toStdString()) / "film.vantro";
    app::files::saveProject(package, projectOf(argc > 1 ? argv[1] : madeMovie(folder)), true);
    Bench bench;
    bench.open(package);
    bench.dragPeer();
    measureBars(bench);
    bench.rig().actions.timeline()->fit();
    measureSettings(bench);
    fmt::print("thumbnails and waveform: {:.1f} MB, never more than {:.0f}\n",
               static_cast<double>(bench.rig().actions.strip()->bytes()) / 1e6,
               static_cast<double>(media::strips::mostBytes) / 1e6);
    return 0;
} catch (const std::exception& error) {
    fmt::print(stderr, "timeline_bench: {}\n", error.what());
    return 1;
}
