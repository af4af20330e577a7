#pragma once

#include "app/state/AreaOverlay.h"
#include "app/state/FilePanels.h"
#include "app/state/MainTimers.h"
#include "app/state/Recorder.h"
#include "app/state/TaskRunner.h"
#include "model/VantroError.h"

#include <algorithm>
#include <deque>
#include <memory>
#include <stdexcept>
#include <utility>

/// The flows' surroundings, each of which does only what a test tells it to.
namespace vantro::test {

inline ShareableWindow windowOf(std::uint32_t id, const std::string& title, Rect frame = {}) {
    ShareableWindow window;
    window.windowID = id;
    window.title = title;
    window.frame = frame;
    return window;
}

inline ShareableDisplay displayOf(std::uint32_t id, Rect frame, double scale = 1) {
    ShareableDisplay display;
    display.displayID = id;
    display.frame = frame;
    display.backingScaleFactor = scale;
    return display;
}

/// Runs nothing until the test asks for it.
class ManualTasks : public TaskRunner {
  public:
    void run(std::function<Continuation()> work) override { m_work.push_back(std::move(work)); }
    void onMain(Continuation task) override { m_main.push_back(std::move(task)); }

    /// Does one piece of work and leaves what follows from it to runMain().
    void runWork() {
        if (m_work.empty())
            throw std::logic_error("no work is waiting");
        auto work = std::move(m_work.front());
        m_work.pop_front();
        if (auto continuation = work())
            onMain(std::move(continuation));
    }
    void runMain() {
        while (!m_main.empty()) {
            auto task = std::move(m_main.front());
            m_main.pop_front();
            task();
        }
    }
    void runAll() {
        runMain();
        while (!m_work.empty()) {
            runWork();
            runMain();
        }
    }
    std::size_t waitingWork() const { return m_work.size(); }

  private:
    std::deque<std::function<Continuation()>> m_work;
    std::deque<Continuation> m_main;
};

/// Time that passes only when the test says so.
class ManualTimers : public MainTimers {
  public:
    std::unique_ptr<MainTimer> repeat(std::chrono::milliseconds interval,
                                      std::function<void()> tick) override {
        return std::make_unique<Timer>(m_timers, Entry{interval, interval, std::move(tick)});
    }

    void advance(std::chrono::milliseconds span) {
        const auto running = m_timers; // a tick may start and stop timers
        for (const auto& timer : running)
            for (timer->left -= span; timer->left.count() <= 0 && isRunning(timer);
                 timer->left += timer->interval)
                timer->tick();
    }
    std::size_t running() const { return m_timers.size(); }

  private:
    struct Entry {
        std::chrono::milliseconds interval;
        std::chrono::milliseconds left;
        std::function<void()> tick;
    };
    using Entries = std::vector<std::shared_ptr<Entry>>;

    class Timer : public MainTimer {
      public:
        Timer(Entries& timers, Entry entry)
            : m_timers(timers), m_entry(std::make_shared<Entry>(std::move(entry))) {
            m_timers.push_back(m_entry);
        }
        ~Timer() override { std::erase(m_timers, m_entry); }

      private:
        Entries& m_timers;
        std::shared_ptr<Entry> m_entry;
    };

    bool isRunning(const std::shared_ptr<Entry>& entry) const {
        return std::ranges::find(m_timers, entry) != m_timers.end();
    }

    Entries m_timers;
};

/// Succeeds, or fails as it is told.
class ScriptedRecorder : public Recorder {
  public:
    std::optional<VantroError> startFailure;
    std::optional<VantroError> stopFailure;
    RecordingMetadata metadata;
    RecorderStatus recorderStatus;
    int starts = 0;
    int stops = 0;

    void start() override {
        ++starts;
        if (startFailure)
            throw *startFailure;
    }
    RecordingMetadata stop() override {
        ++stops;
        if (stopFailure)
            throw *stopFailure;
        return metadata;
    }
    RecorderStatus status() override { return recorderStatus; }
};

class ScriptedPlatform : public RecordingPlatform {
  public:
    std::vector<ShareableDisplay> attached{displayOf(7, {0, 0, 1920, 1080}),
                                           displayOf(8, {1920, 0, 1280, 1024})};
    std::shared_ptr<ScriptedRecorder> next = std::make_shared<ScriptedRecorder>();
    std::vector<RecorderConfiguration> made;

    std::vector<ShareableDisplay> displays() override { return attached; }
    std::shared_ptr<Recorder> makeRecorder(RecorderConfiguration configuration) override {
        made.push_back(std::move(configuration));
        return next;
    }
};

class ScriptedOverlays : public AreaOverlays {
  public:
    bool hasScreen = true;
    AreaOverlayCallbacks callbacks; ///< of the overlay shown last
    std::weak_ptr<AreaOverlay> shown;

    std::shared_ptr<AreaOverlay> show(AreaOverlayCallbacks wanted) override {
        if (!hasScreen)
            return nullptr;
        callbacks = std::move(wanted);
        auto overlay = std::make_shared<AreaOverlay>();
        shown = overlay;
        return overlay;
    }
};

class ScriptedPanels : public FilePanels {
  public:
    std::optional<PanelKind> kind; ///< of the panel that is open
    std::string proposedName;

    void ask(PanelKind wanted, const std::string& name, Answer answer) override {
        kind = wanted;
        proposedName = name;
        m_answer = std::move(answer);
    }
    void answer(std::optional<std::filesystem::path> path) {
        kind.reset();
        std::exchange(m_answer, {})(std::move(path));
    }

  private:
    Answer m_answer;
};

} // namespace vantro::test
