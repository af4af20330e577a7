// What the bars of the time line cost with a recording of two hours, 450,000 pointer samples, 2,000
// clicks and 200 segments, in a window 1920 wide: opening, and for each event of a drag our handler
// (CPU time) and the way from the event to the swap that shows it. Beside them a peer: a slider of
// Qt's, which has one handle and no model, dragged in the same window. With a movie, the same bars
// over it are scrubbed while its pictures are found and shown.
// usage: timeline_bench [MOVIE] (QT_QPA_PLATFORM and QT_QUICK_BACKEND choose where; software by
// default)

#include "app/flows/QtMainLoop.h"
#include "editor/EditorPreview.h"
#include "editor/bars/EditorActions.h"
#include "program/DesktopServices.h"
#include "window/QmlModule.h"

#include <QApplication>
#include <QMouseEvent>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QWheelEvent>
#include <algorithm>
#include <chrono>
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

/// What this thread has computed: a machine with other work does not spoil it.
double threadMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

model::Project projectOf(const std::filesystem::path& movie, double length) {
    model::RecordingMetadata metadata;
    metadata.endTime = length;
    metadata.captureRect = {0, 0, 1920, 1080};
    for (int i = 0; i < 450'000; ++i)
        metadata.cursorPositions.push_back({.timestamp = i * length / 450'000});
    for (int i = 0; i < 2'000; ++i)
        metadata.clickEvents.push_back({.timestamp = i * length / 2'000});
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

constexpr auto source = R"(
import QtQuick
import QtQuick.Window
import QtQuick.Templates as T
import Vantro
import Vantro.Native
Window {
    required property EditorActions actions
    required property PlayerTimeObserver transport
    required property EditorPreview player
    width: 1920; height: 1080; visible: true
    T.Slider {
        id: slider
        objectName: "peer"
        width: parent.width; height: 40
        handle: Rectangle { x: slider.visualPosition * (slider.width - 16); width: 16; height: 16; radius: 8; color: "red" }
    }
    VideoPreviewArea {
        anchors { fill: parent; topMargin: 60; bottomMargin: 140 }
        visible: parent.Window.window.player.ready
        player: parent.Window.window.player
    }
    TimelineBarsGroup {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        actions: parent.Window.window.actions
        transport: parent.Window.window.transport
    }
}
)";

/// The window, and the times of what is sent to it.
class Bench {
  public:
    explicit Bench(model::Project project) {
        window::prepareEngine(m_engine);
        m_actions.timeline()->setWidth(1888);
        const auto began = Clock::now();
        m_state.show(std::move(project));
        QQmlComponent component(&m_engine);
        component.setData(source, {});
        m_window.reset(qobject_cast<QQuickWindow*>(component.createWithInitialProperties(
            {{"actions", QVariant::fromValue<QObject*>(&m_actions)},
             {"transport", QVariant::fromValue<QObject*>(m_preview.transport())},
             {"player", QVariant::fromValue<QObject*>(&m_preview)}})));
        if (!m_window)
            throw std::runtime_error(component.errorString().toStdString());
        QObject::connect(m_window.get(), &QQuickWindow::frameSwapped, [this] { ++m_swaps; });
        awaitSwap(0);
        fmt::print("opening, to the first swap: {:.1f} ms\n", milliseconds(Clock::now() - began));
        for (int i = 0; i < 20; ++i)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
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
                QWheelEvent event(at, m_window->mapToGlobal(at), {},
                                  {0, i / 15 % 2 == 0 ? 120 : -120}, {}, {}, Qt::NoScrollPhase,
                                  false);
                QCoreApplication::sendEvent(m_window.get(), &event);
            });
        print(name);
    }
    QPointF on(const char* name, double x) {
        auto* item = m_window->findChild<QQuickItem*>(QString::fromLatin1(name));
        return item->mapToScene({x, item->height() / 2});
    }
    editor::bars::EditorActions& actions() { return m_actions; }
    /// Plays the project's movie, paused.
    void play() {
        m_preview.show(m_state.document().recording(), m_state.document().edit());
        while (!m_preview.isReady() && m_preview.problem().isEmpty())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (!m_preview.isReady())
            throw std::runtime_error(m_preview.problem().toStdString());
    }

  private:
    void mouse(QEvent::Type type, QPointF at) {
        const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, m_window->mapToGlobal(at), button,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
        event.setTimestamp(m_time += 10);
        QCoreApplication::sendEvent(m_window.get(), &event);
    }
    void measure(const auto& send) {
        const int before = m_swaps;
        const auto began = Clock::now();
        const double busy = threadMilliseconds();
        send();
        m_handlers.push_back(threadMilliseconds() - busy);
        m_window->update(); // a step that changes nothing is shown as well
        awaitSwap(before);
        m_shown.push_back(milliseconds(Clock::now() - began));
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
        fmt::print(
            "{:34} handler {:5.2f} ms median {:5.2f} p95 {:5.2f} worst   to the swap {:5.1f} "
            "median {:5.1f} p95\n",
            name, at(m_handlers, 0.5), at(m_handlers, 0.95), at(m_handlers, 1), at(m_shown, 0.5),
            at(m_shown, 0.95));
        m_handlers.clear();
        m_shown.clear();
    }

    app::AppState m_state{1};
    app::flows::QtTaskRunner m_tasks{"bench"};
    editor::EditorPreview m_preview{m_tasks, program::openMovieForEditor,
                                    [](const auto&) { return nullptr; }};
    editor::bars::EditorActions m_actions{m_state, *m_preview.transport()};
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    std::vector<double> m_handlers;
    std::vector<double> m_shown;
    int m_swaps = 0;
    ulong m_time = 0;
};

} // namespace

int main(int argc, char** argv) try {
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software");
    const QApplication application(argc, argv);
    {
        Bench bench(projectOf("/nowhere/recording.mov", twoHours));
        auto& timeline = *bench.actions().timeline();
        bench.drag("peer: Qt's slider", {20, 20}, 600);
        bench.drag("an edge of a segment", bench.on("segmentsBar", 1888 * 0.2), -300);
        bench.drag("a zoom among 2,000", bench.on("zoomBar", 944), 600);
        bench.drag("marking a range", bench.on("ruler", 300), 600);
        bench.wheel("magnifying", bench.on("ruler", 944));
        for (int i = 0; i < 20; ++i)
            timeline.magnify(1.25, 944);
        const auto& zoom = timeline.zoomRows()[1];
        bench.drag("a zoom with room to move", bench.on("zoomBar", zoom.x + zoom.width / 2), 40);
        bench.drag("scrolling a magnified view", bench.on("zoomBar", 944), 1200);
    }
    if (argc < 2)
        return 0;
    Bench bench(projectOf(argv[1], 60));
    bench.play();
    bench.drag("scrubbing over a movie", bench.on("ruler", 300), 1200);
    bench.drag("an edge over a movie", bench.on("segmentsBar", 1888 * 0.2), -300);
    return 0;
} catch (const std::exception& error) {
    fmt::print(stderr, "timeline_bench: {}\n", error.what());
    return 1;
}
