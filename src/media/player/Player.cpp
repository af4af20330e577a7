#include "media/player/Player.h"

#include "media/player/PlayerEngine.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <ranges>

namespace vantro::media::player {
namespace {

/// Observers by number. They may come and go while they are told; what is told is copied first.
/// Main thread.
template <typename... Arguments>
class ObserverList {
  public:
    using Observer = std::function<void(Arguments...)>;

    int add(Observer observer) {
        m_observers.emplace(++m_last, std::move(observer));
        return m_last;
    }
    void remove(int number) { m_observers.erase(number); }
    void tell(int number, Arguments... arguments) const {
        if (const auto found = m_observers.find(number); found != m_observers.end())
            Observer(found->second)(arguments...);
    }
    void tellAll(Arguments... arguments) const {
        const auto numbers = std::views::keys(m_observers);
        for (const int number : std::vector<int>(numbers.begin(), numbers.end()))
            tell(number, arguments...);
    }

  private:
    std::map<int, Observer> m_observers;
    int m_last = 0;
};

/// What events reach on the main thread; they hold it weakly, so that it may go before them.
struct MainSide {
    PlayerEngine* engine = nullptr;
    ObserverList<MediaTime> time;
    ObserverList<> rate;
    ObserverList<> duration;
    ObserverList<> end;
    ObserverList<> status;
    bool durationTold = false;

    void tellTime() const { time.tellAll(engine->currentTime()); }
    void tellStatus() {
        if (!durationTold && engine->duration()) {
            durationTold = true;
            duration.tellAll();
        }
        status.tellAll();
    }
};

/// An event that runs `action` with what is left of the main side.
template <typename Action>
auto onMainSide(OnMain onMain, std::weak_ptr<MainSide> main, Action action) {
    return [onMain = std::move(onMain), main = std::move(main), action](auto... arguments) {
        onMain([main, action, ... arguments = std::move(arguments)] {
            if (const auto side = main.lock(); side && side->engine != nullptr)
                action(*side, arguments...);
        });
    };
}

PlayerEngine::Events eventsOf(const OnMain& onMain, const std::weak_ptr<MainSide>& main) {
    const auto event = [&](auto action) { return onMainSide(onMain, main, action); };
    return {
        .rateChanged = event([](MainSide& side) { side.rate.tellAll(); }),
        .statusChanged = event([](MainSide& side) { side.tellStatus(); }),
        .timeJumped = event([](MainSide& side) { side.tellTime(); }),
        .ended = event([](MainSide& side) { side.end.tellAll(); }),
        .seekDone = event(
            [](MainSide&, const SeekQueue::Completion& done, bool finished) { done(finished); }),
        .tick = event(
            [](MainSide& side, int number) { side.time.tell(number, side.engine->currentTime()); }),
    };
}

base::HostDuration spanOf(MediaTime time) {
    return base::HostDuration(std::llround(time.seconds() * 1e9));
}

} // namespace

struct Player::Implementation {
    std::shared_ptr<MainSide> main = std::make_shared<MainSide>();
    PlayerEngine::Events events;
    PlayerEngine engine;

    Implementation(const PlayerItem& item, Services services)
        : events(eventsOf(services.onMain, main)), engine(item, std::move(services), events) {
        main->engine = &engine;
    }
    ~Implementation() { main->engine = nullptr; }

    template <typename List, typename Observer>
    Observation observe(List MainSide::* list, Observer observer) {
        const int number = (main.get()->*list).add(std::move(observer));
        return Observation([weak = std::weak_ptr(main), list, number] {
            if (const auto side = weak.lock())
                (side.get()->*list).remove(number);
        });
    }
};

Player::Player(const PlayerItem& item, Services services)
    : m_implementation(std::make_unique<Implementation>(item, std::move(services))) {}

Player::~Player() = default;

double Player::rate() const {
    return m_implementation->engine.rate();
}

void Player::setRate(double rate) {
    m_implementation->engine.setRate(rate > 0 ? rate : 0);
}

MediaTime Player::currentTime() const {
    return m_implementation->engine.currentTime();
}

std::optional<MediaTime> Player::duration() const {
    return m_implementation->engine.duration();
}

void Player::seek(MediaTime to, MediaTime tolerance, std::function<void(bool finished)> done) {
    m_implementation->engine.seek({to, tolerance, std::move(done)});
}

void Player::planJump(std::optional<PlannedJump> jump) {
    m_implementation->engine.planJump(jump);
}

Observation Player::observeTime(MediaTime interval, std::function<void(MediaTime)> observer) {
    auto& main = *m_implementation->main;
    const int number = main.time.add(std::move(observer));
    main.engine->addTick(number, spanOf(interval));
    return Observation([weak = std::weak_ptr(m_implementation->main), number] {
        const auto side = weak.lock();
        if (!side)
            return;
        side->time.remove(number);
        if (side->engine != nullptr)
            side->engine->removeTick(number);
    });
}

Observation Player::observeRate(std::function<void()> observer) {
    return m_implementation->observe(&MainSide::rate, std::move(observer));
}

Observation Player::observeDuration(std::function<void()> observer) {
    return m_implementation->observe(&MainSide::duration, std::move(observer));
}

Observation Player::observeEnd(std::function<void()> observer) {
    return m_implementation->observe(&MainSide::end, std::move(observer));
}

Observation Player::observeStatus(std::function<void()> observer) {
    return m_implementation->observe(&MainSide::status, std::move(observer));
}

Player::Status Player::status() const {
    return m_implementation->engine.status();
}

std::string Player::problem() const {
    return m_implementation->engine.problem();
}

void Player::setVideo(VideoComposition video) {
    m_implementation->engine.setVideo(std::move(video));
}

void Player::refresh() {
    m_implementation->engine.refresh();
}

void Player::setOutputSize(int width, int height) {
    m_implementation->engine.setOutputSize(width, height);
}

void Player::setMix(std::vector<TrackMix> mix) {
    m_implementation->engine.setMix(std::move(mix));
}

void Player::setMuted(bool muted) {
    m_implementation->engine.setMuted(muted);
}

void Player::setProxy(std::shared_ptr<proxy::ProxyMovie> proxy) {
    m_implementation->engine.setProxy(std::move(proxy));
}

PlayerCounts Player::counts() const {
    return m_implementation->engine.counts();
}

} // namespace vantro::media::player
