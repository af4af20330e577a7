#pragma once

#include "editor/PlayerTimeObserver.h"

#include <functional>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

namespace vantro::editor {

using media::MediaTime;
using media::player::Observation;
using media::player::PlannedJump;
using model::TimelineSegment;

/// Stands in for a player: its time moves when the test says so, and seeks end when it does.
class ScriptedPlayer : public media::player::PlayerControl {
  public:
    struct Seek {
        double to;
        double tolerance;
        std::function<void(bool)> done;
    };

    double rate() const override { return m_rate; }
    void setRate(double rate) override {
        rates.push_back(rate);
        changeRate(rate);
    }
    MediaTime currentTime() const override { return now; }
    std::optional<MediaTime> duration() const override { return length; }
    void seek(MediaTime to, MediaTime tolerance, std::function<void(bool)> done) override {
        seeks.push_back({to.seconds(), tolerance.seconds(), std::move(done)});
        now = to;
    }
    void planJump(std::optional<PlannedJump> jump) override { plan = jump; }
    Observation observeTime(MediaTime interval, std::function<void(MediaTime)> observer) override {
        EXPECT_EQ(interval, (MediaTime{1, 30}));
        onTime = std::move(observer);
        return Observation([this] { onTime = nullptr; });
    }
    Observation observeRate(std::function<void()> observer) override {
        onRate = std::move(observer);
        return Observation([this] { onRate = nullptr; });
    }
    Observation observeDuration(std::function<void()> observer) override {
        onDuration = std::move(observer);
        return Observation([this] { onDuration = nullptr; });
    }
    Observation observeEnd(std::function<void()> observer) override {
        onEnd = std::move(observer);
        return Observation([this] { onEnd = nullptr; });
    }

    void changeRate(double rate) {
        m_rate = rate;
        if (onRate)
            onRate();
    }
    void tick(double seconds) {
        now = MediaTime::fromSeconds(seconds, 90'000);
        onTime(now);
    }
    /// Ends the last seek.
    void finishSeek(bool finished = true) { seeks.back().done(finished); }
    /// Plays on by a tick's length, over the planned jump, and ticks.
    void playOn() {
        double t = now.seconds() + m_rate / 30;
        if (plan && now < plan->from && t >= plan->from.seconds()) {
            t = plan->to.seconds() + (t - plan->from.seconds()) / m_rate * plan->rate;
            const double rate = plan->rate;
            plan.reset();
            changeRate(rate);
        }
        tick(t);
    }

    MediaTime now;
    std::optional<MediaTime> length;
    std::vector<double> rates;
    std::vector<Seek> seeks;
    std::optional<PlannedJump> plan;
    std::function<void(MediaTime)> onTime;
    std::function<void()> onRate, onDuration, onEnd;

  private:
    double m_rate = 0;
};

inline TimelineSegment segment(double start, double end, double speed = 1) {
    return {.startFraction = start, .endFraction = end, .speed = speed};
}

/// Ten seconds with a gap from 4 to 6, behind which playing is twice as fast.
inline const std::vector<TimelineSegment> withGap{segment(0, 0.4), segment(0.6, 1, 2)};

class PlayerTimeObserverTest : public testing::Test {
  protected:
    PlayerTimeObserverTest() { observer.attach(player); }

    void open(double duration, std::vector<TimelineSegment> segments) {
        player->length = MediaTime::fromSeconds(duration);
        player->onDuration();
        observer.setSegments(std::move(segments));
    }
    void playAt(double t, double rate = 1) {
        player->changeRate(rate);
        player->tick(t);
        player->rates.clear();
    }

    std::shared_ptr<ScriptedPlayer> player = std::make_shared<ScriptedPlayer>();
    PlayerTimeObserver observer;
};

} // namespace vantro::editor
