#pragma once

#include "base/OutputFile.h"
#include "media/values/MediaTime.h"
#include "media/values/PixelBuffer.h"

#include <filesystem>
#include <memory>

namespace vantro::exporting::gif {

/// Writes an endlessly looping animated GIF of pictures that follow each other at one pace.
///
/// Delays in a GIF are hundredths of a second; what rounding one takes, the next gives back, so
/// the animation keeps time over any length. A picture that shows the same as the one before only
/// lengthens that one's delay; of others only what changed visibly is stored.
///
/// The file appears under its name when `finish` returns; until then, and for ever after a failure,
/// `cancel` or destruction, an earlier file of that name stays as it was. Memory is bounded
/// whatever the length. Failures are VantroError exportFailed with the path and the reason; after
/// one the writer is good for nothing but destruction. One thread at a time; `append` does the work
/// itself.
class GifWriter {
  public:
    /// Pixels from 1 to 32768 a side; `frameDelay` in seconds, at least 1/50 (players slow down
    /// anything faster). "Failed to create GIF destination" where the file cannot be made.
    GifWriter(std::filesystem::path target, int width, int height, media::MediaTime frameDelay);
    ~GifWriter();
    GifWriter(const GifWriter&) = delete;
    GifWriter& operator=(const GifWriter&) = delete;

    /// The next picture: bgra, of the writer's size, alpha ignored. Nothing of it is kept by
    /// reference. "Failed to finalize GIF" where the file cannot be written.
    void append(const media::PixelBuffer& bgra);

    /// Completes the file. "Failed to finalize GIF" where that fails or no picture was appended.
    /// False when it was cancelled first: then it is as after `cancel`.
    bool finish(const base::Finishing& finishing = {});

    /// Gives up and removes what was written; nothing may follow.
    void cancel();

  private:
    class Body;
    std::unique_ptr<Body> m_body; ///< none after finish or cancel
};

} // namespace vantro::exporting::gif
