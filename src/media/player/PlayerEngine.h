#pragma once

#include "media/player/FrameReader.h"
#include "media/player/PictureComposer.h"
#include "media/player/PictureQueue.h"
#include "media/player/PlaybackClock.h"
#include "media/player/PlayerPhase.h"
#include "media/player/PlayerServices.h"
#include "media/player/SeekQueue.h"
#include "media/proxy/ProxyReader.h"

#include <array>
#include <mutex>
#include <thread>

namespace vantro::media::player {

/// What a player does on its own threads: one composes, keeps the clock and drives the sound; two
/// readers decode ahead, one where playing is, the other where the planned jump goes; a third finds
/// pictures of the proxy, where there is one.
///
/// With a proxy, an exact seek shows the proxy's picture until the movie's is found, unless that is
/// soon. A tolerant one ends with the proxy's picture, and the movie's follows when no other seek
/// does.
///
/// Any thread may call; what is asked for happens soon. Events are told on the engine's threads,
/// with no lock held, and not after destruction has ended.
class PlayerEngine {
  public:
    struct Events {
        std::function<void()> rateChanged;
        std::function<void()> statusChanged; ///< the duration becomes known with the first
        std::function<void()> timeJumped;
        std::function<void()> ended;
        std::function<void(SeekQueue::Completion done, bool finished)> seekDone;
        /// The periodic observer of this number is due.
        std::function<void(int number)> tick;
    };

    PlayerEngine(const PlayerItem& item, PlayerServices services, Events events);
    ~PlayerEngine();

    double rate() const;
    void setRate(double rate);
    MediaTime currentTime() const;
    std::optional<MediaTime> duration() const;
    PlayerStatus status() const;
    std::string problem() const;
    PlayerCounts counts() const;

    void seek(Seek seek);
    void planJump(std::optional<PlannedJump> jump);
    void setVideo(VideoComposition video);
    void refresh();
    void setOutputSize(int width, int height);
    void setMix(std::vector<TrackMix> mix);
    void setMuted(bool muted);
    void setProxy(std::shared_ptr<proxy::ProxyMovie> proxy);
    /// Ticks every `interval` while playing, with this number.
    void addTick(int number, base::HostDuration interval);
    void removeTick(int number);

  private:
    /// What was asked for and the engine's thread has yet to do.
    struct Wishes {
        bool redraw = false;
        std::optional<VideoComposition> video;
        std::optional<std::pair<int, int>> outputSize;
        std::optional<std::vector<TrackMix>> mix;
        std::optional<bool> muted;
        bool soundJump = false; ///< the sound does not know the jump yet
    };
    struct Tick {
        int number = 0;
        base::HostDuration interval{};
        base::HostTime next;
    };
    /// A picture to draw, and what for.
    struct Drawing {
        MediaTime time;
        VideoFrame source;
        bool isPreliminary = false; ///< the source is the proxy's
    };
    using Lock = std::unique_lock<std::mutex>;

    // The engine's thread only, without the lock.
    void run(const std::stop_token& stop);
    /// Does one thing; false when there is nothing to do before the deadline.
    bool step();
    base::HostTime deadline() const;
    bool applyWishes();
    bool redraw();
    bool answerSeek();
    bool showProxy();
    bool refine();
    bool followRate();
    bool beginToPlay();
    bool keepClock();
    bool showDue();
    bool composeAhead();
    bool tick();
    void landSeek(const Seek& seek, const VideoFrame& frame, bool isPreliminary);
    std::shared_ptr<const PixelBuffer> compose(const Drawing& drawing);
    std::shared_ptr<const PixelBuffer> drawn(const Drawing& drawing);
    /// The drawing is the one that is seen from now on.
    void show(std::shared_ptr<const PixelBuffer> pixels, Drawing drawing, base::HostTime due);
    void silence();
    void fail(const std::string& problem);
    std::optional<SoundReading> heard(base::HostTime now) const;

    // With the lock held.
    void start(base::HostTime now, double rate);
    void pause(base::HostTime now);
    void makeJump();
    void end();
    void beginSeek();
    void askReader(const Seek& seek);
    void askProxy(const Seek& seek);
    void takeProxied(std::optional<VideoFrame> frame);
    void readAhead();
    void prepareJump();
    void take(const FrameReader::Answer& answer);
    PicturePath path(base::HostTime now) const;
    std::optional<PlannedJump> jumpAhead(base::HostTime now) const;
    bool isPrepared() const;

    void tell(std::vector<SeekQueue::Completion> superseded) const;
    MediaTime sourceTime(MediaTime t) const;
    MediaTime landing(const Seek& seek, const VideoFrame& frame) const;

    const CompositionTrack m_track;
    const MediaTime m_end; ///< of the item
    const std::unique_ptr<PlayerTime> m_time;
    const Events m_events;

    // The engine's thread only.
    PictureComposer m_composer;
    const std::unique_ptr<PlayerSound> m_sound;
    const std::function<void(PlayerPicture)> m_show;
    std::optional<Drawing> m_shown; ///< what was handed out last
    std::uint64_t m_number = 0;
    bool m_sounds = false;

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    PlayerPhase m_phase = PlayerPhase::opening;
    PlayerStatus m_status = PlayerStatus::opening;
    bool m_isOpen = false;
    bool m_isEnding = false; ///< nothing more is read
    std::string m_problem;
    double m_rate = 0;                 ///< as set
    double m_playedRate = 1;           ///< as played, while it plays
    std::optional<PlannedJump> m_jump; ///< as planned
    PlaybackClock m_clock;
    PictureQueue m_queue;
    MediaTime m_frameDuration;
    MediaTime m_shownTime;
    base::HostTime m_startDue; ///< when playing begins, whatever is there by then
    Wishes m_wishes;
    PlayerCounts m_counts;
    std::vector<Tick> m_ticks;

    SeekQueue m_seeks;
    std::optional<FrameReader::Answer> m_sought; ///< of the seek that runs
    bool m_isProxied = false;                    ///< that answer is the proxy's
    Seek m_seeking;                              ///< that seek, or the last one
    std::uint64_t m_seekNumber = 0;              ///< rises with each that begins
    std::optional<VideoFrame> m_proxied;         ///< to be seen before it ends
    base::HostTime m_proxiedDue;                 ///< not before
    std::optional<MediaTime> m_preliminary;      ///< the time of a proxy's picture that is seen
    std::optional<base::HostTime> m_refineAt;    ///< when the movie's own picture is to follow it
    std::optional<PathPoint> m_reading;          ///< ahead
    std::stop_source m_readingStop;
    base::HostTime m_readingSince;
    int m_slowReads = 0;                 ///< in a row
    bool m_readsKeyframes = false;       ///< since playing began: nothing else keeps up
    std::string m_readProblem;           ///< why nothing more is read ahead
    std::optional<MediaTime> m_prepared; ///< where the other reader is or goes, of the source
    std::stop_source m_preparingStop;
    std::size_t m_active = 0; ///< the reader where playing is

    std::shared_ptr<proxy::ProxyReader> m_proxy; ///< null where there is none; guarded by m_mutex
    std::array<std::unique_ptr<FrameReader>, 2> m_readers;
    std::jthread m_thread; // goes first
};

} // namespace vantro::media::player
