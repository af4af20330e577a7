#pragma once

#include "app/cli/WindowCommands.h"
#include "base/Guarded.h"
#include "media/player/PlayerSound.h"
#include "ui/PictureStream.h"

#include <memory>
#include <optional>
#include <vector>

namespace vantro::program {

/// What a player's sound was heard to play, for somebody beside the player. Any thread.
class HeardSound {
  public:
    /// `sound` as it is, except that its readings are kept; null stays null. Outlives it.
    std::unique_ptr<media::player::PlayerSound>
    listenTo(std::unique_ptr<media::player::PlayerSound> sound);

    /// Seconds of the item that are heard at `at`; nothing while there is silence.
    std::optional<double> timeAt(base::HostTime at) const;

  private:
    class Listener;
    struct Heard {
        std::optional<media::player::SoundReading> reading;
        double rate = 1;
    };

    base::Guarded<Heard> m_heard;
};

/// Counts what became of the pictures of a film, from `begin` on. Outlives the stream that it
/// watches. Any thread.
class PlayStatistics : public ui::PictureWatcher {
  public:
    /// A picture's time on the screen.
    PlayStatistics(base::HostDuration period, const HeardSound& sound);

    void begin();
    void pictureReplaced(const media::player::PlayerPicture& picture) override;
    void pictureShown(const media::player::PlayerPicture& picture, base::HostTime at) override;

    /// `skipped` is how many pictures the player did not even hand out.
    app::cli::PlayReport report(std::uint64_t skipped) const;

  private:
    struct Counts {
        std::optional<base::HostTime> began;
        std::uint64_t shown = 0;
        std::uint64_t dropped = 0;
        std::uint64_t late = 0;
        std::vector<double> offsets; ///< of the newest pictures, seconds
    };

    const base::HostDuration m_period;
    const HeardSound& m_sound;
    base::Guarded<Counts> m_counts;
};

} // namespace vantro::program
