#pragma once

#include "app/files/DiskForecast.h"
#include "app/flows/AreaOverlay.h"
#include "app/flows/MainTimers.h"
#include "app/flows/RecordingPlatform.h"
#include "app/flows/TaskRunner.h"
#include "app/state/AppState.h"
#include "capture/StillnessWatch.h"
#include "model/Recording.h"

#include <stop_token>

namespace vantro::app::flows {

/// What the recording flow works with; all of it outlives the flow. `tasks` is the flow's own.
struct RecordingServices {
    RecordingPlatform& platform;
    AreaOverlays& overlays;
    MainTimers& timers;
    TaskRunner& tasks;
    std::function<std::optional<files::DiskUse>(const std::filesystem::path& movie)> diskUse =
        files::diskUse;
};

/// From the record button to the editor: asks what to record by the capture mode, runs the
/// recorder, counts the seconds, and puts what it recorded into the state.
///
/// The recorder's calls run on the worker thread of `tasks`, one after the other; what comes back
/// from one that has failed or was given up meanwhile is dropped. Preparations are given up when
/// the editor opens, as it does for a project or a recovered recording. Main thread.
class RecordingFlow : public QObject {
    Q_OBJECT

  public:
    RecordingFlow(AppState& state, RecordingServices services);
    ~RecordingFlow() override;

    /// The record button. Confirms what is shown; else does nothing unless the application is idle.
    void beginCapture();
    /// The same, where the desktop asks what to record: what was chosen earlier does not hold. Also
    /// while that is shown.
    void chooseAnew();
    /// What is shown is to be recorded.
    void confirmChosen();
    void windowSelected(const capture::ShareableWindow& window);
    void windowPickerCancelled();
    void areaSelected(std::uint32_t displayID, model::Rect rect);
    void areaCancelled();
    bool isPreparing() const { return m_preparation != Preparation::none; }
    /// Takes everything back that precedes a recording. Harmless when there is nothing.
    void cancelPreparation();
    /// Does nothing unless a recording is under way and not yet stopping.
    void stopRecording();

    /// Whole seconds to count down before a recording starts; 0 starts it at once.
    void setCountdown(int seconds) { m_countdown = seconds; }
    /// Pictures a second at most, of recordings that begin from now on.
    void setFrameRate(int frameRate) { m_frameRate = frameRate; }
    /// Where they are made; nothing stands for the usual place.
    void setFolder(std::optional<std::filesystem::path> folder) { m_folder = std::move(folder); }
    /// What is left of a countdown under way, else 0.
    int countdownRemaining() const { return m_countdownRemaining; }

    double elapsedSeconds() const { return m_elapsedSeconds; }
    /// What the user has chosen in the desktop's own dialog, until it is recorded.
    const std::optional<capture::ChosenContent>& chosenContent() const { return m_content; }
    /// The user is shown that an earlier choice holds again.
    bool isConfirming() const { return m_preparation == Preparation::confirming; }
    /// Our own windows would be in the picture now.
    bool areWindowsHidden() const { return m_areWindowsHidden; }
    /// The desktop's own dialog is open.
    bool isDesktopAsking() const { return m_isDesktopAsking; }
    bool isWindowPickerShown() const { return m_preparation == Preparation::pickingWindow; }
    bool isStopping() const { return m_stopping; }
    /// Of the recording under way, as of the last second.
    const capture::RecordingStatistics& recorderStatus() const { return m_recorderStatus; }
    /// Seconds until the disk is full if the recording goes on as it does, as of the last second;
    /// nothing while that is not known.
    std::optional<double> diskSecondsLeft() const { return m_disk.secondsLeft(); }
    /// Why the last recording was stopped before the user did: a sentence to be shown until it is
    /// dismissed; else empty.
    const QString& stopNotice() const { return m_stopNotice; }
    void dismissStopNotice() { setStopNotice({}); }

  Q_SIGNALS:
    void elapsedSecondsChanged();
    void windowPickerShownChanged();
    void desktopAskingChanged();
    void chosenContentChanged();
    /// Handled at once: what is to vanish has been hidden when the signal returns.
    void windowsHiddenChanged();
    void stoppingChanged();
    void recorderStatusChanged();
    void countdownRemainingChanged();
    void stopNoticeChanged();
    // Each once, for whoever looks elsewhere:
    /// Nothing more is recorded, though nobody has asked for that.
    void endedByItself(const QString& why);
    void diskNearlyFull();
    /// Neither picture nor pointer have changed for long.
    void nothingMoves();
    /// A recording could not be finished; what there is of it may be recovered.
    void leftBehind(const QString& recordingPath);

  private:
    /// What precedes a recording. From each of these back to none: cancelled, failed, or the editor
    /// was opened meanwhile.
    ///
    ///   none -+-> pickingWindow -+-> choosing -+-> selectingArea -+-> countingDown -+-> none
    ///         +-> selectingArea -+             +-> confirming ----+                 | (recording)
    ///         +------------------+             +------------------+-----------------+
    ///
    /// An area is selected before or, where the desktop asks itself, on what has been chosen.
    enum class Preparation {
        none,
        pickingWindow,
        selectingArea,
        choosing,
        confirming,
        countingDown
    };

    static bool mayFollow(Preparation before, Preparation after);
    void setPreparation(Preparation preparation);
    void captureScreen();
    bool isDesktopToAsk() const;
    void captureArea();
    capture::RecordingRequest makeRequest() const;
    void choose();
    void chosen(int request, const std::shared_ptr<capture::Recorder>& recorder, bool isChosen,
                std::optional<capture::ChosenContent> content);
    void freezeScreen();
    void selectOn(const std::optional<capture::ChosenContent>& content);
    void cropTo(const model::Rect& area);
    void beginCountdown();
    bool hasToHideWindows() const;
    void startRecording();
    void tickCountdown();
    bool isFolderUsable();
    void followCondition();
    void watchDisk();
    void stopByItself(const QString& why);
    void setStopNotice(const QString& notice);
    void tickSecond();
    void chooseFailed(int request, const std::string& message);
    void startFailed(int request, const std::string& message);
    void takenBack(int request);
    void stopFailed(int request, const std::string& message);
    void recordingFinished(int request, const model::Recording& recording);
    void setElapsedSeconds(double seconds);
    void setStopping(bool stopping);
    void setRecorderStatus(const capture::RecordingStatistics& status);
    void setCountdownRemaining(int seconds);
    void setContent(std::optional<capture::ChosenContent> content);
    void setWindowsHidden(bool hidden);
    void checkSharing();
    AreaOverlayCallbacks overlayCallbacks();

    AppState& m_state;
    RecordingServices m_services;
    int m_request = 0; ///< tells apart what comes back from different recordings
    Preparation m_preparation = Preparation::none;
    std::stop_source m_choice; ///< takes the choice under way back
    std::shared_ptr<capture::Recorder> m_chosen;
    std::optional<capture::ChosenContent> m_content; ///< of m_chosen
    bool m_areWindowsHidden = false;
    bool m_choosesAnew = false;
    bool m_isDesktopAsking = false;
    int m_countdown = 0;
    int m_countdownRemaining = 0;
    int m_frameRate = capture::usualFrameRate;
    std::optional<std::filesystem::path> m_folder;
    double m_elapsedSeconds = 0;
    bool m_stopping = false;
    capture::RecordingStatistics m_recorderStatus;
    files::DiskForecast m_disk;
    bool m_isDiskTold = false; ///< that it is nearly full
    capture::StillnessWatch m_stillness;
    QString m_whyStopped; ///< of the recording under way; empty where the user stops it
    QString m_stopNotice;
    std::filesystem::path m_outputURL;
    std::unique_ptr<MainTimer> m_secondTimer;
    std::unique_ptr<MainTimer> m_countdownTimer;
    std::unique_ptr<MainTimer> m_sharingTimer; ///< while there is content
};

} // namespace vantro::app::flows
