#pragma once

#include "media/AudioTrackReader.h"
#include "media/Composition.h"
#include "media/pulse/SoundQueue.h"
#include "media/values/MovieReference.h"

#include <functional>
#include <optional>
#include <thread>
#include <vector>

namespace vantro::media::pulse {

/// Decodes a composition's sound tracks into a queue, on a thread of its own. A track that cannot
/// be read is silent until playing begins elsewhere; the log is told once.
class SoundFeed {
  public:
    /// The queue must outlive it.
    SoundFeed(const Composition& composition, SoundQueue& queue);

  private:
    struct Track {
        CompositionTrack source;
        std::optional<AudioTrackReader> reader;
        bool isBroken = false; ///< from here on
    };

    void run(const std::stop_token& stop);
    void follow(const SoundQueue::Task& task);
    SoundBlock blockOf(const SoundQueue::Task& task);
    void attempt(Track& track, const std::function<void()>& read);

    SoundQueue& m_queue;
    MovieReference m_movie;
    std::vector<Track> m_tracks;
    std::uint64_t m_plan = 0;
    std::uint64_t m_run = 0;
    std::int64_t m_position = 0;
    bool m_hasComplained = false;
    std::jthread m_thread; // the last member: it uses the others
};

} // namespace vantro::media::pulse
