#pragma once

#include "app/flows/AreaOverlay.h"
#include "app/flows/FilePanels.h"
#include "app/flows/MainTimers.h"
#include "app/flows/RecordingPlatform.h"
#include "app/flows/TaskRunner.h"
#include "app/state/AppState.h"
#include "model/VantroError.h"

#include <algorithm>
#include <deque>
#include <memory>
#include <stdexcept>
#include <utility>

#include <gmock/gmock.h>

/// The flows' surroundings, each of which does only what a test tells it to.
namespace vantro::test {

inline capture::ShareableWindow windowOf(std::uint32_t id, const std::string& title,
                                         const std::string& application = "app") {
    capture::ShareableWindow window;
    window.windowID = id;
    window.title = title;
    window.frame = {0, 0, 400, 300};
    window.applicationName = window.bundleIdentifier = application;
    window.isOnScreen = true;
    return window;
}

inline capture::ShareableDisplay displayOf(std::uint32_t id, model::Rect frame) {
    capture::ShareableDisplay display;
    display.displayID = id;
    display.frame = frame;
    return display;
}

/// Runs nothing until the test asks for it.
class ManualTasks : public app::flows::TaskRunner {
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
class ManualTimers : public app::flows::MainTimers {
  public:
    std::unique_ptr<app::flows::MainTimer> repeat(std::chrono::milliseconds interval,
                                                  std::function<void()> tick) override {
        return std::make_unique<Timer>(m_timers, interval, std::move(tick));
    }

    void advance(std::chrono::milliseconds span) {
        const auto running = m_timers; // a tick may start and stop timers
        const auto isRunning = [&](Timer* timer) {
            return std::ranges::count(m_timers, timer) > 0;
        };
        for (auto* timer : running) {
            if (isRunning(timer))
                timer->left -= span;
            while (isRunning(timer) && timer->left.count() <= 0) {
                timer->left += timer->interval;
                const auto tick = timer->tick; // which may be its end
                tick();
            }
        }
    }
    std::size_t running() const { return m_timers.size(); }

  private:
    struct Timer : app::flows::MainTimer {
        Timer(std::vector<Timer*>& all, std::chrono::milliseconds every, std::function<void()> does)
            : timers(all), interval(every), left(every), tick(std::move(does)) {
            timers.push_back(this);
        }
        ~Timer() override { std::erase(timers, this); }

        std::vector<Timer*>& timers;
        std::chrono::milliseconds interval;
        std::chrono::milliseconds left;
        std::function<void()> tick;
    };

    std::vector<Timer*> m_timers;
};

/// Succeeds, or fails as it is told.
class ScriptedRecorder : public capture::Recorder {
  public:
    bool isTakenBack = false; ///< by the user, who is asked what to record
    std::optional<model::VantroError> chooseFailure;
    std::optional<model::VantroError> startFailure;
    std::optional<model::VantroError> stopFailure;
    model::RecordingMetadata metadata;
    capture::RecordingStatistics recorderStatus;
    std::filesystem::path movie;
    int starts = 0;
    std::optional<capture::ChosenContent> content; ///< in the desktop's own dialog
    bool isSharingEnded = false;                   ///< before the start
    std::optional<model::Rect> area;
    int hides = 0; ///< waits for our windows to be gone

    bool choose(std::stop_token cancelled) override {
        if (chooseFailure)
            throw *chooseFailure;
        return !isTakenBack && !cancelled.stop_requested();
    }
    std::optional<capture::ChosenContent> chosen() override { return content; }
    bool isShared() override { return !isSharingEnded; }
    void crop(const model::Rect& rect) override { area = rect; }
    void awaitHiddenWindows() override { ++hides; }
    bool start(const std::filesystem::path& output) override {
        ++starts;
        movie = output;
        if (startFailure)
            throw *startFailure;
        return !isSharingEnded;
    }
    model::RecordingMetadata stop() override {
        if (stopFailure)
            throw *stopFailure;
        return metadata;
    }
    capture::RecordingStatistics statistics() override { return recorderStatus; }
    bool mark() override { return !recorderStatus.isPaused; }
    void pause() override { recorderStatus.isPaused = true; }
    void resume() override { recorderStatus.isPaused = false; }
};

class ScriptedPlatform : public app::flows::RecordingPlatform {
  public:
    std::vector<capture::ShareableDisplay> attached{displayOf(7, {0, 0, 1920, 1080}),
                                                    displayOf(8, {1920, 0, 1280, 1024})};
    capture::PlatformAbilities able;
    std::shared_ptr<ScriptedRecorder> next = std::make_shared<ScriptedRecorder>();
    std::vector<capture::RecordingRequest> made;

    std::vector<capture::ShareableDisplay> displays() override { return attached; }
    capture::PlatformAbilities abilities() override { return able; }
    std::shared_ptr<capture::Recorder> makeRecorder(capture::RecordingRequest request) override {
        made.push_back(std::move(request));
        return next;
    }
};

class ScriptedOverlays : public app::flows::AreaOverlays {
  public:
    std::shared_ptr<app::flows::AreaOverlay> show(app::flows::AreaOverlayCallbacks) override {
        return std::make_shared<app::flows::AreaOverlay>();
    }
    bool isScreen(const capture::ChosenContent& content) override {
        return content.place.has_value();
    }
    std::shared_ptr<app::flows::AreaOverlay>
    showOn(const capture::ChosenContent& screen, app::flows::AreaOverlayCallbacks told) override {
        shown = screen.picture;
        callbacks = std::move(told);
        return std::make_shared<app::flows::AreaOverlay>();
    }

    std::shared_ptr<const media::PixelBuffer> shown;
    app::flows::AreaOverlayCallbacks callbacks; ///< of that
};

class ScriptedPanels : public app::flows::FilePanels {
  public:
    std::optional<app::flows::PanelKind> kind; ///< of the panel that is open
    std::string proposedName;

    void ask(app::flows::PanelKind wanted, const std::string& name, Answer answer) override {
        kind = wanted;
        proposedName = name;
        m_answer = std::move(answer);
    }
    void answer(std::optional<std::filesystem::path> path) {
        kind.reset();
        std::optional<app::flows::ChosenFile> chosen;
        if (path)
            chosen.emplace(std::move(*path));
        std::exchange(m_answer, {})(std::move(chosen));
    }

  private:
    Answer m_answer;
};

/// What the user is told now.
inline void expectError(const app::AppState& state, model::VantroError::Kind kind,
                        std::string_view message) {
    const auto& error = state.error();
    if (!error.has_value())
        FAIL() << "no error";
    EXPECT_TRUE(state.showError());
    EXPECT_EQ(error->kind(), kind);
    EXPECT_THAT(error->message(), testing::HasSubstr(message));
}

} // namespace vantro::test
