#pragma once

#include "app/files/DiskForecast.h"
#include "app/flows/RecordingPreparation.h"
#include "capture/StillnessWatch.h"
#include "model/Recording.h"

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

/// From the record button to the editor: after the preparations it runs the recorder, counts the
/// seconds, and puts what was recorded into the state.
///
/// The recorder's calls run on the worker thread of `tasks`, one after the other; what comes back
/// from one that has failed meanwhile is dropped. Main thread.
class RecordingFlow : public QObject {
    Q_OBJECT

  public:
    RecordingFlow(AppState& state, RecordingServices services);

    RecordingPreparation& preparation() { return m_preparation; }
    const RecordingPreparation& preparation() const { return m_preparation; }
    /// Does nothing unless a recording is under way and not yet stopping. It may be paused.
    void stopRecording();
    // The recording stands still, and goes on. Either does nothing where that makes no sense.
    void pause();
    void resume();
    void pauseOrResume();

    /// Whole ones, without the pauses.
    double elapsedSeconds() const { return m_elapsedSeconds; }
    /// Our own windows would be in the picture now.
    bool areWindowsHidden() const { return m_areWindowsHidden; }
    bool isStopping() const { return m_course == Course::stopping; }
    bool isPaused() const { return m_course == Course::paused; }
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
    /// Handled at once: what is to vanish has been hidden when the signal returns.
    void windowsHiddenChanged();
    void stoppingChanged();
    void pausedChanged();
    void recorderStatusChanged();
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
    /// How a recording stands. Back to none with the application's phase: it is finished, has
    /// failed or was taken back.
    ///
    ///   none ──→ running ←──→ paused
    ///     ↑         ├───────────┴──→ stopping
    ///     └─────────┴───────────┴────────┘
    enum class Course { none, running, paused, stopping };

    static bool mayFollow(Course before, Course after);
    bool hasToHideWindows() const;
    void start(const std::shared_ptr<capture::Recorder>& recorder);
    void followCondition();
    void watchDisk();
    void stopByItself(const QString& why);
    void setStopNotice(const QString& notice);
    void tickSecond();
    void startFailed(int request, const std::string& message);
    void takenBack(int request);
    void stopFailed(int request, const std::string& message);
    void recordingFinished(int request, const model::Recording& recording);
    void setElapsedSeconds(double seconds);
    void setCourse(Course course);
    void setRecorderStatus(const capture::RecordingStatistics& status);
    void setWindowsHidden(bool hidden);

    AppState& m_state;
    RecordingServices m_services;
    RecordingPreparation m_preparation;
    int m_request = 0; ///< tells apart what comes back from different recordings
    bool m_areWindowsHidden = false;
    double m_elapsedSeconds = 0;
    int m_ticks = 0; ///< seconds of the recording, pauses and all
    Course m_course = Course::none;
    capture::RecordingStatistics m_recorderStatus;
    files::DiskForecast m_disk;
    bool m_isDiskTold = false; ///< that it is nearly full
    capture::StillnessWatch m_stillness;
    QString m_whyStopped; ///< of the recording under way; empty where the user stops it
    QString m_stopNotice;
    std::filesystem::path m_outputURL;
    std::unique_ptr<MainTimer> m_secondTimer;
};

} // namespace vantro::app::flows
