#include "media/player/PlayerRig.h"

#include <fmt/format.h>

namespace vantro::test {

using namespace media;
using namespace media::player;

base::HostTime MovedTime::now() {
    const std::lock_guard lock(m_mutex);
    return m_now;
}

void MovedTime::waitUntil(base::HostTime deadline, const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, stop, [&] { return m_isWoken || m_now >= deadline; });
    m_isWoken = false;
}

void MovedTime::wakeUp() {
    {
        const std::lock_guard lock(m_mutex);
        m_isWoken = true;
    }
    m_changed.notify_all();
}

void MovedTime::advance(base::HostDuration span) {
    {
        const std::lock_guard lock(m_mutex);
        m_now += span;
        m_isWoken = true;
    }
    m_changed.notify_all();
}

void ScriptedSound::note(std::string call) {
    const std::lock_guard lock(m_script->mutex);
    m_script->calls.push_back(std::move(call));
}

void ScriptedSound::play(MediaTime from, double rate, std::optional<PlannedJump> jump) {
    note(fmt::format("play {} at {}{}", from.seconds(), rate, jump ? " with a jump" : ""));
}

void ScriptedSound::planJump(std::optional<PlannedJump> jump) {
    note(jump ? fmt::format("jump {} to {}", jump->from.seconds(), jump->to.seconds()) : "no jump");
}

void ScriptedSound::setMix(std::vector<TrackMix> mix) {
    note(fmt::format("a mix of {}", mix.size()));
}

std::optional<SoundReading> ScriptedSound::reading() const {
    const std::lock_guard lock(m_script->mutex);
    return m_script->reading;
}

bool ScriptedSound::hasDevice() const {
    const std::lock_guard lock(m_script->mutex);
    return m_script->hasDevice;
}

PlayerRig::PlayerRig(const std::filesystem::path& movie,
                     std::shared_ptr<ScriptedSound::Script> sound,
                     const std::function<void()>& beforeOpening) {
    Composition composition(Asset::open(movie));
    const auto source = composition.asset().tracks(MediaType::video).at(0);
    auto& track = composition.addTrack(MediaType::video);
    const auto duration = composition.asset().duration();
    if (duration > MediaTime{})
        track.insert({{}, duration}, source, {});
    auto time = std::make_unique<MovedTime>();
    m_time = time.get();
    Player::Services services;
    services.time = std::move(time);
    if (sound)
        services.sound = std::make_unique<ScriptedSound>(std::move(sound));
    services.onMain = [this](std::function<void()> task) {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
        m_changed.notify_all();
    };
    services.show = [this](PlayerPicture picture) {
        const std::lock_guard lock(m_mutex);
        m_pictures.push_back(std::move(picture));
        m_changed.notify_all();
    };
    VideoComposition video{.trackID = track.id(),
                           .frameDuration = {1, frameRate},
                           .renderWidth = 160,
                           .renderHeight = 90,
                           .compositor = m_compositor};
    beforeOpening();
    m_player = std::make_unique<Player>(PlayerItem{composition, video}, std::move(services));
}

PlayerRig::~PlayerRig() {
    m_player.reset();
}

void PlayerRig::runMain(std::unique_lock<std::mutex>& lock) {
    while (!m_tasks.empty()) {
        const auto task = std::move(m_tasks.front());
        m_tasks.pop_front();
        lock.unlock();
        task();
        lock.lock();
    }
}

bool PlayerRig::waitUntil(const std::function<bool()>& isTrue) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    std::unique_lock lock(m_mutex);
    for (;;) {
        runMain(lock);
        lock.unlock();
        const bool reached = isTrue();
        lock.lock();
        if (reached)
            return true;
        if (!m_tasks.empty())
            continue;
        // What is waited for may be the player's own state: look again even without an event.
        m_changed.wait_for(lock, std::chrono::milliseconds(5));
        if (std::chrono::steady_clock::now() > deadline)
            return false;
    }
}

std::size_t PlayerRig::waitingPictures() {
    const std::lock_guard lock(m_mutex);
    return m_pictures.size();
}

int PlayerRig::nextPicture() {
    if (!waitUntil([this] { return waitingPictures() > 0; }))
        return -1;
    const std::lock_guard lock(m_mutex);
    m_last = m_pictures.front();
    m_pictures.pop_front();
    return numberIn(*m_last.pixels);
}

int PlayerRig::newestPicture() {
    while (waitingPictures() > 0)
        nextPicture();
    return m_last.pixels ? numberIn(*m_last.pixels) : -1;
}

void PlayerRig::movePeriods(double periods) {
    time().advance(base::HostDuration(std::llround(periods * 1e9 / frameRate)));
}

int PlayerRig::pictureAfter(double periods) {
    movePeriods(periods);
    return nextPicture();
}

bool PlayerRig::seek(MediaTime to, MediaTime tolerance) {
    std::optional<bool> finished;
    player().seek(to, tolerance, [&finished](bool done) { finished = done; });
    return waitUntil([&] { return finished.has_value(); }) && *finished;
}

void PlayerRig::play(double rate) {
    const auto before = player().currentTime();
    player().setRate(rate);
    // The clock runs once the first pictures are decoded.
    waitUntil([&] {
        time().advance(base::HostDuration(1000));
        return player().currentTime() != before;
    });
}

void makePlayedMovie(const std::filesystem::path& movie, int count, int group,
                     const std::string& options) {
    makeNumberedMovie(movie, {count, 160, 90, PlayerRig::frameRate},
                      fmt::format("-c:v libx264 -pix_fmt yuv420p -bf 2 -g {} "
                                  "-video_track_timescale 60000 {}",
                                  group, options));
}

MediaTime timeOf(int number) {
    return {number, PlayerRig::frameRate};
}

} // namespace vantro::test
