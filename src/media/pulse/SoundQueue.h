#pragma once

#include "media/player/PlayerSound.h"
#include "media/pulse/DeviceClock.h"
#include "media/pulse/PlayLine.h"
#include "media/pulse/SoundMixer.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

namespace vantro::media::pulse {

/// Where the player, the thread that decodes ahead and the device meet.
///
/// Holds at most a fifth of a second of decoded sound; whoever decodes waits for room. The device
/// never waits: it gets silence where nothing is decoded yet. Calls out to nobody. Any thread.
class SoundQueue {
  public:
    SoundQueue(std::size_t trackCount, MediaTime duration);

    // For the player.
    void play(MediaTime from, double rate, std::optional<player::PlannedJump> jump,
              base::HostTime now);
    void planJump(std::optional<player::PlannedJump> jump, base::HostTime now);
    void pause();
    void setMix(const std::vector<TrackMix>& mix);
    void setMuted(bool muted);
    std::optional<player::SoundReading> reading(base::HostTime now);

    // For the thread that decodes.
    struct Task {
        std::uint64_t plan = 0; ///< changes with every other line
        std::uint64_t run = 0;  ///< changes with every `play`
        std::shared_ptr<const PlayLine> line;
        std::int64_t start = 0;
        std::int64_t frames = 0;
        std::vector<TrackMix> mix; ///< of the first tracks; volumes are the mixer's matter
    };
    /// Waits until there is something to decode; nothing after a stop.
    std::optional<Task> nextTask(const std::stop_token& stop);
    /// Thrown away when the player wants something else meanwhile.
    void push(SoundBlock block, const Task& task);

    // For the device, whose samples count from when it was opened.
    /// Whether it should run: playing, or the last fade is not heard yet.
    bool wantsDevice(base::HostTime now);
    void fill(std::int64_t position, std::span<float> samples, base::HostTime now);
    /// The device's own word on what it plays.
    void heard(base::HostTime at, double position);
    void deviceStops();
    /// A new one will count from 0.
    void deviceLost();

  private:
    /// Samples of the device that carry the item's sound at one rate.
    struct Piece {
        std::uint64_t run = 0;
        std::int64_t position = 0;
        std::int64_t frames = 0;
        std::int64_t start = 0; ///< heard samples since playing began
        PlayLine::Piece line;
    };
    /// Playing was here then, whether or not it was heard.
    struct Anchor {
        base::HostTime at;
        double heard = 0;
    };

    void cutOff();
    void cutFrom(std::int64_t heard);
    void noteNewLine(PlayLine line);
    void skipTo(std::int64_t heard);
    void catchUp(base::HostTime now);
    std::int64_t mixInto(std::int64_t position, std::span<float> samples);
    void note(std::int64_t position, std::int64_t frames, std::int64_t start);
    const Piece* pieceAt(double position) const;
    double expected(base::HostTime now) const;
    std::int64_t next() const;

    const MediaTime m_duration;
    std::mutex m_mutex; // guards all that follows
    std::condition_variable_any m_roomOrTask;
    SoundMixer m_mixer;
    std::vector<TrackMix> m_mix;
    DeviceClock m_clock;
    bool m_isPlaying = false;
    bool m_hasRunDry = true; ///< the device was given silence
    std::shared_ptr<const PlayLine> m_line;
    std::uint64_t m_plan = 0;
    std::uint64_t m_run = 0;
    std::int64_t m_sharedEnd = 0; ///< up to where the plan before sounds the same
    std::deque<SoundBlock> m_blocks;
    std::int64_t m_taken = 0;   ///< frames of the first block
    std::int64_t m_decoded = 0; ///< end of the last block, or where the next begins
    std::vector<float> m_tail;  ///< what was cut off, fading; mixed into what comes next
    std::deque<Piece> m_pieces; ///< given to the device, up to a second ago
    std::int64_t m_written = 0; ///< device samples
    Anchor m_anchor;
};

} // namespace vantro::media::pulse
