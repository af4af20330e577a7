#pragma once

#include "media/TestMovies.h"
#include "media/player/Player.h"

#include <condition_variable>
#include <deque>
#include <mutex>

namespace vantro::test {

/// A player's host clock that stands until the test moves it.
class MovedTime : public media::player::PlayerTime {
  public:
    base::HostTime now() override;
    void waitUntil(base::HostTime deadline, const std::stop_token& stop) override;
    void wakeUp() override;
    void advance(base::HostDuration span);

  private:
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    base::HostTime m_now{std::chrono::hours(1)};
    bool m_isWoken = false;
};

/// Stands in for a sound device, whose clock the test moves; it notes what it is told.
class ScriptedSound : public media::player::PlayerSound {
  public:
    /// What the test and the player's thread share.
    struct Script {
        std::mutex mutex;
        std::vector<std::string> calls;
        std::optional<media::player::SoundReading> reading;
        bool hasDevice = true;
    };

    explicit ScriptedSound(std::shared_ptr<Script> script) : m_script(std::move(script)) {}

    void play(media::MediaTime from, double rate,
              std::optional<media::player::PlannedJump> jump) override;
    void planJump(std::optional<media::player::PlannedJump> jump) override;
    void pause() override { note("pause"); }
    void setMix(std::vector<media::TrackMix> mix) override;
    void setMuted(bool muted) override { note(muted ? "mute" : "unmute"); }
    std::optional<media::player::SoundReading> reading() const override;
    bool hasDevice() const override;

  private:
    void note(std::string call);

    std::shared_ptr<Script> m_script;
};

/// Hands the source's pictures on, and counts them.
class PassingCompositor : public media::VideoCompositor {
  public:
    std::shared_ptr<const media::PixelBuffer>
    compose(const media::CompositionRequest& request) override {
        ++composed;
        return request.sourceFrame.pixels;
    }

    std::atomic<int> composed = 0;
};

/// A player over a real movie whose pictures are numbered, with a clock that the test moves.
///
/// The main thread is the test's: it runs what the player sends there while it waits.
class PlayerRig {
  public:
    static constexpr int frameRate = 60;

    explicit PlayerRig(
        const std::filesystem::path& movie, std::shared_ptr<ScriptedSound::Script> sound = nullptr,
        const std::function<void()>& beforeOpening = [] {});
    ~PlayerRig();

    media::player::Player& player() { return *m_player; }
    MovedTime& time() { return *m_time; }
    PassingCompositor& compositor() { return *m_compositor; }

    /// Runs what comes to the main thread until `isTrue`; false when it never is.
    bool waitUntil(const std::function<bool()>& isTrue);
    /// Waits for the next picture and returns its number; -1 when none comes.
    int nextPicture();
    /// Takes all pictures that wait, and returns the number of the last that was taken.
    int newestPicture();
    /// Moves the time by so many periods of the movie, and waits for a picture.
    int pictureAfter(double periods);
    void movePeriods(double periods);
    /// Seeks, waits for the end and returns whether it finished.
    bool seek(media::MediaTime to, media::MediaTime tolerance = {});
    /// Starts to play and waits until it does.
    void play(double rate = 1);
    const media::player::PlayerPicture& lastPicture() const { return m_last; }
    /// Handed out and not yet taken by nextPicture.
    std::size_t waitingPictures();

  private:
    void runMain(std::unique_lock<std::mutex>& lock);

    std::shared_ptr<PassingCompositor> m_compositor = std::make_shared<PassingCompositor>();
    MovedTime* m_time = nullptr; // owned by the player
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_tasks;
    std::deque<media::player::PlayerPicture> m_pictures;
    media::player::PlayerPicture m_last;
    std::unique_ptr<media::player::Player> m_player;
};

/// A movie of numbered pictures, 60 a second, with so many between keyframes.
void makePlayedMovie(const std::filesystem::path& movie, int count, int group,
                     const std::string& options = "");
/// The time of picture `number`.
media::MediaTime timeOf(int number);

} // namespace vantro::test
