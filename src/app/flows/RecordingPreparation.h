#pragma once

#include "app/flows/AreaOverlay.h"
#include "app/flows/Countdown.h"
#include "app/flows/PreparationStep.h"
#include "app/flows/RecordingPlatform.h"
#include "app/state/AppState.h"

#include <filesystem>
#include <stop_token>

namespace vantro::app::flows {

/// What preparations work with; all of it outlives them.
struct PreparationServices {
    RecordingPlatform& platform;
    AreaOverlays& overlays;
    MainTimers& timers;
    TaskRunner& tasks;
};

/// What precedes a recording: the user is asked what to record, by the capture mode, and may be
/// given some seconds.
///
/// The recorder's calls run on the worker thread of `tasks`; what comes back from one that was
/// given up meanwhile is dropped. Everything is given up when the editor opens, as it does for a
/// project or a recovered recording. Main thread.
class RecordingPreparation : public QObject {
    Q_OBJECT

  public:
    RecordingPreparation(AppState& state, const PreparationServices& services);
    ~RecordingPreparation() override;

    /// The record button. Confirms what is shown; else does nothing unless the application is idle.
    void begin();
    /// The same, where the desktop asks what to record: what was chosen earlier does not hold. Also
    /// while that is shown.
    void chooseAnew();
    /// What is shown is to be recorded.
    void confirm();
    void windowSelected(const capture::ShareableWindow& window);
    void windowPickerCancelled();
    void areaCancelled();
    bool isUnderWay() const { return m_step != Step::none; }
    /// Takes everything back. Harmless when there is nothing.
    void cancel();

    /// Whole seconds to count down before a recording starts; 0 starts it at once.
    void setCountdown(int seconds) { m_seconds = seconds; }
    /// Pictures a second at most, of recordings that begin from now on.
    void setFrameRate(int frameRate) { m_frameRate = frameRate; }
    /// Where they are made; nothing stands for the usual place.
    void setFolder(std::optional<std::filesystem::path> folder) { m_folder = std::move(folder); }
    const std::optional<std::filesystem::path>& folder() const { return m_folder; }
    /// Seconds until the recording starts; 0 while nothing is counted down.
    int countdownRemaining() const { return m_countdown.remaining(); }

    /// What the user has chosen in the desktop's own dialog, until it is recorded.
    const std::optional<capture::ChosenContent>& chosenContent() const { return m_content; }
    /// The user is shown that an earlier choice holds again.
    bool isConfirming() const { return m_step == Step::confirming; }
    /// The desktop's own dialog is open.
    bool isDesktopAsking() const { return m_isDesktopAsking; }
    bool isWindowPickerShown() const { return m_step == Step::pickingWindow; }

  Q_SIGNALS:
    void windowPickerShownChanged();
    void desktopAskingChanged();
    void chosenContentChanged();
    void countdownRemainingChanged();
    /// Our own windows would be in the picture, or are to be seen again. Handled at once.
    void hidingWanted(bool hidden);
    /// Preparations are over: what was chosen is to be recorded.
    void ready(const std::shared_ptr<vantro::capture::Recorder>& chosen);

  private:
    using Step = PreparationStep;

    void enter(Step step);
    bool mayBegin();
    bool isFolderUsable();
    bool isDesktopToAsk() const;
    void captureScreen();
    void captureArea();
    AreaOverlayCallbacks overlayCallbacks();
    void areaSelected(std::uint32_t displayID, model::Rect rect);
    void choose();
    void chosen(int request, const std::shared_ptr<capture::Recorder>& recorder, bool isChosen,
                std::optional<capture::ChosenContent> content);
    void chooseFailed(int request, const std::string& message);
    void checkSharing();
    void freezeScreen();
    void selectOn(const std::optional<capture::ChosenContent>& content);
    void cropTo(const model::Rect& area);
    void countDownOrFinish();
    void finish();
    void setContent(std::optional<capture::ChosenContent> content);

    AppState& m_state;
    PreparationServices m_services;
    int m_request = 0; ///< tells apart what comes back from different choices
    Step m_step = Step::none;
    std::stop_source m_choice; ///< takes the choice under way back
    std::shared_ptr<capture::Recorder> m_chosen;
    std::optional<capture::ChosenContent> m_content; ///< of m_chosen
    std::unique_ptr<MainTimer> m_sharingTimer;       ///< while there is content
    bool m_choosesAnew = false;
    bool m_isDesktopAsking = false;
    int m_seconds = 0; ///< to count down
    Countdown m_countdown;
    int m_frameRate = capture::usualFrameRate;
    std::optional<std::filesystem::path> m_folder;
};

} // namespace vantro::app::flows
