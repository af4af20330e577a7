#include "media/pulse/SoundFeed.h"

#include "base/Log.h"
#include "base/SerialQueue.h"
#include "media/values/AudioBuffer.h"
#include "media/values/MediaError.h"

#include <utility>

namespace vantro::media::pulse {

SoundFeed::SoundFeed(const Composition& composition, SoundQueue& queue)
    : m_queue(queue), m_movie(composition.asset().movie()) {
    for (const auto& track : composition.tracks())
        if (track.type() == MediaType::audio)
            m_tracks.push_back({track, {}});
    m_thread = std::jthread([this](const std::stop_token& stop) { run(stop); });
}

void SoundFeed::run(const std::stop_token& stop) {
    base::setThreadName("sound-feed");
    while (const auto task = m_queue.nextTask(stop)) {
        if (task->plan != m_plan || task->start != m_position)
            follow(*task);
        m_queue.push(blockOf(*task), *task);
        m_position += task->frames;
    }
}

void SoundFeed::follow(const SoundQueue::Task& task) {
    for (Track& track : m_tracks) {
        if (task.run != m_run)
            track.isBroken = false;
        attempt(track, [&] {
            const auto sound = task.line->soundOf(track.source);
            if (task.run != m_run && track.reader)
                track.reader->replan({}, 0);
            if (track.reader)
                track.reader->replan(sound, task.start);
            else if (!sound.empty()) {
                track.reader.emplace(m_movie, track.source.source().id, sound);
                track.reader->replan(sound, task.start);
            }
        });
    }
    m_plan = task.plan;
    m_run = task.run;
    m_position = task.start;
}

SoundBlock SoundFeed::blockOf(const SoundQueue::Task& task) {
    SoundBlock block{task.start, task.frames, {}};
    for (std::size_t i = 0; i < m_tracks.size(); ++i) {
        Track& track = m_tracks[i];
        auto& sound =
            block.tracks.emplace_back(static_cast<std::size_t>(task.frames * mixing::channelCount));
        if (!track.reader || track.isBroken)
            continue;
        track.reader->setNoiseReduced(i < task.mix.size() && task.mix[i].noiseReduced);
        attempt(track, [&] { track.reader->addTo(sound); });
    }
    return block;
}

void SoundFeed::attempt(Track& track, const std::function<void()>& read) {
    try {
        read();
    } catch (const MediaError& error) {
        track.isBroken = true;
        if (!std::exchange(m_hasComplained, true))
            base::logWarning("Playing without sound: {}", error.what());
    }
}

} // namespace vantro::media::pulse
